# Part of run.sh: inventories (-i) of sysfs trees.
tree() {
  python3 tests/checks/sysfs_tree.py "$work/tree-$1" "$1"
  sync # the disk is not to write while something is measured
}
on_tree() { TOLVANIX_MACHINE="$work/tree-$1" median "$work/tolvanix -i"; }

for count in 512 4096; do
  tree "$count"
  # What is compared must be the same result.
  python3 tests/checks/check_lspci.py "$bin/tolvanix" "$work/tree-$count"
  lspci="lspci -O hwdb.disable=1 -O sysfs.path=$work/tree-$count/bus/pci -Dnmm"
  row "inventory (-i), $count devices : lspci" \
    "$(TOLVANIX_MACHINE="$work/tree-$count" against "$work/tolvanix -i" "$lspci")" 0.45
done
tree 65536
runs=10
row 'inventory, 65,536 devices : 4,096' "$(ratio "$(on_tree 65536)" "$(on_tree 4096)")" 20
runs=50
kilobytes=$(TOLVANIX_MACHINE="$work/tree-65536" peak "$work/tolvanix" -i)
row 'inventory, peak memory for a device, KB' "$(ratio "$kilobytes" 65536)" 8

# configuration <folder> <vendors>: the filter of the inventory, a section for each vendor.
configuration() {
  mkdir "$work/$1"
  cp "$bin/tolvanix" "$work/$1"
  awk -v vendors="$2" 'BEGIN {
    for (i = 0; i < vendors; ++i) printf "[V%04d]\nVendorID=%04X\n", i, i
  }' >"$work/$1/DriverConfiguration.ini"
}
on_sample() { echo "$work/$1/tolvanix -i"; }
configuration vendors 8000
configuration fewer_vendors 2000
row 'inventory, DriverConfiguration.ini of 8,000 vendors : 2,000' \
  "$(TOLVANIX_MACHINE=$PWD/sdk/sample/computer.reg \
    against "$(on_sample vendors)" "$(on_sample fewer_vendors)")" 4.4
