#!/bin/sh
# Makes what users get, in build/package/: package.sh [windows] [release]   (both)
# A zip for Windows and a Debian package. The same commit gives the same bytes.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build windows package
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
umask 022
export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}" TZ=UTC

packages=$PWD/build/package
rm -rf "$packages"
mkdir -p "$packages"
log=$packages/package.log
make_package() {
  cmake --preset "$1" &&
    cmake --build --preset "$1" --target tolvanix tolvanixkit sample_package &&
    cpack --config "build/$1/CPackConfig.cmake" -B "$packages"
}
[ $# -gt 0 ] || set -- windows release
for preset in "$@"; do
  make_package "$preset" >"$log" 2>&1 || { cat "$log"; exit 1; }
done
# What a zip says of where it was made: the order and the times of its files, and whose they are.
find "$packages" -maxdepth 1 -name '*.zip' \
  -exec strip-nondeterminism -t zip --timestamp "$SOURCE_DATE_EPOCH" {} +
rm -rf "$packages/_CPack_Packages" "$log"
ls "$packages"
