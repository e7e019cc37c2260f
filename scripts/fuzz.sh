#!/bin/sh
# Fuzzes every target for some time, from the fixtures and, where there are some, from real files:
# fuzz.sh [seconds]   (60; 0: only the inputs to start from)
# Ends with 1 on a finding. Its input stays in build/fuzz/findings/, and what the target said.
set -eu

usage() {
  echo "fuzz.sh: $1; usage: fuzz.sh [seconds for each target]" >&2
  exit 2
}
[ $# -le 1 ] || usage "too many arguments"
seconds=${1-60}
case $seconds in
  '' | *[!0-9]*) usage "\"$seconds\" is no number of seconds" ;;
esac

cd "$(dirname "$0")/.."
build=$PWD/build/fuzz
scripts/setup.sh fuzz
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
mkdir -p "$build/findings"
{ cmake --preset fuzz && cmake --build --preset fuzz --target fuzz; } >"$build/build.log" 2>&1 ||
  { tail -n 40 "$build/build.log"; exit 1; }

corpus=${TOLVANIX_CORPUS:-../shared/corpus}
[ -d "$corpus" ] || corpus=
rm -rf "$build/seeds"
python3 fuzz/make_seeds.py "$build/seeds" ${corpus:+"$corpus"}

# Files of the targets are in memory, where there is such a place.
[ -d /dev/shm ] && TMPDIR=$(mktemp -d -p /dev/shm) || TMPDIR=$(mktemp -d)
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT

# Longer inputs find nothing more, and the time that one takes grows with its length.
longest_of() {
  case $1 in
    fuzz_inf | fuzz_inventory | fuzz_registry_export) echo 1400 ;;
    *) echo 500 ;;
  esac
}

run() {
  limit=-max_total_time=$seconds
  [ "$seconds" -gt 0 ] || limit=-runs=0
  # Weighing inputs by how rare their features are would take a fifth of the time.
  "$build/bin/$1" "$limit" -entropic=0 -max_len="$(longest_of "$1")" -timeout=20 \
    -print_final_stats=1 -artifact_prefix="$build/findings/$1-" "$build/seeds/$1" \
    >"$build/$1.log" 2>&1 || echo "exit code $?" >>"$build/$1.log"
}

# The target's line of the table; what a finding says is below it.
report() {
  log=$build/$1.log
  value() { sed -n "s/^stat::$1: *//p" "$log"; }
  findings=$(grep -a -c '^exit code' "$log") || :
  printf '%-22s %12s %8s %10s %9s\n' "$1" "$(value number_of_executed_units)" \
    "$(value average_exec_per_sec)" "$(value new_units_added)" "$findings"
  [ "$findings" -gt 0 ] || return 0
  status=1
  { grep -a -A2 '^FINDING' "$log" || grep -a -E 'ERROR|SUMMARY' "$log"; } | cut -c1-300
  sed -n "s/.*Test unit written to /  its input: /p" "$log"
  echo "  once more: build/fuzz/bin/$1 <input>; all that it said: build/fuzz/$1.log"
}

# As many at a time as there are processors.
status=0
printf '%-22s %12s %8s %10s %9s\n' target executions per_s new_paths findings
set -- fuzz_execution fuzz_inf fuzz_inventory fuzz_match fuzz_query fuzz_registry_export fuzz_text
while [ $# -gt 0 ]; do
  running=
  while [ $# -gt 0 ] && [ "$(echo "$running" | wc -w)" -lt "$(nproc)" ]; do
    run "$1" &
    running="$running $1"
    shift
  done
  wait
  for target in $running; do report "$target"; done
done
exit "$status"
