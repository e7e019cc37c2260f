#!/usr/bin/env python3
"""Writes inputs for the fuzz targets to start from: make_seeds.py <folder> [<folder of real files>]

They are made from the fixtures, the sample package and, where there are some, real files. Long ones
are cut at the end of a line, and lose nothing but what makes the targets slow.
"""

import hashlib
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LONGEST = 1400
LONGEST_DOCUMENT = 400  # each device of it costs much
PART = "\x1e"


def read(path):
    """The text of a file, a byte for each character unless it is UTF-16."""
    data = path.read_bytes()
    is_wide = data.startswith(b"\xff\xfe")
    return data.decode("utf-16", "replace") if is_wide else data.decode("latin-1")


def cut(text, end="\n", longest=LONGEST):
    """The text without what is too long, up to such an end."""
    return text if len(text) <= longest else text[: text.rfind(end, 0, longest) + 1]


class Seeds:
    def __init__(self, folder):
        self.folder = folder

    def add(self, target, data):
        if isinstance(data, str):
            data = data.encode("latin-1", "replace")
        folder = self.folder / f"fuzz_{target}"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / hashlib.sha1(data).hexdigest()).write_bytes(data)


def add_exports(seeds, exports):
    for path in exports:
        text = cut(read(path).replace("\r\n", "\n"), "\n\n")
        seeds.add("registry_export", text)
        seeds.add("registry_export", b"\xff\xfe" + text.encode("utf-16-le"))
        seeds.add("inventory", "r" + text)


def add_inf_files(seeds, files):
    for path in files:
        text = cut(read(path))
        seeds.add("inf", text)
        ids = [word.strip() for word in text.replace("\n", ",").split(",") if "VEN_" in word]
        seeds.add("match", "i" + PART.join(ids[:8]))
        seeds.add("text", "6" + PART.join(["Version", "Class", text[:500]]))


def add_documents(seeds, documents):
    for document in documents:
        seeds.add("execution", PART.join(["012", document, "<P/>", INF]))
        seeds.add("execution", PART.join(["cn", document, "\xff\xfe<\0P\0/\0>\0", INF]))
        for name, attribute in (("Device", "device"), ("Application", "version"), ("D", "display")):
            for place in "\0\x40":
                seeds.add("query", PART.join([name, attribute, place, document]))


def sysfs_tree(*functions):
    """Each function: name, driver, and the files in the order of fuzz_inventory.cpp."""
    return "\x1d".join(PART.join(function) for function in functions)


NETWORK = ["0000:00:19.0", "net", "PCI_CLASS=20000\nPCI_ID=1DE4:1502\nPCI_SUBSYS_ID=1DE0:0001\n"]
STORAGE = ["0001:a0:1f.7", "my-driver", "", "0x1de5\n", "0x1041\n", "0x1de0\n", "0x010601\n",
           "0x1100\n", "0x05\n", "", "", "1.2.3\n"]
ALIAS = ["10000:00:00.0", "", "DRIVER=x\n", "", "", "", "", "", "",
         "pci:v00001DE4d000029C0sv00001DE5sd00001100bc06sc00i00\n", "\xe4\x1d\xc0\x29\0\0\0\0\x07"]
FINDINGS = "".join(f'<Validation type="{kind}" result="false"><Message id="1">a &amp; b</Message>'
                   "</Validation>" for kind in ("info", "soft"))
APPLICATION = ('<Application componentType="DRVR" version="1.2" display="C">'
               '<Package version="A05"/></Application>')


def device(number, content):
    return (f'<Device vendorID="1DE4" deviceID="{number}" subDeviceID="04A3" subVendorID="ABCD" '
            f'bus="0003" device="0025" function="-1" display="A &lt;b&gt;">{content}</Device>')


SAMPLES = ['<?xml version="1.0"?><V>' + FINDINGS + device("1502", APPLICATION) + "</V>",
           "<V>" + device("0010", "") + device("1502", "") + device("1503", APPLICATION) + "</V>",
           '<V><Validation type="hard"/></V>', '<V><SPStatus result="true" reboot="false"/></V>',
           "<Devices><Device/><Device vendorID='1' ></Device></Devices>",
           "<Display><![CDATA[ a b ]]></Display>"]
INF = ('[Version]\nSignature="$Windows NT$"\nClass=Net\n[Manufacturer]\n%m%=M,NT\n[M]\nd=i,'
       "PCI\\VEN_1DE4&DEV_1502\n[M.NT]\ne=i,PCI\\VEN_1DE0&DEV_0010\n[Strings]\nm=V\n")
TEXTS = ["0a < b &amp;amp;lt; \"c\" & 'd' &gt;", "1 -0x1Fg", "1+2147483648", "1FFFFFFFF",
         "2\u00c3\u00a9 \u00f0\u009f\u0098\u0080 \u00ed\u00a0\u0080 \u00ff\x01",
         "3\xac\x20\x3d\xd8\0\xde\xfe\xff",
         "4a\0\x3d\xd8\0\xde\x3d\xd8", '5a "b c" \\\\"d \\"e"" f\\\\ "g""h"',
         "6" + PART.join(["a", "b", "[ A ] x\n;c\nB = 'd' \n[b]\nb=e"]),
         "7PCI " + PART + " pci\xff"]
LIST = "n" + "\x1d\xe4\x15\x02\x02\0\0" + "\x1d\xe5\x10\x41\x01\x06\x01" + (
    "# list\n1DE4  V\n\t1502  A network adapter\n\t\t1de0 0001  Board\n1de5  W\n\t1041\n"
    "C 01  Storage\n\t06  SATA\n\t\t01  AHCI\nC 02  Network\n")


def main():
    seeds = Seeds(Path(sys.argv[1]))
    folders = [ROOT / "tests/fixtures", ROOT / "sdk/sample", *map(Path, sys.argv[2:])]
    files = sorted(path for folder in folders for path in folder.rglob("*") if path.is_file())

    def ending(suffix):
        return [path for path in files if path.suffix == suffix]

    add_exports(seeds, ending(".reg"))
    add_inf_files(seeds, ending(".inf"))
    documents = [cut(read(path), ">", LONGEST_DOCUMENT) for path in ending(".xml")]
    add_documents(seeds, SAMPLES + documents)
    for tree in ((NETWORK,), (STORAGE, NETWORK), (ALIAS, STORAGE, NETWORK)):
        seeds.add("inventory", sysfs_tree(*tree))
    for text in TEXTS:
        seeds.add("text", text)
    seeds.add("match", LIST)
    seeds.add("match", "i" + PART.join(["PCI\\VEN_1DE4", "pci\\ven_1DE4&REV_1", "&REV", "P", ""]))


if __name__ == "__main__":
    main()
