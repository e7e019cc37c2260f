#!/bin/sh
# Which lines and branches of src/, sdk/ and kit/ the tests reach, whole runs and those in which
# calls fail included: a table by folder, and build/coverage/report/index.html line by line.
# Branches are those of the source; what a compiler adds for exceptions is not among them.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build coverage
build=$PWD/build/coverage
profiles=$build/profiles

# Each process adds its counts to the file of its program, wherever it runs.
count="-fprofile-instr-generate=$profiles/%m.profraw -fcoverage-mapping"
cmake --preset debug -B "$build" -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_FLAGS="$count" -DCMAKE_CXX_FLAGS="$count" >/dev/null
cmake --build "$build" >/dev/null
rm -rf "$profiles" "$build/report"
mkdir -p "$profiles"
{
  ctest --test-dir "$build" --output-on-failure -E '^(check\.|sdk\.|faults)' &&
    cmake --build "$build" --target fault_sweep
} >"$build/tests.log" 2>&1 || { cat "$build/tests.log"; exit 1; }
# What Linux reads of the files that check_answers.py compares between the platforms.
python3 -B - <<'PYTHON'
import pathlib, sys, tempfile
sys.path.insert(0, "tests/checks")
import check_answers

with tempfile.TemporaryDirectory() as folder:
    check_answers.lay_out(pathlib.Path(folder), [])
    for kind in check_answers.cases.FILES:
        check_answers.answers(["build/coverage/bin/platform_answers", kind], f"{folder}/{kind}")
PYTHON

llvm-profdata merge -o "$build/counts" "$profiles"/*.profraw
set -- "$build/bin/unit_tests"
for program in tolvanix tolvanixkit platform_answers sample-package/kivvalid.dll \
  sample-package/tolvanixhelper64/tolvanixhelper64.exe; do
  set -- "$@" -object "$build/bin/$program"
done
set -- "$@" -instr-profile="$build/counts" -ignore-filename-regex='(tests|usr)/'
# The paths in the programs are relative to the root, which is relative to nothing.
llvm-cov show "$@" -path-equivalence="./build/coverage/.,$PWD" -show-branches=count -format=html \
  -output-dir="$build/report" 2>"$build/unused.log" # names functions that no program has kept
llvm-cov export "$@" -summary-only >"$build/summary.json" 2>>"$build/unused.log"
python3 - "$build/summary.json" <<'PYTHON'
import collections, json, os, sys

folders = collections.defaultdict(collections.Counter)
for file in json.load(open(sys.argv[1]))["data"][0]["files"]:
    path = file["filename"].replace("./build/coverage/./", "")
    top = "kit, all" if path.startswith("kit") else "src and sdk"
    for folder in (os.path.dirname(path), top):
        for what in ("lines", "branches"):
            for number in ("count", "covered"):
                folders[folder][what, number] += file["summary"][what][number]
print(f"{'folder':32}{'lines':>8}{'reached':>9}{'branches':>10}{'reached':>9}")
for folder, counts in sorted(folders.items(), key=lambda item: ("/" not in item[0], item)):
    line = f"{folder:32}"
    for what, width in (("lines", 8), ("branches", 10)):
        count = counts[what, "count"]
        line += f"{count:{width}}{counts[what, 'covered'] / max(count, 1):9.1%}"
    print(line)
PYTHON
