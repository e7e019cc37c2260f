"""The inventory lists what lspci lists: check_lspci.py <program> [<sysfs tree>]

The same functions with the same identifiers and places, on this computer and in the tree; without
one, in a tree so large that more than one thread reads it.
"""

import os
import re
import subprocess
import sys
import tempfile

import sysfs_tree

LARGE = 1200

# The identifiers in the order of the document; a function without a subsystem has zeros.
IDENTIFIERS = ["Vendor", "Device", "SDevice", "SVendor"]


def answer(*command, **environment):
    run = subprocess.run(command, env={**os.environ, **environment}, stdout=subprocess.PIPE, check=True)
    return run.stdout.decode()


def listed_by_program(program, machine):
    devices = re.findall(r"<Device (.*?)display=", answer(program, "-i", TOLVANIX_MACHINE=machine))
    rows = [re.findall(r'"(\w+)"', device) for device in devices]
    return sorted((*map(int, row[4:]), *row[:4]) for row in rows)


def listed_by_lspci(options):
    functions = []
    for record in answer("lspci", *options, "-Dnvmm").strip().split("\n\n"):
        fields = dict(line.split(":\t") for line in record.splitlines())
        domain, bus, device, function = (int(n, 16) for n in re.split("[:.]", fields["Slot"]))
        identifiers = [fields.get(name, "0000").upper() for name in IDENTIFIERS]
        functions.append(((domain * 256 + bus) & 0xFFFF, device, function, *identifiers))
    return sorted(functions)


def findings(program, machine, *options):
    differences = set(listed_by_program(program, machine)) ^ set(listed_by_lspci(options))
    return [f"{machine or 'this computer'}: only one lists {d}" for d in sorted(differences)]


def findings_in_tree(program, tree):
    return findings(program, tree, "-O", f"sysfs.path={tree}/bus/pci")


def main():
    program, *trees = sys.argv[1:]
    found = [line for tree in trees for line in findings_in_tree(program, tree)]
    if not trees:
        with tempfile.TemporaryDirectory() as tree:
            sysfs_tree.make(tree, LARGE)
            found += findings_in_tree(program, tree)
    if os.path.isdir("/sys/bus/pci"):  # else lspci has nothing to look at
        found += findings(program, "")
    print("\n".join(found))
    sys.exit(1 if found else 0)


main()
