#!/bin/sh
# Builds the program for Linux and for Windows and runs every test: on Linux as shipped and under
# the sanitizers, for Windows under Wine. Then compares what the two builds did. Fails when anything
# fails.
set -eu
cd "$(dirname "$0")/.."

# A stage that fails does not keep the others from running.
stage() {
  name=$1
  shift
  echo "== $name"
  started=$(date +%s)
  "$@" || echo "$name" >>build/failed
  echo "== $name: $(($(date +%s) - started)) s"
}

build_and_test() {
  cmake --preset "$1" >"build/$1.log" 2>&1 || { cat "build/$1.log"; return 1; }
  cmake --build --preset "$1" >"build/$1.log" 2>&1 || { cat "build/$1.log"; return 1; }
  ctest --preset "$1"
}

scripts/setup.sh build windows browser package deploy
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
mkdir -p build
rm -f build/failed

# beside <log> <stage> <command...>: runs it while the stages after it run, up to `join`.
beside() {
  log=build/$1.log
  shift
  stage "$@" >"$log" 2>&1 &
}
join() {
  wait
  cat "$log"
}

# Tests under Wine wait more than they work, so the other platform is built meanwhile.
beside windows-stage windows build_and_test windows
stage release build_and_test release
stage asan build_and_test asan
stage fuzz scripts/fuzz.sh 3
# Debian's browser goes with Debian's Python.
stage page /usr/bin/python3 tests/kit/check_page.py build/release/bin/tolvanixkit build/release/page
join

stage rollout python3 tests/deploy/rollout_test.py build/release
stage package scripts/package.sh
# The Debian package takes as long again.
beside reproducible-stage reproducible tests/checks/check_reproducible.sh build/package windows
stage kit build/release/bin/tolvanixkit check build/windows/bin/sample-package \
  sdk/sample/computer.reg --library build/release/bin/sample-package/kivvalid.dll \
  --helper build/release/bin/sample-package/tolvanixhelper64/tolvanixhelper64.exe
stage parity python3 tests/checks/check_parity.py build/release build/windows
# Real files, where there are some, are read too.
stage answers python3 tests/checks/check_answers.py build/release build/windows \
  "${TOLVANIX_CORPUS:-../shared/corpus}"
stage packages tests/deploy/check_packages.sh build/package
join

[ ! -e build/failed ] || { echo "FAILED:" $(cat build/failed); exit 1; }
echo "All tests passed."
