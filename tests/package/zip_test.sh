#!/bin/sh
# The Windows zip, unpacked into an empty folder: zip_test.sh ZIP DRIVER. The driver is the user at the windows.
set -eu
zip=$1
driver=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}
at_most() { [ "$(stat -c %s "$2")" -lt "$1" ] || fail "$2 is larger than $1 bytes"; }

at_most 4000000 "$zip"
unzip -q "$zip" -d "$work"
for program in Velmora.exe Tallyra.exe peghelp.exe htmlview.dll; do
    at_most 2500000 "$work/$program"
done
# The terminal command converts with the data beside it, and the sources are those of that data.
tools=$(dirname "$0")/../../tools
at_most 3500000 "$work/velmora.com"
at_terminal() { (unset VELMORA_DATA && "$tools/wine" "$work/velmora.com" "$@"); }
[ "$(at_terminal convert length mi 26.2 --to km | tr -d '\r')" = 42.1648128 ] || fail "the command does not convert"
at_terminal import "Z:$work/Sources/Length.toml" "Z:$work/Length.cnv"
cmp "$work/Length.cnv" "$work/Conversions/Length.cnv"
for name in $(sed -nE 's/^([A-Za-z.]+)  .*/\1/p' "$work/README.txt"); do
    [ -e "$work/$name" ] || fail "the readme names $name, which is missing"
done
VELMORA_PACKAGE="Z:$work" VELMORA_SCREEN=1024x800 "$(dirname "$0")/../../tools/xvfb-wine" "$driver"
