"""The inventory lists what lspci lists: check_lspci.py <program> [<sysfs tree>]

The same functions with the same identifiers, places and names, in the same order, on this computer
and in the tree; without one, in a tree of several domains.
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

import sysfs_tree

FUNCTIONS = 1300

# As the document says them; lspci has no line for those of a function without a subsystem.
IDENTIFIERS = {
    "vendorID": "Vendor", "deviceID": "Device", "subDeviceID": "SDevice", "subVendorID": "SVendor"
}
PLACE = ["bus", "device", "function"]
DOMAINS = 256  # that a place has room for


def output_of(*command, **environment):
    return subprocess.check_output(command, env={**os.environ, **environment}, text=True)


def listed_by_program(program, machine):
    document = xml.etree.ElementTree.fromstring(output_of(program, "-i", TOLVANIX_MACHINE=machine))
    for device in document.iter("Device"):
        place = [int(device.get(name)) for name in PLACE]
        yield str((*place, *map(device.get, IDENTIFIERS), device.get("display")))


def split_name(field):
    """"Ethernet controller [0200]": the name, and the number in hexadecimal."""
    return re.fullmatch(r"(.*) \[(\w+)\]", field).groups()


def name_of(fields):
    # What the list of names lacks is called so by lspci.
    names = {kind: split_name(fields[kind])[0] for kind in ["Device", "Class"]}
    return next((name for kind, name in names.items() if name != kind), "PCI Device")


def listed_by_lspci(options):
    output = output_of("lspci", *options, "-O", "hwdb.disable=1", "-Dnnvmm")
    records = [dict(re.findall("(.*):\t(.*)", record)) for record in output.strip().split("\n\n")]
    slots = [[int(number, 16) for number in re.split("[:.]", fields["Slot"])] for fields in records]
    domains = sorted({domain for domain, *_ in slots})
    unused = iter(sorted(set(range(DOMAINS)) - set(domains)))
    # The large ones move into the room that the small ones leave, while there is any.
    room = {domain: domain if domain < DOMAINS else next(unused, None) for domain in domains}
    for (domain, bus, device, function), fields in zip(slots, records):
        numbers = [split_name(fields.get(name, " [0000]"))[1] for name in IDENTIFIERS.values()]
        if room[domain] is not None:
            place = (room[domain] * 256 + bus, device, function)
            yield str((*place, *map(str.upper, numbers), name_of(fields)))


def findings(program, machine, *options):
    ours, theirs = [*listed_by_program(program, machine)], [*listed_by_lspci(options)]
    where = machine or "this computer"
    return difflib.unified_diff(ours, theirs, f"inventory of {where}", "lspci", n=0, lineterm="")


def main():
    program, *trees = sys.argv[1:]
    found = []
    with tempfile.TemporaryDirectory() as made:
        if not trees:
            sysfs_tree.make(made, FUNCTIONS)
        for tree in trees or [made]:
            found += findings(program, tree, "-O", f"sysfs.path={tree}/bus/pci")
    if os.path.isdir("/sys/bus/pci"):  # else lspci has nothing to look at
        found += findings(program, "")
    print("\n".join(found))
    sys.exit(1 if found else 0)


main()
