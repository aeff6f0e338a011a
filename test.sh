#!/bin/sh
# Builds everything and runs every test: native, under sanitizers, on Windows through Wine, short fuzz runs,
# format, lint and layer checks. Ends in ctest's summary.
set -eu
cd "$(dirname "$0")"
. tools/packages.sh

# shellcheck disable=SC2086  # lists of words
need_packages $BUILD_PACKAGES $WINDOWS_PACKAGES $TEST_PACKAGES

# Ends the Wine server that the tests have left waiting; there is often none any more, which is no failure.
end_wine() {
    if [ -d build/wine ]; then WINEPREFIX=$PWD/build/wine wineserver -k 2>/dev/null || true; fi
}
trap end_wine EXIT

for preset in release linux linux-asan windows fuzz; do
    echo "Building $preset"
    build_preset "$preset"
done

# One run over all the builds, so that there is one summary.
echo 'subdirs("linux" "linux-asan" "windows" "fuzz")' >build/CTestTestfile.cmake
ctest --test-dir build -j2 --output-on-failure --no-tests=error "$@"
