#!/bin/sh
# Builds the program and shows its work: the inventory of this computer and of a sample one, then
# the sample one's drivers updated, first one by its hardware ID, then all that a package brings.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build demo
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

mkdir -p build
echo "== Building"
{ cmake --preset release &&
  cmake --build --preset release --target tolvanix sample_package tolvanixkit; } \
  >build/demo.log 2>&1 || { cat build/demo.log; exit 1; }

# The program with a package around it, and a computer that it may change.
package=$PWD/build/demo
rm -rf "$package"
cp -r build/release/bin/sample-package "$package"
cp sdk/sample/computer.reg "$package"

# run <title> <arguments>: the document as the program wrote it, broken into lines for the eye.
run() {
  echo
  echo "== $1"
  shift
  echo "\$ tolvanix $*"
  status=0
  "$package/tolvanix" "$@" -o "$package/result.xml" || status=$?
  xmllint --format "$package/result.xml"
  echo "exit code $status"
}

run "Inventory of this computer" -i
export TOLVANIX_MACHINE="$package/computer.reg"
run "Inventory of the sample computer (sdk/sample/computer.reg)" -i
mv "$package/result.xml" "$package/before.xml"
run "Its network adapter's driver, by hardware ID" \
  -uhid -w 'PCI\VEN_1DE0&DEV_0010&SUBSYS_00011DE0'
run "Inventory: the adapter's driver is new" -i
run "The sample package: it finds the storage controller's driver older" -u
run "Inventory: so is the controller's" -i
mv "$package/result.xml" "$package/after.xml"
run "The package once more: nothing to do" -u

echo
echo "== The sample computer before and after"
kit=build/release/bin/tolvanixkit
"$kit" report "$package/before.xml" "$package/after.xml"
"$kit" report --format html -o build/demo/report.html "$package/before.xml" "$package/after.xml"
echo "The same as a page: build/demo/report.html"
