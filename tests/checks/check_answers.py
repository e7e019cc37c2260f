"""The stand-in for Windows answers what Wine answers: check_answers.py <release build> <windows build> [folder]

Lets tests/differential/platform_answers.cpp, built for Linux and for Windows, tell what the platform
reads in INF files, INI files and registry exports: those of the project, those of answer_cases.py in
several encodings, and where there is a folder of real ones (`inf`, `reg`) those too.
Their answers must be the same line by line; answer_cases.py lists the files in which Wine departs.
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
# Wine knows no language sections in INF files. A language that no file has a section for makes the
# stand-in read the general one too.
NO_LANGUAGE = (cases.REG_HEAD + "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Nls\\Language]\n"
               '"Default"="0c51"\n')
# Wine reads the class of an INF file as an INI file has it: with the comments after values and the
# %names% in them, from the first section alone. The stand-in reads it as published.
CLASS_READ_OTHERWISE = re.compile(r"^\s*(?:signature|class|classguid)\s*=[^\n]*[;%]|^\s*\[version\].*^\s*\[version\]",
                                  re.IGNORECASE | re.MULTILINE | re.DOTALL)
# The devices that Wine itself has. For Wine also a key without any property is a device, when the import
# has added a ClassGUID.
OWN_DEVICE = re.compile(r"\|Wine |MONITOR.*\{4D36E96E")
NOT_A_DEVICE = " 13-" * 5


def encodings(text, kind):
    if isinstance(text, bytes):
        return {"": text}
    dos = text.replace("\n", "\r\n")
    files = {"": text.encode(), ".utf8": dos.encode("utf-8-sig"), ".utf16": b"\xff\xfe" + dos.encode("utf-16-le")}
    if kind != "devices":  # what is not UTF-16 must be ASCII for Wine; the import converts it
        files |= {".crlf": dos.encode(), ".utf16be": b"\xfe\xff" + dos.encode("utf-16-be")}
    return files


def lay_out(folder, real):
    """Puts the files into a folder for each kind."""
    for kind, table in cases.FILES.items():
        (folder / kind).mkdir()
        for name, text in table.items():
            for suffix, data in encodings(text, kind).items():
                (folder / kind / (name + suffix)).write_bytes(data)
    for root in (ROOT / "sdk", ROOT / "tests/fixtures", *real):
        for kind, pattern in (("inf", "*.[Ii][Nn]*"), ("profile", "*.[Ii][Nn]*"), ("devices", "*.reg")):
            for file in root.rglob(pattern):
                shutil.copy(file, folder / kind / file.name)
    # A real computer's devices with its drivers, which two exports hold.
    for file in (folder / "devices").glob("*__Enum.reg"):
        drivers = file.with_name(file.name.replace("Enum", "Control_Class"))
        both = file.read_text("utf-16") + drivers.read_text("utf-16").partition("\n")[2]
        file.write_bytes(both.encode("utf-16"))


def by_file(output):
    text = re.sub("\ufffd+", "\ufffd", output.replace(b"\r\n", b"\n").decode(errors="replace"))
    return {part[0]: part[1:] for part in (p.split("\n") for p in ("\n" + text).split("\n== ")[1:])}


def linux_answers(build, kind, folder):
    def ask(argument, computer):
        environment = {**os.environ, "TOLVANIX_MACHINE": str(computer)}
        command = [build / "bin/platform_answers", kind, argument]
        # It also complains of the exports with a fault.
        done = subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return done.stdout

    if kind == "devices":
        return by_file(b"".join(ask(file, file) for file in sorted((folder / kind).iterdir())))
    (folder / "no_language").write_text(NO_LANGUAGE)
    return by_file(ask(folder / kind, folder / "no_language"))


def wine_answers(build, kind, folder):
    command = [ROOT / "cmake/wine-run.sh", build / "wineprefix", build / "bin/platform_answers.exe", kind]
    windows_folder = f"Z:{folder / kind}".replace("/", "\\")
    answers = by_file(subprocess.run([*command, windows_folder], check=True, stdout=subprocess.PIPE).stdout)
    return {name: list(wine_lines(kind, name, lines)) for name, lines in answers.items()}


def wine_lines(kind, name, lines):
    for line in lines:
        # reg.exe takes the narrow form for Windows-1252.
        if "regedit4" in name:
            line = line.encode("cp1252").decode()
        # A quote without an end takes the carriage return along.
        if kind == "inf":
            line = line.replace("\\x0D", "")
        if kind != "devices" or not OWN_DEVICE.search(line):
            yield line


def text_of(file):
    data = file.read_bytes().removeprefix(b"\xef\xbb\xbf")
    return data.decode("utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "latin-1", "replace")


def compare(kind, linux, wine, folder):
    findings = [f"{kind} {name}: only one of the two answers" for name in linux.keys() ^ wine.keys()]
    departed = set()
    for name in sorted(linux.keys() & wine.keys()):
        left, right = linux[name], wine[name]
        if kind == "devices":  # Wine sorts by the names of keys
            left, right = (sorted(line for line in side if line != NOT_A_DEVICE) for side in (left, right))
        if kind == "inf" and left != right and CLASS_READ_OTHERWISE.search(text_of(folder / name)):
            left, right = ([line for line in side if not line.startswith("class|")] for side in (left, right))
        if left == right:
            continue
        listed = {name, name.partition(".")[0]} & cases.DEPARTURES[kind]
        departed |= listed
        if not listed:
            findings.append(f"{kind} {name} differs")
            findings += [line[:500] for line in difflib.unified_diff(left, right, "Linux", "Wine", "", "", 0, "")]
    findings += [f"{kind} {name}: listed as a departure, but is none" for name in cases.DEPARTURES[kind] - departed]
    lines = sum(len(answer) for answer in linux.values())
    print(f"{kind}: {len(linux)} files, {lines} lines compared, {len(departed)} departures")
    return findings


def main():
    linux_build, wine_build, *real = (pathlib.Path(f).resolve() for f in sys.argv[1:])
    findings = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        lay_out(folder, real)
        for kind in cases.FILES:
            findings += compare(kind, linux_answers(linux_build, kind, folder), wine_answers(wine_build, kind, folder), folder / kind)
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


main()
