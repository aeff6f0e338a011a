#!/bin/sh
# Takes the pictures of docs/using-velmora.md anew, on a handheld's screen at both scales: tools/screenshots.sh
# Needs the 'windows' preset's build, and ImageMagick.
set -eu
here=$(cd "$(dirname "$0")/.." && pwd)
tests=$here/build/windows/tests/window/window_tests.exe
[ -e "$tests" ] || { echo "Build the 'windows' preset first: $tests is missing." >&2; exit 1; }
taken=$(mktemp -d)
trap 'rm -rf "$taken"' EXIT
for scale in 1 2; do
    images=$here/docs/images/scale-$scale
    mkdir -p "$images" "$taken/$scale"
    VELMORA_SCREEN=$((240 * scale))x$((320 * scale)) VELMORA_DPI=$((96 * scale)) \
        VELMORA_PICTURES="Z:$taken/$scale" VELMORA_DATA="Z:${VELMORA_DATA:-$here/build/windows/Conversions}" \
        "$here/tools/xvfb-wine" "$tests" --gtest_filter='Pictures.*' --gtest_also_run_disabled_tests --gtest_brief=1
    for picture in "$taken/$scale"/*.bmp; do
        convert "$picture" -strip "PNG8:$images/$(basename "$picture" .bmp).png"
    done
done
