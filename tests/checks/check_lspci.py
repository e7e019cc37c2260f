"""The inventory lists what lspci lists: check_lspci.py <program> [<sysfs tree>]

The same functions with the same identifiers, places and names, on this computer and in the tree; without
one, in a tree of four domains.
"""

import collections
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

import sysfs_tree

FUNCTIONS = 1200

# As the document says them; lspci has no line for those of a function without a subsystem.
IDENTIFIERS = {"vendorID": "Vendor", "deviceID": "Device", "subDeviceID": "SDevice", "subVendorID": "SVendor"}
PLACE = ["bus", "device", "function"]
DOMAINS = 256  # that a place has room for


def output_of(*command, **environment):
    run = subprocess.run(command, env={**os.environ, **environment}, stdout=subprocess.PIPE, check=True)
    return run.stdout.decode()


def listed_by_program(program, machine):
    document = xml.etree.ElementTree.fromstring(output_of(program, "-i", TOLVANIX_MACHINE=machine))
    for device in document.iter("Device"):
        place = [int(device.get(name)) for name in PLACE]
        yield (*place, *map(device.get, IDENTIFIERS), device.get("display"))


def split_name(field):
    """"Ethernet controller [0200]": the name, and the number in hexadecimal."""
    return re.fullmatch(r"(.*) \[(\w+)\]", field).groups()


def name_of(fields):
    # What the list of names lacks is called so by lspci.
    for kind in ["Device", "Class"]:
        name, _ = split_name(fields[kind])
        if name != kind:
            return name
    return "PCI Device"


def listed_by_lspci(options):
    functions = []
    for record in output_of("lspci", *options, "-O", "hwdb.disable=1", "-Dnnvmm").strip().split("\n\n"):
        fields = dict(line.split(":\t") for line in record.splitlines())
        slot = [int(number, 16) for number in re.split("[:.]", fields["Slot"])]
        numbers = [split_name(fields.get(name, " [0000]"))[1] for name in IDENTIFIERS.values()]
        functions.append((slot, [number.upper() for number in numbers], name_of(fields)))
    domains = {slot[0] for slot, _, _ in functions}
    unused = iter(sorted(set(range(DOMAINS)) - domains))
    # The large ones move into the room that the small ones leave, while there is any.
    room = {domain: domain if domain < DOMAINS else next(unused, None) for domain in sorted(domains)}
    for (domain, bus, device, function), numbers, name in functions:
        if room[domain] is not None:
            yield (room[domain] * 256 + bus, device, function, *numbers, name)


def findings(program, machine, *options):
    ours = collections.Counter(listed_by_program(program, machine))
    theirs = collections.Counter(listed_by_lspci(options))
    return [f"{machine or 'this computer'}: only {lister} has {function}"
            for lister, more in [("the inventory", ours - theirs), ("lspci", theirs - ours)]
            for function in sorted(more.elements())]


def findings_in_tree(program, tree):
    return findings(program, tree, "-O", f"sysfs.path={tree}/bus/pci")


def main():
    program, *trees = sys.argv[1:]
    found = [line for tree in trees for line in findings_in_tree(program, tree)]
    if not trees:
        with tempfile.TemporaryDirectory() as tree:
            sysfs_tree.make(tree, FUNCTIONS)
            found += findings_in_tree(program, tree)
    if os.path.isdir("/sys/bus/pci"):  # else lspci has nothing to look at
        found += findings(program, "")
    print("\n".join(found))
    sys.exit(1 if found else 0)


main()
