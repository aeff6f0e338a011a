#!/bin/sh
# Builds Velmora and runs it:
#   ./run.sh                        opens the window, through Wine; where there is no display, converts in the terminal
#   ./run.sh --screenshot FILE.png  opens the window on a virtual screen and saves a picture of it
#   ./run.sh ARGS...                the velmora command with these arguments
set -eu
here=$(cd "$(dirname "$0")" && pwd)
start=$PWD
cd "$here"
. tools/packages.sh

# What the preparations say is no output of the program.
prepare_window() {
    # shellcheck disable=SC2086  # lists of words
    need_packages $BUILD_PACKAGES $WINDOWS_PACKAGES "$@" >&2
    build_preset windows --target shipped
}
prepare_terminal() {
    # shellcheck disable=SC2086  # a list of words
    need_packages $BUILD_PACKAGES >&2
    build_preset release
}

case ${1:-} in
    --screenshot)
        [ $# -ge 2 ] || { echo "usage: ./run.sh --screenshot FILE.png" >&2; exit 2; }
        prepare_window xvfb imagemagick xdotool
        cd "$start"
        exec "$here/tools/run-window" "$@"
        ;;
    '')
        if [ -n "${DISPLAY:-}" ]; then
            prepare_window
            exec "$here/tools/run-window"
        fi
        prepare_terminal
        echo "There is no display to open the window on; here is 26.2 miles in every unit, in the terminal:"
        exec build/release/velmora convert Length mi 26.2
        ;;
    *)
        prepare_terminal
        cd "$start"
        exec "$here/build/release/velmora" "$@"
        ;;
esac
