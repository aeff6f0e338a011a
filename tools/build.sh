# Sourced by run.sh and test.sh in the clone's folder: builds what they run. Messages go to standard error; there are
# none when everything is up to date.
. tools/packages.sh

# Runs a function while no other run.sh or test.sh of this clone installs or builds.
alone() (
    mkdir -p build
    exec 9>build/lock
    if ! flock -n 9; then
        echo "Waiting for another build..." >&2
        flock 9
    fi
    # A server that a command leaves behind must not keep the lock.
    "$@" 9>&-
)

# Configures and builds a preset. When that fails, the compiler's own words are shown.
build_preset() {
    preset=$1
    shift
    forget_moved_builds
    [ -e "build/$preset/build.ninja" ] || echo "Building ($preset), about two minutes..." >&2
    export NINJA_STATUS='[%f/%t] '
    { { cmake --preset "$preset" && cmake --build --preset "$preset" "$@"; } </dev/null 2>&1 || echo FAILED; } |
        show_progress "$preset" >"build/$preset.log" && return
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "build/$preset.log" | tail -n 100 >&2
    echo "Building '$preset' failed; all of it is in build/$preset.log" >&2
    return 1
}

# CMake refuses a cache that was written in another folder, from where the clone was moved or copied.
forget_moved_builds() {
    for cache in build/*/CMakeCache.txt; do
        [ -e "$cache" ] || continue
        source=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache")
        [ "$source" -ef . ] || rm -rf "$cache" "${cache%/*}/CMakeFiles"
    done
}

# Passes on what a build writes and shows how far it is: in one line that is rewritten on a terminal, elsewhere in a line
# for each quarter. False when a line is FAILED.
show_progress() {
    quarter=1
    failed=0
    while IFS= read -r line; do
        case $line in
            FAILED) failed=1 ;;
            *) printf '%s\n' "$line" ;;
        esac
        case $line in
            *'] Re-'*) continue ;; # only looks whether there is anything to do
            '['*/*'] '*) ;;
            *) continue ;;
        esac
        steps=${line%%]*}
        step=${steps%/*}
        step=${step#?}
        steps=${steps#*/}
        if [ -t 2 ]; then
            printf '\r%s: %s of %s ' "$1" "$step" "$steps" >&2
        elif [ $((step * 4)) -ge $((quarter * steps)) ]; then
            echo "$1: $step of $steps" >&2
            quarter=$((step * 4 / steps + 1))
        fi
    done
    [ ! -t 2 ] || printf '\r%40s\r' '' >&2
    return $failed
}
