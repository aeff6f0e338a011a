#!/bin/sh
# Measures the terminal command as a user meets it: one conversion, and the same as a question, as whole processes beside
# GNU units (and qalc where it is installed), and a stream of numbers. Needs Debian's hyperfine and units, and cmake --build --preset release.
# usage: bench/whole_process.sh [LINES]     LINES of the stream, 5,000,000 unless given
set -eu
cd "$(dirname "$0")/.."
velmora=build/release/velmora
lines=${1:-5000000}
for tool in hyperfine units "$velmora"; do
    command -v "$tool" >/dev/null || { echo "$tool is missing" >&2; exit 1; }
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Columns of hyperfine's tables: command, mean, stddev, median, user, system, min, max, all in seconds. Other work on the
# machine disturbs the processor time (user and system) least.
hyperfine --shell=none --warmup 50 --runs 1000 --export-csv "$scratch/one.csv" \
    "$velmora convert Length mi 26.2 --to km" "units -t '26.2 mile' km" "$velmora 26.2 mi in km"
if command -v qalc >/dev/null; then
    hyperfine --shell=none --warmup 5 --runs 50 "qalc -t '26.2 mi to km'"
fi
seq "$lines" >"$scratch/numbers"
hyperfine --warmup 1 --runs 5 --export-csv "$scratch/stream.csv" \
    "$velmora convert Length mi - --to km --raw <$scratch/numbers"

awk -F, 'NR > 1 { median[NR] = $4; cpu[NR] = $5 + $6 }
    END {
        printf "velmora / units: %.2f by median time, %.2f by processor time\n", median[2] / median[3], cpu[2] / cpu[3]
        printf "question / convert: %.2f by median time, %.2f by processor time\n", median[4] / median[2], cpu[4] / cpu[2]
    }' "$scratch/one.csv"
awk -F, -v millions="$lines"e-6 'NR > 1 {
        printf "stream: %.2f million lines a second by median time, %.2f by processor time\n", millions / $4, millions / ($5 + $6)
    }' "$scratch/stream.csv"
