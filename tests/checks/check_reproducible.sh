#!/bin/sh
# A second Windows build, from a copy of the sources in another folder, gives the same bytes:
# check_reproducible.sh <source folder> <tolvanix.exe>
set -eu
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
cd "$1"
cp -r CMakeLists.txt CMakePresets.json cmake src sdk kit "$copy"
cd "$copy"
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
{ cmake --preset windows -DBUILD_TESTING=OFF && cmake --build --preset windows --target tolvanix; } \
  >build.log 2>&1 || { cat build.log; exit 1; }
cmp "$2" build/windows/bin/tolvanix.exe
