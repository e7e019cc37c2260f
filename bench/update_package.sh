#!/bin/sh
# Measures updates (-u -c) of large packages: update_package.sh <folder with the built programs>
# Prints rows for run.sh, "what;measured;at most". Takes the validation library for tests, which
# answers with the document beside it.
set -eu
bin=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TOLVANIX_MACHINE="$(cd "$(dirname "$0")/.." && pwd)/sdk/sample/computer.reg"

# package <name> <devices> <distinct IDs> <INF files>: each file lists 50 IDs; no device is
# present, so that the search goes through all files.
package() {
  mkdir "$work/$1"
  cp "$bin/tolvanix" "$work/$1"
  cp "$bin/test_kivvalid.dll" "$work/$1/kivvalid.dll"
  echo '<P/>' >"$work/$1/package.xml"
  awk -v folder="$work/$1" -v devices="$2" -v ids="$3" -v files="$4" 'BEGIN {
    out = folder "/answer.txt"
    printf "<V>" >out
    for (i = 0; i < devices; ++i)
      printf "<Device bus=\"1\" device=\"2\" function=\"3\" vendorID=\"1DE4\" deviceID=\"%04X\" " \
        "subDeviceID=\"0001\" subVendorID=\"1DE4\" display=\"Card\"><Application " \
        "componentType=\"DRVR\" version=\"1.0\" display=\"Card Driver\"><Package version=\"2.0\"/>" \
        "</Application></Device>", i % ids >out
    printf "</V>" >out
    for (f = 0; f < files; ++f) {
      out = sprintf("%s/net%05d.inf", folder, f)
      printf "[Version]\nSignature=\"$Windows NT$\"\nClass=Net\n" \
        "ClassGuid={4d36e972-e325-11ce-bfc1-08002be10318}\n[Manufacturer]\nMaker=Models\n" \
        "[Models]\n" >out
      for (i = 0; i < 50; ++i)
        printf "%%Card%%=Install,PCI\\VEN_1DE4&DEV_%04X&SUBSYS_00011DE4\n", i >out
      printf "[Strings]\nCard=\"Card\"\n" >out
      close(out)
    }
  }'
}

# Seconds of processor time of an update with that package.
seconds() {
  hyperfine -N --ignore-failure --warmup 1 --runs 5 --export-csv "$work/time.csv" \
    "$work/$1/tolvanix -u -c -o $work/$1/out.xml" >/dev/null 2>&1
  awk -F, 'NR == 2 { print $(NF - 3) + $(NF - 2) }' "$work/time.csv"
}
row() { printf '%s;%s;%s\n' "$1" "$(awk -v a="$2" -v b="$3" 'BEGIN { printf "%.2f", a / b }')" "$4"; }

package base 1000 1000 20
package devices 4000 4000 20
package files 1000 1000 80
base=$(seconds base)
row 'update (-u -c), 20 INF files: 4,000 devices : 1,000' "$(seconds devices)" "$base" 5
row 'update, 1,000 devices: 80 INF files : 20' "$(seconds files)" "$base" 5

# The document apart: what the devices cost when there is no INF file to search.
package one 1 1 20
package same 10000 1 20
package document 10000 1 0
row 'update, 10,000 times the same device : one device and the document' "$(seconds same)" \
  "$(awk -v a="$(seconds one)" -v b="$(seconds document)" 'BEGIN { print a + b }')" 2
