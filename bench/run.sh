#!/bin/sh
# Measures the program against tools that do comparable work, and prints one table of ratios:
# medians, files in the cache. No test depends on it.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build bench
cmake --preset release -B build/bench -DTOLVANIX_BENCH=ON >/dev/null
cmake --build build/bench \
  --target tolvanix generate_sysfs_tree generate_inf_files document_bench >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bin=$PWD/build/bench/bin
cp "$bin/tolvanix" "$work"
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
on_tree() { TOLVANIX_MACHINE="$work/tree-$1" median "$2"; }

printf '%-66s %9s %9s\n' '' measured 'at most'

echo 'int main(void) { return 0; }' >"$work/nothing.c"
cc -O2 -static -o "$work/nothing" "$work/nothing.c"
runs=500
row 'start (-v) : a static C program that does nothing' \
  "$(ratio "$(median "$work/tolvanix -v")" "$(median "$work/nothing")")" 1.5
runs=50

for count in 512 4096 65536; do
  "$bin/generate_sysfs_tree" "$work/tree-$count" "$count"
done
inventory="$work/tolvanix -i"
for count in 512 4096; do
  ours=$(on_tree "$count" "$inventory")
  lspci=$(median "lspci -O hwdb.disable=1 -O sysfs.path=$work/tree-$count/bus/pci -Dnmm")
  row "inventory (-i), $count devices : lspci" "$(ratio "$ours" "$lspci")" 0.5
done
runs=10
row 'inventory, 65,536 devices : 4,096' "$(ratio "$(on_tree 65536 "$inventory")" "$ours")" 20
kilobytes=$(TOLVANIX_MACHINE="$work/tree-65536" /usr/bin/time -f %M $inventory 2>&1 >/dev/null)
row 'inventory, peak memory for a device, KB' "$(ratio "$kilobytes" 65536)" 8

"$bin/document_bench" --benchmark_repetitions=5 --benchmark_format=csv \
  >"$work/document.csv" 2>/dev/null
document() { awk -F, -v name="\"$1_median\"" '$1 == name { print $3 }' "$work/document.csv"; }
row 'document of 4,096 devices, built : pugixml, saved' \
  "$(ratio "$(document Build/4096)" "$(document PugixmlSave/4096)")" 5
row 'document of 4,096 devices, read : pugixml, loaded' \
  "$(ratio "$(document Read/4096)" "$(document PugixmlLoad/4096)")" 5
row 'document, built, 65,536 devices : 4,096' \
  "$(ratio "$(document Build/65536)" "$(document Build/4096)")" 20
row 'document, read, 65,536 devices : 4,096' \
  "$(ratio "$(document Read/65536)" "$(document Read/4096)")" 20

[ "$missed" -eq 0 ] || echo "$missed missed"
