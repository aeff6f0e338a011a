#!/bin/sh
# Builds everything and runs every test: native, under sanitizers, on Windows through Wine, short fuzz runs,
# format, lint and layer checks. Ends in ctest's summary.
set -eu
cd "$(dirname "$0")"
. tools/build.sh

# shellcheck disable=SC2086  # lists of words
alone need_packages $BUILD_PACKAGES $WINDOWS_PACKAGES $TEST_PACKAGES

# The tests leave the Wine server waiting.
trap 'tools/end-wine "$PWD/build/wine"' EXIT

for preset in release linux linux-asan windows fuzz; do
    alone build_preset "$preset"
done

# One run over all the builds, so that there is one summary.
echo 'subdirs("linux" "linux-asan" "windows" "fuzz")' >build/CTestTestfile.cmake
ctest --test-dir build -j2 --output-on-failure --no-tests=error "$@"
