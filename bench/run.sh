#!/bin/sh
# Measures the program against tools that do comparable work, and prints one table of ratios:
# medians, files in the cache. No test depends on it.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build bench
cmake --preset release -B build/bench -DTOLVANIX_BENCH=ON -DBUILD_TESTING=OFF >/dev/null
cmake --build build/bench --target tolvanix replay_kivvalid generate_inf_files document_bench \
  helper_bench >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bin=$PWD/build/bench/bin
missed=0

# row <what> <measured> <target, at most>
row() {
  verdict=$(awk -v measured="$2" -v target="$3" \
    'BEGIN { print measured <= target ? "ok" : "MISSED" }')
  [ "$verdict" = ok ] || missed=$((missed + 1))
  printf '%-66s %9.2f %9s  %s\n' "$1" "$2" "$3" "$verdict"
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { print a / b }'; }

# Median seconds of a command, started without a shell. TOLVANIX_MACHINE says which computer.
median() {
  hyperfine -N --ignore-failure --warmup 3 --runs "${runs:-50}" --export-csv "$work/time.csv" \
    "$1" >/dev/null 2>&1
  awk -F, 'NR == 2 { print $(NF - 4) }' "$work/time.csv"
}
# The median of one command against that of another. They run in turns, because the speed of the
# machine may change over the seconds that each takes.
against() {
  python3 - "${runs:-50}" "$work/times.json" "$1" "$2" <<'PYTHON'
import json, statistics, subprocess, sys
runs, export, *commands = sys.argv[1:]
TURNS = 10
times = {command: [] for command in commands}
for _ in range(TURNS):
    for command in commands:
        hyperfine = ["hyperfine", "-N", "--ignore-failure", "--warmup", "1", "--export-json", export]
        subprocess.run([*hyperfine, "--runs", str(int(runs) // TURNS), command], capture_output=True, check=True)
        times[command] += json.load(open(export))["results"][0]["times"]
ours, other = (statistics.median(times[command]) for command in commands)
print(ours / other)
PYTHON
}
# Peak memory of a command in KB.
peak() {
  /usr/bin/time -o "$work/peak" -f %M "$@" >/dev/null 2>&1 || true
  tail -n 1 "$work/peak"
}
# benchmark <program of the bench folder> <argument>...: its medians into $work/benchmark.csv
benchmark() {
  program=$1
  shift
  "$bin/$program" "$@" --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
    --benchmark_format=csv \
    >"$work/benchmark.csv" 2>/dev/null
}
benchmark_median() { awk -F, -v name="\"$1_median\"" '$1 == name { print $3 }' "$work/benchmark.csv"; }

printf '%-66s %9s %9s\n' '' measured 'at most'
for part in start inventory document find_driver helper update_package sizes; do
  . "bench/$part.sh"
done
[ "$missed" -eq 0 ] || echo "$missed missed"
