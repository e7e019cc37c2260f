#!/bin/sh
# Which lines and branches of src/, sdk/ and kit/ the tests reach, whole runs included: a table by
# folder, and build/coverage/report/index.html line by line. Branches that the compiler adds for
# exceptions do not count, and neither does what only a failing system reaches: the test in which
# calls fail would make those fail that write the counts.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build coverage

cmake --preset debug -B build/coverage -DCMAKE_CXX_FLAGS=--coverage >/dev/null
cmake --build build/coverage >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --test-dir build/coverage --output-on-failure -E '^(check\.|sdk\.|faults)' >build/coverage/tests.log ||
  { cat build/coverage/tests.log; exit 1; }
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

mkdir -p build/coverage/report
gcovr --root . build/coverage --filter src/ --filter sdk/ --filter kit/ \
  --exclude-throw-branches --exclude-unreachable-branches \
  --json-summary build/coverage/summary.json --html-details build/coverage/report/index.html
python3 - build/coverage/summary.json <<'PYTHON'
import collections, json, os, sys

folders = collections.defaultdict(collections.Counter)
for file in json.load(open(sys.argv[1]))["files"]:
    for folder in (os.path.dirname(file["filename"]), "all"):
        for what in ("line_covered", "line_total", "branch_covered", "branch_total"):
            folders[folder][what] += file[what]
print(f"{'folder':32}{'lines':>8}{'reached':>9}{'branches':>10}{'reached':>9}")
for folder, count in sorted(folders.items(), key=lambda item: (item[0] == "all", item)):
    lines = count["line_covered"] / max(count["line_total"], 1)
    branches = count["branch_covered"] / max(count["branch_total"], 1)
    print(f"{folder:32}{count['line_total']:8}{lines:9.1%}"
          f"{count['branch_total']:10}{branches:9.1%}")
PYTHON
