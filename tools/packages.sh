# Sourced by tools/build.sh: which Debian packages each job needs, and how they get here.

BUILD_PACKAGES="g++ cmake ninja-build libtomlplusplus-dev libfmt-dev
    libcurl4-openssl-dev libedit-dev"
WINDOWS_PACKAGES="g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 wine wine64 fonts-wine"
TEST_PACKAGES="libgtest-dev googletest clang clang-format clang-tidy libclang-rt-14-dev python3 git xvfb imagemagick
    lintian man-db unzip dpkg-dev tzdata>=2026f"

# Installs missing packages, also those older than a version given with ">=". Silent and offline when there are none.
need_packages() {
    missing=
    for package in "$@"; do
        name=${package%%>=*}
        least=${package#"$name"}
        found=$(dpkg-query -W -f '${Status} ${Version}' "$name" 2>/dev/null || true)
        case $found in
        "install ok installed "*) dpkg --compare-versions "${found##* }" ge "${least#>=}" && continue ;;
        esac
        missing="$missing $name"
    done
    [ -n "$missing" ] || return 0

    echo "Installing:$missing" >&2
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    if [ -n "$as_root" ] && ! command -v sudo >/dev/null; then
        echo "These packages are missing and only root can install them:$missing" >&2
        return 1
    fi
    log=$(mktemp)
    # shellcheck disable=SC2086  # a list of words
    if ! { $as_root apt-get update && DEBIAN_FRONTEND=noninteractive $as_root \
        apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        echo "Could not install:$missing" >&2
        return 1
    fi
    rm -f "$log"
}
