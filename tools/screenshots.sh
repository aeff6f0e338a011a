#!/bin/sh
# Retakes the pictures in README.md and docs/using-velmora.md: tools/screenshots.sh. Those of the guide are taken on a
# handheld's screen at both scales.
# Needs the 'windows' preset's build, Xvfb, xdotool and ImageMagick.
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

    # The calculator, with what was computed before.
    prefix=$here/build/wine-window-$((96 * scale))
    tape=$prefix/drive_c/users/$(id -un)/AppData/Roaming/Velmora
    mkdir -p "$tape"
    printf '%s\t%s\n' '26.2*1.609344' 42.1648128 'r = 3.5' 3.5 'pi*r^2' 38.4845100065 '5 ft 11 in in cm' '180.34 cm' \
        >"$tape/tallyra tape.txt"
    VELMORA_SCREEN=$((240 * scale))x$((320 * scale)) VELMORA_DPI=$((96 * scale)) \
        VELMORA_PICTURE=$taken/$scale/calculator.bmp "$here/tools/xvfb-wine" "$here/build/windows/Tallyra.exe"

    # The formats of Length's seventh row, feet and inches.
    VELMORA_KEYS='ctrl+o
alt+t Home Tab l e n
Return
Down Down Down Down Down Down
ctrl+f
Up Return' "$here/tools/run-window" --screenshot "$taken/$scale/compound.bmp" --size $((240 * scale))x$((320 * scale)) \
        --scale $scale

    for picture in "$taken/$scale"/*.bmp; do
        convert "$picture" -strip -colors 255 "PNG8:$images/$(basename "$picture" .bmp).png"
    done
done

"$here/tools/run-window" --screenshot "$taken/desktop.bmp" --size 500x600 --maximized
convert "$taken/desktop.bmp" -strip -colors 255 "PNG8:$here/docs/images/desktop.png"
