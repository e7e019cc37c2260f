"""The inventory lists what lspci lists: check_lspci.py <program> [<sysfs tree>...]

The same functions with the same identifiers and places, on this computer and in the trees.
"""

import os
import re
import subprocess
import sys

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


def main():
    program, *trees = sys.argv[1:]
    computers = [(tree, ["-O", f"sysfs.path={tree}/bus/pci"]) for tree in trees]
    if os.path.isdir("/sys/bus/pci"):  # else lspci has nothing to look at
        computers.append(("", []))
    findings = 0
    for machine, options in computers:
        differences = set(listed_by_program(program, machine)) ^ set(listed_by_lspci(options))
        for difference in sorted(differences):
            print(f"{machine or 'this computer'}: only one lists {difference}")
        findings += len(differences)
    sys.exit(1 if findings else 0)


main()
