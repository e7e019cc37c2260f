# Part of run.sh: inventories (-i) of sysfs trees.
for count in 512 4096 65536; do
  "$bin/generate_sysfs_tree" "$work/tree-$count" "$count"
done
# What is compared must be the same answer.
python3 tests/checks/check_lspci.py "$bin/tolvanix" "$work/tree-512" "$work/tree-4096"
on_tree() { TOLVANIX_MACHINE="$work/tree-$1" median "$work/tolvanix -i"; }

for count in 512 4096; do
  ours=$(on_tree "$count")
  lspci=$(median "lspci -O hwdb.disable=1 -O sysfs.path=$work/tree-$count/bus/pci -Dnmm")
  row "inventory (-i), $count devices : lspci" "$(ratio "$ours" "$lspci")" 0.5
done
runs=10
row 'inventory, 65,536 devices : 4,096' "$(ratio "$(on_tree 65536)" "$ours")" 20
runs=50
kilobytes=$(TOLVANIX_MACHINE="$work/tree-65536" peak "$work/tolvanix" -i)
row 'inventory, peak memory for a device, KB' "$(ratio "$kilobytes" 65536)" 8
