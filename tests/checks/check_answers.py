"""The stand-in for Windows answers what Wine answers:
check_answers.py <release build> <windows build> [folder]

Lets tests/differential/platform_answers.cpp, built for Linux and for Windows, tell what the
platform reads in INF files, INI files and registry exports: those of the project, those of
answer_cases.py in several encodings, and where there is a folder of real ones (`inf`, `reg`) those
too. Their answers must be the same line by line.
"""

import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import answer_cases as cases

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Files of the project in which Wine departs: reg.exe reads no line end in a text; the last
# character of a quoted value that just fits is cut.
DEPARTURES = {"inf": [], "profile": ["odd_devices.ini"], "devices": ["import_rules.reg"]}
# Wine knows no language sections in INF files. A language that no file has a section for makes the
# stand-in read the general one too.
NO_LANGUAGE = (
    cases.REG_HEAD + "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Nls\\Language]\n"
    '"Default"="0c51"\n'
)
# Wine reads the class of an INF file as an INI file has it: with the comments after values and the
# %names% in them, from the first section alone. The stand-in reads it as published.
CLASS_READ_OTHERWISE = re.compile(
    rb"^\s*(?:signature|class|classguid)\s*=[^\n]*[;%]|^[^\w;]*\[version\].*^\s*\[version\]",
    re.IGNORECASE | re.MULTILINE | re.DOTALL,
)
# The devices that Wine itself has. For Wine also a key without any property is a device, when the
# import has added a ClassGUID.
NOT_COMPARED = re.compile(r"\|Wine |MONITOR.*\{4D36E96E|^( error 13){5}$")


def encodings(text, kind):
    if isinstance(text, bytes):
        return {"": text}
    dos = text.replace("\n", "\r\n")
    files = {"": text.encode(), ".utf8": dos.encode("utf-8-sig"), ".utf16": cases.utf16(dos)}
    if kind != "devices":  # what is not UTF-16 must be ASCII for Wine; the import converts it
        files |= {".crlf": dos.encode(), ".utf16be": cases.utf16(dos, "be")}
    return files


def lay_out(folder, real):
    """Puts the files into a folder for each kind."""
    for kind, table in cases.FILES.items():
        (folder / kind).mkdir()
        for name, text in table.items():
            for suffix, data in encodings(text, kind).items():
                (folder / kind / (name + suffix)).write_bytes(data)
    patterns = {"inf": "*.[Ii][Nn]*", "profile": "*.[Ii][Nn]*", "devices": "*.reg"}
    for kind, pattern in patterns.items():
        for root in (ROOT / "sdk", ROOT / "tests/fixtures", *real):
            for file in root.rglob(pattern):
                shutil.copy(file, folder / kind / file.name)
    # A real computer's devices with its drivers, which two exports hold.
    for file in (folder / "devices").glob("*__Enum.reg"):
        drivers = file.with_name(file.name.replace("Enum", "Control_Class"))
        both = file.read_text("utf-16") + drivers.read_text("utf-16").partition("\n")[2]
        file.write_bytes(both.encode("utf-16"))


def answers(command, folder, **environment):
    """The lines for each file."""
    done = subprocess.run(
        [*command, folder],
        env={**os.environ, **environment},
        check=True,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,  # complaints of the exports with a fault
    )
    text = done.stdout.replace(b"\r\n", b"\n").decode(errors="replace")
    text = re.sub("\ufffd+", "\ufffd", text).removesuffix("\n")
    parts = [part.split("\n") for part in ("\n" + text).split("\n== ")[1:]]
    return {name: lines for name, *lines in parts}


def comparable(kind, file, lines):
    """Without what Wine has of its own."""
    if kind == "devices":  # Wine sorts by the names of keys
        return sorted(line for line in lines if not NOT_COMPARED.search(line))
    if kind == "inf" and CLASS_READ_OTHERWISE.search(file.read_bytes().replace(b"\0", b"")):
        lines = [line for line in lines if not line.startswith("class|")]
    # For Wine a quote without an end takes the carriage return along.
    return [line.replace("\\x0D", "") if kind == "inf" else line for line in lines]


def compare(folder, linux, wine):
    findings = []
    for name in sorted(linux.keys() | wine.keys()):
        given = wine.get(name, ["no answer"])
        if "regedit4" in name:  # reg.exe takes the narrow form for Windows-1252
            given = [line.encode("cp1252").decode() for line in given]
        sides = (linux.get(name, ["no answer"]), given)
        left, right = (comparable(folder.name, folder / name, side) for side in sides)
        if (left == right) == (name in DEPARTURES[folder.name]):
            findings.append(f"{folder.name} {name} differs{' no more' if left == right else ''}")
            findings += difflib.unified_diff(left, right, "Linux", "Wine", n=0, lineterm="")
    print(f"{folder.name}: {len(linux)} files, {sum(map(len, linux.values()))} lines compared")
    return [line[:500] for line in findings]


def main():
    linux_build, wine_build, *real = (pathlib.Path(f).resolve() for f in sys.argv[1:])
    findings = []
    with tempfile.TemporaryDirectory() as name:
        lay_out(pathlib.Path(name), real)
        machine = pathlib.Path(name, "no_language")
        machine.write_text(NO_LANGUAGE)
        wine = [ROOT / "cmake/wine-run.sh", wine_build / "wineprefix"]
        for kind in cases.FILES:
            folder = pathlib.Path(name, kind)
            command = [linux_build / "bin/platform_answers", kind]
            linux = answers(command, folder, TOLVANIX_MACHINE=str(machine))
            command = [*wine, wine_build / "bin/platform_answers.exe", kind]
            windows_folder = f"Z:{folder}".replace("/", "\\")
            findings += compare(folder, linux, answers(command, windows_folder))
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
