#!/bin/bash
# What is offered while a command line is typed: completion_test.sh VELMORA
set -u
PATH=$(dirname "$1"):$PATH
unset VELMORA_DATA
. "$(dirname "$0")/../../cli/velmora.bash"
status=0

# expect OFFERED WORDS...: the last of the words is being typed.
expect() {
    COMP_WORDS=("${@:2}")
    COMP_CWORD=$(($# - 2))
    _velmora
    local offered
    offered=$(IFS='|' && echo "${COMPREPLY[*]}")
    [ "$offered" = "$1" ] || { echo "${*:2}: '$offered' is offered instead of '$1'" >&2; status=1; }
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$(dirname "$1")/Conversions/Length.cnv" "$folder/Long way.cnv"

expect 'convert|calc|check' velmora c
expect '--version' velmora --v
expect 'Length' velmora convert leng
expect 'km' velmora convert Length km
expect 'Nautical\ miles' velmora convert Length naut
expect 'Nautical miles' velmora convert Length '"naut'
expect 'Nautical\ miles' velmora convert Length km 5 --to 'nautical\ m'
expect '' velmora convert Length km ''
expect '--to' velmora convert Length --t
expect 'Inches' velmora convert --raw --to ft Length inch
expect 'percent=' velmora calc TipCalc bill=48 perc
expect '' velmora calc TipCalc total
expect 'Long\ way' velmora --data "$folder" show ''
expect 'km' velmora --data "$folder" convert 'Long\ way' km
expect 'currency' velmora eval --as cu
expect 'update-url' velmora options u
exit $status
