"""Whole runs in which the system fails: fault_sweep.py <program> <helper program>
                                    <validation library> <library that makes calls fail> <schema>

Each run is made again and again, with the first call of a kind failing, with the second, and so
on up to the last one of an untroubled run: that call alone, or it and all that follow. Whatever
fails, a run ends with an exit code of its own, its document is whole and says the same, the
computer's file is the old one or the new one, and no process is left.
"""

import collections
import ctypes
import dataclasses
import errno
import functools
import multiprocessing
import os
import pathlib
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

PROGRAM, HELPER, LIBRARY, FAULTS, SCHEMA = (pathlib.Path(a).resolve() for a in sys.argv[1:6])

# ---- The package and the computers ----

ENUM = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI"
CLASS = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class"
NET = "{4d36e972-e325-11ce-bfc1-08002be10318}"
IDS = {n: rf"PCI\VEN_1DE1&DEV_000{n}&SUBSYS_00011DE1" for n in (1, 2)}
OLD_VERSION, NEW_VERSION = "1.0.0.1", "2.3.4.5"


def registry_value(name, text):
    return '"%s"="%s"\n' % (name, text.replace("\\", "\\\\"))


def registry_export():
    lines = ["Windows Registry Editor Version 5.00\n"]
    for n, hardware_id in IDS.items():
        lines += [
            f"\n[{ENUM}\\{hardware_id[4:]}\\{n}]\n",
            registry_value("HardwareID", hardware_id),
            registry_value("DeviceDesc", f"@oem1.inf,%device%;Faulty device number {n}"),
            registry_value("LocationInformation", f"PCI bus {n}, device 0, function 0"),
            registry_value("Driver", f"{NET}\\000{n}"),
            f"\n[{CLASS}\\{NET}\\000{n}]\n",
            registry_value("DriverVersion", OLD_VERSION),
        ]
    return "".join(lines)


EXPORT = registry_export()
MODELS = "".join(f"Faulty device number {n}=Install,{hardware_id}\n" for n, hardware_id in IDS.items())
INF = (
    f'[Version]\nSignature="$Windows NT$"\nClass=Net\nDriverVer=01/02/2024,{NEW_VERSION}\n'
    f"[Manufacturer]\nMaker=Models\n[Models]\n{MODELS}"
)
SUPPORTED = "".join(
    f'<Device vendorID="1DE1" deviceID="000{n}" subDeviceID="0001" subVendorID="1DE1"'
    f' version="{NEW_VERSION}" minimumVersion="1.0"/>'
    for n in IDS
)
PACKAGE = (
    f'<Package version="{NEW_VERSION}"><Name><Display><![CDATA[Faults]]></Display></Name>'
    f"<SupportedDevices>{SUPPORTED}</SupportedDevices></Package>"
)
TREE = {
    f"bus/pci/devices/0000:0{n}:00.0/uevent": f"DRIVER=faulty\nPCI_CLASS=20000\nPCI_ID=1DE1:000{n}\n"
    "PCI_SUBSYS_ID=1DE1:0001\n"
    for n in IDS
} | {"module/faulty/version": OLD_VERSION + "\n"}


def write_files(folder, files):
    for name, text in files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text)


def make_package(folder):
    write_files(folder, {"faulty.inf": INF, "package.xml": PACKAGE})
    write_files(folder / "tree", TREE)
    (folder / "computer").mkdir()
    (folder / "tolvanixhelper64").mkdir()
    shutil.copy(PROGRAM, folder / "tolvanix")
    shutil.copy(HELPER, folder / "tolvanixhelper64/tolvanixhelper64.exe")
    shutil.copy(LIBRARY, folder / "kivvalid.dll")


# ---- What is run, and what fails in it ----

EXPORT_FILE, TREE_FOLDER = "computer/computer.reg", "tree"


@dataclasses.dataclass(frozen=True)
class Scenario:
    name: str
    machine: str
    arguments: tuple
    installed: tuple = ()  # the devices that an untroubled run gives a new driver
    output: str | None = None  # the document's file; None: standard output


INVENTORY = Scenario("-i", EXPORT_FILE, ("-i",))
TREE_INVENTORY = Scenario("-i of a tree", TREE_FOLDER, ("-i",))
UPDATE = Scenario("-u", EXPORT_FILE, ("-u",), (1, 2))
ONE_UPDATE = Scenario(
    "-uhid",
    EXPORT_FILE,
    ("-uhid", "-w", IDS[1], "-o", "out.xml", "-d=4", "-e", "trace.log"),
    installed=(1,),
    output="out.xml",
)


@dataclasses.dataclass(frozen=True)
class Fault:
    """What fails, and the fewest calls of that kind that a run can do with."""

    kind: str
    error: int
    fewest: int
    in_program: bool = True

    @property
    def short(self):  # a write of half the bytes, which is no failure
        return self.kind == "write" and self.error == 0

    def __str__(self):
        place = "program" if self.in_program else "helper"
        return f"{self.kind} ({errno.errorcode.get(self.error, 'half')}) in the {place}"


# For each name the kind of call, and the errors that it fails with.
KINDS = {
    "allocation": ("allocation", [errno.ENOMEM]),
    "chdir": ("chdir", [errno.EACCES]),
    "close": ("close", [errno.EIO]),
    "directory_entry": ("directory_entry", [errno.EIO]),
    "library": ("library", [errno.ENOMEM]),
    "open": ("open", [errno.EMFILE]),
    "pipe": ("pipe", [errno.EMFILE]),
    "poll": ("poll", [errno.EINTR, errno.ENOMEM]),
    "read": ("read", [errno.EIO]),
    "rename": ("rename", [errno.EIO]),
    "short_write": ("write", [0]),
    "spawn": ("spawn", [errno.EAGAIN]),
    "status": ("status", [errno.EIO]),
    "sync": ("sync", [errno.EIO]),
    "write": ("write", [errno.EIO, errno.ENOSPC]),
}


def faults(in_program=True, **fewest):
    return [
        Fault(KINDS[name][0], error, number, in_program)
        for name, number in fewest.items()
        for error in KINDS[name][1]
    ]


HELPER_FAULTS = faults(
    False, allocation=20, read=3, short_write=1, write=1, open=4, close=3, status=3, sync=1, rename=1
)
SWEEPS = {
    INVENTORY: faults(allocation=20, read=1, short_write=2, write=2, open=2, close=1, status=1, chdir=1),
    TREE_INVENTORY: faults(allocation=20, read=3, directory_entry=3, open=5, close=5, chdir=1),
    UPDATE: faults(
        allocation=40,
        read=6,
        directory_entry=6,
        short_write=5,
        write=5,
        open=6,
        close=6,
        status=6,
        chdir=1,
        library=1,
        pipe=2,
        spawn=2,
        poll=0,  # not when the helper is quick
    )
    + HELPER_FAULTS,
    ONE_UPDATE: faults(
        allocation=40,
        read=4,
        directory_entry=6,
        write=4,
        open=6,
        close=6,
        status=6,
        chdir=1,
        pipe=1,
        spawn=1,
    )
    + HELPER_FAULTS,
}


@dataclasses.dataclass(frozen=True)
class Job:
    scenario: Scenario
    fault: Fault
    first: int = 0  # the calls that fail; 0: none
    last: int = 0

    def place(self):
        """All but the number of the call."""
        calls = {self.first: "one call", 0: "no call"}.get(self.last, "all calls from")
        return f"{self.scenario.name}, {self.fault}, {calls}"


@dataclasses.dataclass(frozen=True)
class Outcome:
    exit_code: int | None  # None: it did not end; negative: a signal
    document: bytes
    errors: bytes  # what it wrote to standard error
    computer: str
    litter: tuple  # files left in the folder of the computer's file
    trace: bytes
    children_left: bool
    calls: int
    faults: int


# ---- One run ----

EVERY_CALL = 2**32 - 1
TIME_LIMIT = 60  # seconds; only so that a run that hangs is one that fails
folder = None  # this process's own


def become_runner(parent_folder):
    global folder
    folder = pathlib.Path(tempfile.mkdtemp(dir=parent_folder))
    make_package(folder)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    # What a run leaves behind becomes this process's child.
    pr_set_child_subreaper = 36
    if ctypes.CDLL(None).prctl(pr_set_child_subreaper, 1, 0, 0, 0) != 0:
        raise OSError("a run's processes cannot be counted")


def take_children():
    """Whether there were any, running or ended."""
    left = False
    while True:
        try:
            os.waitpid(-1, 0)
            left = True
        except ChildProcessError:
            return left


def run(job):
    scenario, fault = job.scenario, job.fault
    computer = folder / EXPORT_FILE
    computer.write_text(EXPORT)
    report = folder / "report"
    report.write_bytes(bytes(8))
    output = folder / (scenario.output or "none")
    trace = folder / "trace.log"
    for file in (output, trace):
        file.unlink(missing_ok=True)
    environment = {
        "LD_PRELOAD": str(FAULTS),
        "FAULT_PROGRAM": "tolvanix" if fault.in_program else "tolvanixhelper64.exe",
        "FAULT_KIND": fault.kind,
        "FAULT_FIRST": str(job.first),
        "FAULT_LAST": str(job.last),
        "FAULT_ERROR": str(fault.error),
        "FAULT_REPORT": str(report),
        "TOLVANIX_MACHINE": scenario.machine,
    }
    command = [folder / "tolvanix", *scenario.arguments]
    exit_code, document, errors = None, b"", b""
    try:
        ended = subprocess.run(
            command, cwd=folder, env=environment, capture_output=True, timeout=TIME_LIMIT
        )
        exit_code, document, errors = ended.returncode, ended.stdout, ended.stderr
    except subprocess.TimeoutExpired:
        pass
    if output.exists():
        document += output.read_bytes()
    litter = [file for file in computer.parent.iterdir() if file != computer]
    for file in litter:
        file.unlink()
    return job, Outcome(
        exit_code,
        document,
        errors,
        computer.read_text(),
        tuple(file.name for file in litter),
        trace.read_bytes() if trace.exists() else b"",
        take_children(),
        *struct.unpack("II", report.read_bytes()),
    )


# ---- What must hold ----

CANNOT_START = b"Error: Failed while trying to initialize objects."


def new_drivers(export):
    """The devices that have the new version; None when the export is not whole."""
    section = re.escape(f"[{CLASS}\\{NET}\\000") + r"(\d)\]"
    added = re.compile(rf'\s*{section}\n"DriverVersion"="{re.escape(NEW_VERSION)}"\n')
    rest = export.removeprefix(EXPORT)
    if not export.startswith(EXPORT) or added.sub("", rest).strip() != "":
        return None
    return {int(n) for n in added.findall(rest)}


@functools.cache
def status_in(document):
    """The status that the document ends with; a ParseError for what is no document."""
    root = ElementTree.fromstring(document)
    numbers = [int(message.get("id")) for message in root.findall("SPStatus/Message")]
    numbers = numbers or [int(message.get("id")) for message in root.findall("Device//Message")]
    return next((number for number in numbers if number != 0), 0)


@functools.cache
def installed_in(document):
    """The devices of which the document says that they have a new driver."""
    root = ElementTree.fromstring(document)
    if root.tag != "SVMExecution":
        return set()
    if root.find("SPStatus[@result='true']") is not None:
        return {1}
    devices = root.findall("Device/Application/SPStatus[@result='true']/../..")
    return {int(device.get("deviceID"), 16) for device in devices}


def check_document(outcome):
    if outcome.exit_code == 1 and outcome.document == CANNOT_START:
        return []
    try:
        status = status_in(outcome.document)
    except ElementTree.ParseError as error:
        return [f"the document is broken: {error}"]
    if status != outcome.exit_code:
        return ["exit code and document differ"]
    new = new_drivers(outcome.computer) or set()
    return [] if installed_in(outcome.document) <= new else ["installed, and the driver is not new"]


def loses_fragments(job, outcome):
    """Whether writing the document is what fails."""
    if not job.fault.in_program or job.first == 0 or job.fault.short:
        return False
    if job.fault.kind == "write":
        return True
    # A file cannot be opened without memory either. Of one such failure there is a trace.
    opens = job.fault.kind in {"allocation", "open"} and job.scenario.output is not None
    return opens and (job.last == EVERY_CALL or b"failed to open xml file" in outcome.trace)


def is_end_by_loader(job, outcome):
    """The C library itself ends a process that has no memory for a library's thread-local data,
    which a library with a C++ runtime of its own needs for its first exception."""
    message = b"memory for thread-local data: ABORT"
    return job.fault.kind == "allocation" and outcome.exit_code == 127 and message in outcome.errors


def has_document(job, outcome):
    """Whether there is to be a whole one."""
    return not loses_fragments(job, outcome) and not is_end_by_loader(job, outcome)


def check_computer(scenario, outcome):
    new = new_drivers(outcome.computer)
    if new is None:
        return ["the computer's file is damaged"]
    return [] if new <= set(scenario.installed) else ["a driver is new that was not asked for"]


def check(job, outcome, untroubled):
    if outcome.exit_code is None:
        return ["it hangs"]
    if not (0 <= outcome.exit_code <= 40 or is_end_by_loader(job, outcome)):
        return [f"it ends with {outcome.exit_code}"]
    complaints = check_computer(job.scenario, outcome)
    if outcome.litter:
        complaints.append("a file is left beside the computer's")
    if outcome.children_left:
        complaints.append("a process is left")
    if b"terminate called" in outcome.errors:
        complaints.append("the helper is ended by an exception")
    if not has_document(job, outcome):
        same = (outcome.exit_code, outcome.computer) == (untroubled.exit_code, untroubled.computer)
        if job.fault.kind == "write" and not same:
            complaints.append("a lost document changes the outcome")
        return complaints
    complaints += check_document(outcome)
    same = (outcome.exit_code, outcome.document) == (untroubled.exit_code, untroubled.document)
    if job.fault.short and not same:
        complaints.append("a short write changes the outcome")
    if outcome.exit_code == 0 and not same and not outcome.errors:
        complaints.append("another result without a word")
    return complaints


def invalid_documents(documents, parent_folder):
    """Those that the schema refuses."""
    names = {}
    for number, document in enumerate(sorted(documents)):
        file = pathlib.Path(parent_folder, f"{number}.xml")
        file.write_bytes(document)
        names[str(file)] = document
    command = ["xmllint", "--noout", "--schema", SCHEMA, *names]
    lines = subprocess.run(command, stderr=subprocess.PIPE, text=True).stderr.splitlines()
    valid = {line.removesuffix(" validates") for line in lines if line.endswith(" validates")}
    return [document for name, document in names.items() if name not in valid]


# ---- All of them ----


def main():
    findings = collections.defaultdict(list)
    with tempfile.TemporaryDirectory() as parent_folder, multiprocessing.Pool(
        2, become_runner, (parent_folder,)
    ) as pool:
        sweeps = [Job(scenario, fault) for scenario, kinds in SWEEPS.items() for fault in kinds]
        untroubled = {}
        jobs = []
        for job, outcome in pool.imap(run, sweeps):
            untroubled[job] = outcome
            for complaint in check(job, outcome, outcome):
                findings[complaint].append(job)
            if outcome.exit_code != 0:
                findings["an untroubled run fails"].append(job)
            for call in range(1, outcome.calls + 1):
                for last in (call, EVERY_CALL):
                    jobs.append(dataclasses.replace(job, first=call, last=last))
        documents = {outcome.document: job for job, outcome in untroubled.items()}
        troubled, faults = collections.Counter(), collections.Counter()
        for job, outcome in pool.imap_unordered(run, jobs, 16):
            sweep = dataclasses.replace(job, first=0, last=0)
            troubled[sweep] += outcome.faults > 0
            faults[sweep] += outcome.faults
            complaints = check(job, outcome, untroubled[sweep])
            for complaint in complaints:
                findings[complaint].append(job)
            if not complaints and outcome.exit_code != 1 and has_document(job, outcome):
                documents.setdefault(outcome.document, job)
        for document in invalid_documents(documents, parent_folder):
            findings[f"the schema refuses {document.decode()}"].append(documents[document])
    for sweep in sweeps:
        print(f"{sweep.scenario.name}, {sweep.fault}: {troubled[sweep]} runs, {faults[sweep]} faults")
        if troubled[sweep] < 2 * sweep.fault.fewest:
            findings["too few calls could fail"].append(sweep)
    print(f"{len(jobs)} runs, {len(documents)} different documents")
    for complaint, places in findings.items():
        print(f"\n{complaint}: {len(places)} times")
        calls = collections.defaultdict(list)
        for job in places:
            calls[job.place()].append(job.first)
        for place, numbers in calls.items():
            print(f"  {place}: {' '.join(map(str, sorted(numbers)))}")
    sys.exit(1 if findings else 0)


main()
