#!/bin/sh
# Builds Velmora and runs it:
#   ./run.sh                        opens the window, through Wine; where there is no display, converts in the terminal
#   ./run.sh --screenshot FILE.png  opens the window on a virtual screen and saves a picture of it
#   ./run.sh ARGS...                the velmora command with these arguments
set -eu
here=$(cd "$(dirname "$0")" && pwd)
start=$PWD
cd "$here"
. tools/build.sh
terminal=$here/build/release/velmora
window=$here/build/windows/Velmora.exe

# Brings a program up to date with a function. In a clone that cannot be written to, it is run as it is.
prepare() {
    program=$1
    shift
    if mkdir -p build 2>/dev/null && [ -w build ]; then
        alone "$@"
    elif [ -e "$program" ]; then
        export VELMORA_WINEPREFIX="${XDG_CACHE_HOME:-$HOME/.cache}/velmora/wine"
    else
        echo "Velmora is not built yet, and $here cannot be written to." >&2
        exit 1
    fi
}
make_window() {
    # shellcheck disable=SC2086  # lists of words
    need_packages $BUILD_PACKAGES $WINDOWS_PACKAGES "$@"
    build_preset windows --target shipped
}
make_terminal() {
    # shellcheck disable=SC2086  # a list of words
    need_packages $BUILD_PACKAGES
    build_preset release
}

case ${1:-} in
    --screenshot)
        [ $# -ge 2 ] || { echo "usage: ./run.sh --screenshot FILE.png" >&2; exit 2; }
        prepare "$window" make_window xvfb imagemagick xdotool
        cd "$start"
        exec "$here/tools/run-window" "$@"
        ;;
    '')
        if [ -n "${DISPLAY:-}" ]; then
            prepare "$window" make_window
            exec "$here/tools/run-window"
        fi
        prepare "$terminal" make_terminal
        echo "There is no display to open the window on; here is 26.2 miles in every unit, in the terminal:"
        exec "$terminal" 26.2 mi
        ;;
    *)
        prepare "$terminal" make_terminal
        cd "$start"
        exec "$terminal" "$@"
        ;;
esac
