#!/bin/sh
# ./run.sh in a clone with another cmake, which builds a program that prints its arguments: run_test.sh CLONE
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/bin" "$work/clone/tools"
cp "$1/run.sh" "$work/clone/"
cp "$1/tools/build.sh" "$1/tools/packages.sh" "$work/clone/tools/"
cat >"$work/bin/cmake" <<'CMAKE'
#!/bin/sh
mkdir -p build/release
if [ "$1" = --preset ]; then
    home=CMAKE_HOME_DIRECTORY:INTERNAL=$PWD
    [ -e build/release/CMakeCache.txt ] || echo "$home" >build/release/CMakeCache.txt
    grep -qxF "$home" build/release/CMakeCache.txt || { echo "the directory is different"; exit 1; }
    touch build/release/build.ninja
    exit
fi
echo "[0/2] Re-checking globbed directories..."
[ ! -e new ] || for step in 1 2 3 4 5 6 7 8; do echo "[$step/8] Building CXX object"; done
[ ! -e broken ] || { echo "error: broken"; exit 1; }
[ ! -e slow ] || { touch building; sleep 1; }
printf '#!/bin/sh\necho "$@"\n' >build/release/velmora
chmod +x build/release/velmora
rm -f new
CMAKE
printf '#!/bin/sh\necho "install ok installed 1"\n' >"$work/bin/dpkg-query"
chmod +x "$work/bin"/*
PATH=$work/bin:$PATH
cd "$work/clone"

expect() {
    [ "$2" = "$3" ] || { printf '%s: expected\n%s\nbut got\n%s\n' "$1" "$2" "$3" >&2; exit 1; }
}
both() { ./run.sh "$@" 2>&1; }

steps='release: 2 of 8
release: 4 of 8
release: 6 of 8
release: 8 of 8'
touch new
expect "The first run says what it does" "Building (release), about two minutes...
$steps
a b  c" "$(both a 'b  c')"
expect "With nothing to build it says nothing" "1" "$(both 1)"

mv "$work/clone" "$work/moved"
cd "$work/moved"
touch new
expect "A moved clone is configured again" "$steps
2" "$(both 2)"

touch broken
expect "A failure is explained" "error: broken
Building 'release' failed; all of it is in build/release.log
status 1" "$(both 3 | grep -v Re-checking; both 3 >/dev/null || echo "status $?")"
rm broken

touch slow
./run.sh 4 >first &
until [ -e building ]; do sleep 0.05; done
expect "A second run waits for the first" "Waiting for another build...
5" "$(both 5)"
wait $!
expect "The first one runs" 4 "$(cat first)"
