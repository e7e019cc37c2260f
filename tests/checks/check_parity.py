"""The Windows build does what the Linux build does: check_parity.py <Linux build> <Wine build>

Compares, byte for byte, what the whole-run tests recorded of each run of the program (`record` in
tests/support/Package.cpp): arguments, exit code, standard output and error, and the files of the
package afterwards, so also result documents, traces, and what helper programs and validation
libraries were given. `comparable` says what may differ.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys

LEAST_RUNS = 40
# The commands, and the exit codes of the command lines that are refused.
MUST_RUN = {"-i", "-u", "-uhid"} | {f"exit code {status}" for status in range(2, 16)}

# In which Wine says that it installs, and changes nothing.
NOT_COMPARED = {"SamplePackage.SecondUpdate_HasNothingToDo"}
# Where a computer was exported, and its inventory taken, with the tools of Windows.
COLLECTED = "CollectComputer.Command_ExportsWhatDescribesTheDevices"

# Wine itself has this display adapter, and it enumerates devices by their names, where a registry
# export has an order of its own.
DEVICE = r'<Device vendorID="\w{4}"  .*?</Device>'
DEVICE_TRACE = r'PCI\\.*\n(?:KivWrapper::FilterDeviceInventory.*\n)*"driver" .*\n'
WINE_ADAPTER = re.compile(r'<Device vendorID="0000"  |PCI\\VEN_0000&DEV_0000')

ALLOWED = (
    # Text files and text on the console have the line ends of the platform.
    ("\r\n", "\n"),
    # The temporary folders of tests. Off Windows the folder that a helper runs in has its own name.
    (r'(?:[A-Z]:)?[\\/][^\s"=]*[\\/]tolvanix-\d+[\\/]?', r"@\\"),
    # The place of a device among the present ones, of which Wine has some itself.
    (r"(FindExistingDevice: Found Hardware ID = .*)\. i = \d+", r"\1"),
    # These count the characters of the inventory, also those of Wine's adapter.
    (r"(removeOSElementFromXMLString: (?:string|right)Len) = \d+", r"\1"),
    # A program in a folder that does not exist: Windows reports the path (3), Wine the file (2).
    (r"(ExecCmd, line = \d+, error code = )[23],((?:.*\n)*?.*exit code from exec.* = )[23]\n",
     r"\1,\2\n"),
    # The system's own words for an error; its number is compared.
    (r"(error code = \d*, error msg = ).*", r"\1"),
    # Off Windows the loader's reason is on standard error.
    (r"tolvanix: @\\kivvalid\.dll: .*\n", ""),
)


def in_order(pattern, text):
    def sort(match):
        found = re.findall(pattern, match[0])
        return "".join(sorted(f for f in found if not WINE_ADAPTER.match(f)))

    return re.sub(f"(?:{pattern})+", sort, text)


def comparable(file):
    # What a validation library was given are UTF-16 units.
    wide = file.suffix == ".bin"
    encoding = ("utf-16-le", "surrogatepass") if wide else ("utf-8", "surrogateescape")
    text = file.read_bytes().decode(*encoding)
    for pattern, replacement in ALLOWED:
        text = re.sub(pattern, replacement, text)
    return in_order(DEVICE_TRACE, in_order(DEVICE, text))


def read_runs(folder):
    """The files of each run, by its test and number."""
    return {
        f"{run.parent.name}/{run.name}": {
            str(f.relative_to(run)): comparable(f) for f in run.rglob("*") if f.is_file()
        }
        for run in folder.glob("*/*")
        if run.parent.name not in NOT_COMPARED | {COLLECTED}
    }


def differences(name, left, right):
    """Of two runs; of a file that only one of them has all lines differ."""
    for file in sorted(left.keys() | right.keys()):
        lines = [side.get(file, "no such file").split("\n") for side in (left, right)]
        for line in difflib.unified_diff(*lines, "Linux", "Wine", n=0, lineterm=""):
            yield f"{name}/{file}: {line[:1000]}"


def collected_differences(program, run):
    """What was exported under Wine gives the inventory on Linux that it gave there."""
    environment = {**os.environ, "TOLVANIX_MACHINE": run / "package" / "computer.reg"}
    here = subprocess.run([program, "-i"], env=environment, capture_output=True)
    sides = [{"output": in_order(DEVICE, text.decode().replace("\r\n", "\n"))}
             for text in (here.stdout, (run / "output").read_bytes())]
    return differences(COLLECTED, *sides)


def main():
    builds = [pathlib.Path(build) for build in sys.argv[1:]]
    linux, wine = (read_runs(build / "runs") for build in builds)
    findings = [line for run in sorted(linux.keys() | wine.keys())
                for line in differences(run, linux.get(run, {}), wine.get(run, {}))]
    findings += collected_differences(builds[0] / "bin" / "tolvanix",
                                      builds[1] / "runs" / COLLECTED / "1")
    paired = [linux[run] for run in linux.keys() & wine.keys()]
    if len(paired) < LEAST_RUNS:
        findings.append(f"only {len(paired)} runs on both platforms")
    were_run = {argument for run in paired for argument in run["arguments"].splitlines()}
    were_run |= {f"exit code {run['exit code']}" for run in paired}
    findings += [f"never run: {missing}" for missing in sorted(MUST_RUN - were_run)]
    print("\n".join(findings))
    files = sum(len(run) for run in paired)
    print(f"{len(paired)} runs with {files} files compared, {len(findings)} lines of findings")
    sys.exit(1 if findings else 0)


main()
