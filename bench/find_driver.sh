# Part of run.sh: the search of INF files for a hardware ID (-uhid -c).
id='PCI\VEN_1DE4&DEV_BEEF'
# drivers <folder> <files> <percent in UTF-16> [<devices> [<vendor>]]: the ID is in the last file.
drivers() {
  "$bin/generate_inf_files" "$work/$1" "$2" "$id" "$3" ${4:+"$4" ${5:+"$5"}}
  cp "$bin/tolvanix" "$work/$1"
}
search() { echo "$work/$1/tolvanix -uhid -w '$id' -c"; }

TOLVANIX_MACHINE=$PWD/sdk/sample/computer.reg
export TOLVANIX_MACHINE
runs=15
drivers ansi 1000 0
drivers twice 2000 0
drivers mixed 1000 40
drivers lines 1 0 33334
drivers fewer 1 0 8334
drivers vendor 200 0 1000 1DE4

row 'driver (-uhid -c) in the last of 1,000 INF files : grep -rilF' \
  "$(against "$(search ansi)" "grep -rilF --include=*.inf '$id' $work/ansi")" 1.2
row 'driver, 200 files, all IDs of its vendor : grep -rilF' \
  "$(against "$(search vendor)" "grep -rilF --include=*.inf '$id' $work/vendor")" 1.2
row 'driver, 40 % of the files in UTF-16 : rg -j1 -ilF' \
  "$(against "$(search mixed)" "rg -j1 -ilF -g *.inf '$id' $work/mixed")" 0.7
row 'driver, 2,000 INF files : 1,000' "$(against "$(search twice)" "$(search ansi)")" 2.2
row 'driver, one file with 100,000 model lines : 25,000' \
  "$(against "$(search lines)" "$(search fewer)")" 4.4
row 'driver, peak memory, MB' "$(ratio "$(peak "$work/ansi/tolvanix" -uhid -w "$id" -c)" 1024)" 4
