#!/bin/bash
# The Debian package, unpacked into an empty folder and nowhere else: deb_test.sh DEB
set -eu
deb=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}

lintian --fail-on error "$deb"
dpkg-deb -x "$deb" "$work"
cd "$work"
export HOME=$work/home PATH=$work/usr/bin:$PATH
unset XDG_CONFIG_HOME XDG_DATA_HOME VELMORA_DATA
[ "$(velmora convert length mi 26.2 --to km)" = 42.1648128 ] || fail "the command does not convert"
for source in usr/share/velmora/sources/*.toml; do
    name=$(basename "$source" .toml)
    file=$(echo usr/share/velmora/Conversions/"$name".c??)
    velmora import "$source" "made.${file##*.}" && cmp "made.${file##*.}" "$file" || fail "$source is not that of $file"
done
[ "$(velmora show length --sources | head -1)" = Length ] || fail "the command knows no sources"

# The man page renders, and names every command and every option.
page=usr/share/man/man1/velmora.1.gz
warnings=$(man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
[ -z "$warnings" ] || fail "$warnings"
words=$(MANWIDTH=200 man -l "$page" | col -bx)
commands=$(velmora --help | sed -n '/^commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ -n "$commands" ] || fail "the help lists no commands"
for command in $commands; do
    for name in "$command" $(velmora "$command" --help | grep -oE '^ +--?[a-z-]+'); do
        grep -qE -- "^ +$name( |\$)" <<<"$words" || fail "the man page does not tell about $command $name"
    done
done

# The window program starts through Wine out of the user's own folder; without Wine it is said what is missing.
mkdir tools
for tool in sh basename cat cmp cp dirname mkdir readlink; do
    ln -s "$(command -v $tool)" tools/
done
said=$(PATH=$work/tools "$work/usr/bin/velmora-window" 2>&1) && fail "velmora-window succeeds without Wine"
[[ $said == *"needs Wine"* ]] || fail "without Wine velmora-window says '$said'"
printf '#!/bin/sh\nls "$(dirname "$1")" "$2"\n' >tools/wine
chmod +x tools/wine
ln -s "$(command -v ls)" tools/
own=$HOME/.local/share/velmora
mkdir -p "$own/Conversions"
echo mine >"$own/Conversions/Length.cnv"
PATH=$work/tools "$work/usr/bin/velmora-window" "$own/Conversions" >started
for file in Velmora.exe Tallyra.exe peghelp.exe htmlview.dll velmora.htm Weight.cnv "Formula language.htm"; do
    grep -qxF "$file" started || fail "velmora-window does not bring $file"
done
[ "$(cat "$own/Conversions/Length.cnv")" = mine ] || fail "velmora-window writes over the user's files"
