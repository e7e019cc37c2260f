#!/bin/sh
# Builds the program and shows its work on two computers: this one, and the one in sdk/sample/.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build demo
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

mkdir -p build
echo "== Building"
{ cmake --preset release && cmake --build --preset release --target tolvanix; } \
  >build/demo.log 2>&1 || { cat build/demo.log; exit 1; }

unset TOLVANIX_MACHINE
# The document as the program wrote it, broken into lines for the eye.
inventory() {
  echo "== Inventory of $1"
  build/release/bin/tolvanix -i -o "$PWD/build/inventory.xml"
  xmllint --format build/inventory.xml
}
inventory "this computer"
export TOLVANIX_MACHINE="$PWD/sdk/sample/computer.reg"
inventory "the sample computer (sdk/sample/computer.reg)"
