#!/bin/sh
# Makes what users get, in build/package/: a zip for Windows and a Debian package. The same commit
# gives the same bytes.
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
for preset in release windows; do
  make_package "$preset" >"$log" 2>&1 || { cat "$log"; exit 1; }
done
# The order and the times of its files and whose they are: what a zip says of the computer it is from.
strip-nondeterminism -t zip --timestamp "$SOURCE_DATE_EPOCH" "$packages"/*.zip
rm -rf "$packages/_CPack_Packages" "$log"
ls "$packages"
