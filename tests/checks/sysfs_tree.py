"""Makes a sysfs tree of a made-up computer: sysfs_tree.py <folder> <count>

A tree of that many PCI functions, to stand in place of /sys (TOLVANIX_MACHINE=<folder>), with the
files that the program and lspci read (lspci -O sysfs.path=<folder>/bus/pci). The same count gives
the same tree. Eight functions to a device, 32 devices to a bus, buses of the domains in turns; the
vendors and devices are of many kinds, most of them in pci.ids.
"""

import os
import struct
import sys

# Of real makers, so that the list of names has them: vendor, first device number, how many device
# numbers from there on are taken, class, driver
MODELS = [
    (0x8086, 0x1500, 0x90, 0x020000, "e1000e"),
    (0x8086, 0x9D00, 0x80, 0x060400, "pcieport"),
    (0x10DE, 0x1B80, 0x80, 0x030000, "nouveau"),
    (0x1022, 0x1440, 0x60, 0x060000, ""),
    (0x14E4, 0x1600, 0xA0, 0x020000, "tg3"),
    (0x1000, 0x0050, 0x50, 0x010700, "mpt3sas"),
    (0x1AF4, 0x1040, 0x20, 0x010000, "virtio-pci"),
    (0x1DE0, 0x0000, 0x1000, 0x0C0330, "xhci_hcd"),
]
# That of most computers, those of virtual ones, that of a storage controller with a domain of its
# own, and one whose number another could get.
DOMAINS = [0, 0x100, 0xFFFF, 0x10000, 2]


def write(folder, **files):
    os.makedirs(folder)
    for name, content in files.items():
        with open(f"{folder}/{name}", "wb", buffering=0) as file:
            file.write(content if isinstance(content, bytes) else f"{content}\n".encode())


def add_driver(root, driver, version):
    write(f"{root}/module/{driver}", version=version)
    os.makedirs(f"{root}/bus/pci/drivers/{driver}")
    os.symlink(f"../../../../module/{driver}", f"{root}/bus/pci/drivers/{driver}/module")


def add_function(root, number):
    vendor, first_device, devices, code, driver = MODELS[number % len(MODELS)]
    device = first_device + number // 8 * 7 % devices
    sub_vendor = vendor if number % 3 == 0 else 0x1028
    sub_device = number * 5 & 0xFFFF
    revision = number % 17
    bus, domain = number >> 8, f"{DOMAINS[(number >> 8) % len(DOMAINS)]:04x}"
    address = f"{domain}:{bus // len(DOMAINS):02x}:{number >> 3 & 0x1F:02x}.{number & 7:x}"
    place = f"devices/pci{domain}:00/{address}"
    modalias = (
        f"pci:v{vendor:08X}d{device:08X}sv{sub_vendor:08X}sd{sub_device:08X}"
        f"bc{code >> 16:02X}sc{code >> 8 & 0xFF:02X}i{code & 0xFF:02X}"
    )
    uevent = (
        f"PCI_CLASS={code:X}\nPCI_ID={vendor:04X}:{device:04X}\n"
        f"PCI_SUBSYS_ID={sub_vendor:04X}:{sub_device:04X}\n"
        f"PCI_SLOT_NAME={address}\nMODALIAS={modalias}"
    )
    write(
        f"{root}/{place}",
        vendor=f"0x{vendor:04x}",
        device=f"0x{device:04x}",
        **{"class": f"0x{code:06x}"},
        revision=f"0x{revision:02x}",
        subsystem_vendor=f"0x{sub_vendor:04x}",
        subsystem_device=f"0x{sub_device:04x}",
        irq=0,
        resource="\n".join(["0x0000000000000000 0x0000000000000000 0x0000000000000000"] * 13),
        # The standard header of the configuration space, type 0 (PCI Local Bus 3.0, 6.1).
        config=struct.pack(
            "<2H4xI32x2H16x", vendor, device, code << 8 | revision, sub_vendor, sub_device
        ),
        modalias=modalias,
        uevent=f"DRIVER={driver}\n{uevent}" if driver else uevent,
    )
    os.symlink(f"../../../{place}", f"{root}/bus/pci/devices/{address}")
    if driver:
        os.symlink(f"../../../bus/pci/drivers/{driver}", f"{root}/{place}/driver")


def make(root, count):
    os.makedirs(f"{root}/bus/pci/devices")
    for number, driver in enumerate((driver for *_, driver in MODELS if driver), 1):
        add_driver(root, driver, f"{number}.{number * 7}.0-k")
    for number in range(count):
        add_function(root, number)


if __name__ == "__main__":
    make(sys.argv[1], int(sys.argv[2]))
