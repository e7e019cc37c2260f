"""Whole runs in which the system fails: fault_sweep.py <program> <helper program>
                                    <validation library> <library that makes calls fail> <schema>

Each run is made again and again, with the first call of a kind failing, with the second, and so
on up to the last one of an untroubled run: that call alone, or it and all that follow. Whatever
fails, a run ends with an exit code of its own, its document is whole and says the same, the
computer's file is the old one or the new one, and no process is left.
"""

import ctypes
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
from collections import Counter, defaultdict, namedtuple

PROGRAM, HELPER, LIBRARY, FAULTS, SCHEMA = (pathlib.Path(a).resolve() for a in sys.argv[1:6])

# ---- The package and the computers; `#` is the number of a device ----

OLD_VERSION, NEW_VERSION = "1.0.0.1", "2.3.4.5"
DRIVERS = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class\{4d36e972-e325-11ce-bfc1-08002be10318}"
DEVICE = rf"""
[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI\faulty\#]
"HardwareID"="PCI\\VEN_1DE1&DEV_000#&SUBSYS_00011DE1"
"DeviceDesc"="@oem1.inf,%device%;Faulty device number #"
"LocationInformation"="PCI bus #, device 0, function 0"
"Driver"="{DRIVERS[-38:]}\\000#"
[{DRIVERS}\000#]
"DriverVersion"="{OLD_VERSION}"
"""
SUPPORTED = f"""<Device vendorID="1DE1" deviceID="000#" subDeviceID="0001" subVendorID="1DE1"
 version="{NEW_VERSION}" minimumVersion="1.0"/>"""


def for_both(text):
    return text.replace("#", "1") + text.replace("#", "2")


EXPORT = "Windows Registry Editor Version 5.00\n" + for_both(DEVICE)
EXPORT_FILE, TREE_FOLDER = "computer/computer.reg", "tree"
FILES = {
    "faulty.inf": f'[Version]\nSignature="$Windows NT$"\nClass=Net\nDriverVer=01/02/2024,{NEW_VERSION}\n'
    "[Manufacturer]\nMaker=Models\n[Models]\n"
    + for_both("Faulty device number #=Install,PCI\\VEN_1DE1&DEV_000#&SUBSYS_00011DE1\n"),
    "package.xml": f'<Package version="{NEW_VERSION}"><Name><Display><![CDATA[Faults]]></Display></Name>'
    f"<SupportedDevices>{for_both(SUPPORTED)}</SupportedDevices></Package>",
    "tree/module/faulty/version": OLD_VERSION,
    EXPORT_FILE: EXPORT,
} | {
    f"tree/bus/pci/devices/0000:0{n}:00.0/uevent": f"DRIVER=faulty\nPCI_CLASS=20000\nPCI_ID=1DE1:000{n}\n"
    "PCI_SUBSYS_ID=1DE1:0001\n"
    for n in (1, 2)
}

# ---- What is run, and what fails in it ----

# The devices that an untroubled run gives a new driver; the document's file, standard output else.
Scenario = namedtuple("Scenario", "name machine arguments installed output", defaults=((), None))
# What fails, and the fewest calls of that kind that a run can do with.
Fault = namedtuple("Fault", "kind error fewest place")
Job = namedtuple("Job", "scenario fault first last", defaults=(0, 0))  # the calls that fail; 0: none
ERRORS = defaultdict(lambda: [errno.EIO]) | {
    "allocation": [errno.ENOMEM],
    "chdir": [errno.EACCES],
    "library": [errno.ENOMEM],
    "open": [errno.EMFILE],
    "pipe": [errno.EMFILE],
    "poll": [errno.EINTR, errno.ENOMEM],
    "spawn": [errno.EAGAIN],
    "write": [errno.EIO, errno.ENOSPC],
    "short_write": [0],  # half of the bytes, which is no failure
}


def faults(place="program", **fewest):
    return [
        Fault(kind.removeprefix("short_"), error, number, place)
        for kind, number in fewest.items()
        for error in ERRORS[kind]
    ]


IN_HELPER = faults(
    "helper", allocation=20, read=3, short_write=1, write=1, open=4, close=3, status=3, sync=1, rename=1
)
IN_BOTH = dict(allocation=40, directory_entry=6, open=6, close=6, status=6, chdir=1)
ONE = tuple("-uhid -w PCI\\VEN_1DE1&DEV_0001&SUBSYS_00011DE1 -o out.xml -d=4 -e trace.log".split())
SWEEPS = [
    Job(scenario, fault)
    for scenario, kinds in (
        (
            Scenario("-i", EXPORT_FILE, ("-i",)),
            faults(allocation=20, read=1, short_write=2, write=2, open=2, close=1, status=1, chdir=1),
        ),
        (
            Scenario("-i of a tree", TREE_FOLDER, ("-i",)),
            faults(allocation=20, read=3, directory_entry=3, open=5, close=5, chdir=1),
        ),
        (  # polls only when the helper is not quick
            Scenario("-u", EXPORT_FILE, ("-u",), (1, 2)),
            faults(**IN_BOTH, read=6, short_write=5, write=5, library=1, pipe=2, spawn=2, poll=0) + IN_HELPER,
        ),
        (
            Scenario("-uhid", EXPORT_FILE, ONE, (1,), "out.xml"),
            faults(**IN_BOTH, read=4, write=4, pipe=1, spawn=1) + IN_HELPER,
        ),
    )
    for fault in kinds
]

# ---- One run ----

EVERY_CALL = 2**32 - 1
TIME_LIMIT = 60  # seconds; only so that a run that hangs is one that fails
# `exit_code`: None when it did not end, negative for a signal; `new_drivers`: the devices that have
# one, None when the computer's file is damaged; `litter`: files left beside that.
Outcome = namedtuple("Outcome", "exit_code document errors new_drivers litter trace children_left calls faults")
folder = None  # this process's own


def become_runner(parent_folder):
    global folder
    folder = pathlib.Path(tempfile.mkdtemp(dir=parent_folder))
    for name, text in FILES.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text)
    (folder / "tolvanixhelper64").mkdir()
    shutil.copy(PROGRAM, folder / "tolvanix")
    shutil.copy(HELPER, folder / "tolvanixhelper64/tolvanixhelper64.exe")
    shutil.copy(LIBRARY, folder / "kivvalid.dll")
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    # What a run leaves becomes this process's child.
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


def take_file(file):
    if not file.exists():
        return b""
    content = file.read_bytes()
    file.unlink()
    return content


def new_drivers(export):
    section = re.escape(f"[{DRIVERS}\\000") + r"(\d)\]"
    added = re.compile(rf'\s*{section}\n"DriverVersion"="{re.escape(NEW_VERSION)}"\n')
    rest = export.removeprefix(EXPORT)
    whole = export.startswith(EXPORT) and added.sub("", rest).strip() == ""
    return {int(n) for n in added.findall(rest)} if whole else None


def run(job):
    scenario, fault = job.scenario, job.fault
    computer, report = folder / EXPORT_FILE, folder / "report"
    computer.write_text(EXPORT)
    report.write_bytes(bytes(8))
    environment = {
        "LD_PRELOAD": str(FAULTS),
        "FAULT_PROGRAM": "tolvanix" if fault.place == "program" else "tolvanixhelper64.exe",
        "FAULT_KIND": fault.kind,
        "FAULT_FIRST": str(job.first),
        "FAULT_LAST": str(job.last),
        "FAULT_ERROR": str(fault.error),
        "FAULT_REPORT": str(report),
        "TOLVANIX_MACHINE": scenario.machine,
    }
    exit_code, document, errors = None, b"", b""
    try:
        command = [folder / "tolvanix", *scenario.arguments]
        ended = subprocess.run(command, cwd=folder, env=environment, capture_output=True, timeout=TIME_LIMIT)
        exit_code, document, errors = ended.returncode, ended.stdout, ended.stderr
    except subprocess.TimeoutExpired:
        pass
    litter = [take_file(file) for file in computer.parent.iterdir() if file != computer]
    return job, Outcome(
        exit_code,
        document + take_file(folder / "out.xml"),
        errors,
        new_drivers(computer.read_text()),
        litter,
        take_file(folder / "trace.log"),
        take_children(),
        *struct.unpack("II", report.read_bytes()),
    )


# ---- What must hold ----

CANNOT_START = b"Error: Failed while trying to initialize objects."


@functools.cache
def read_document(document):
    """The status that it ends with, and the devices of which it says that they have a new driver."""
    root = ElementTree.fromstring(document)
    messages = root.findall("SPStatus/Message") or root.findall("Device//Message")
    status = next((int(message.get("id")) for message in messages if message.get("id") != "0"), 0)
    devices = root.findall("Device/Application/SPStatus[@result='true']/../..")
    installed = {int(device.get("deviceID"), 16) for device in devices}
    if root.find("SPStatus[@result='true']") is not None:
        installed = {1}
    return status, installed if root.tag == "SVMExecution" else set()


def loses_fragments(job, outcome):
    """Whether writing the document is what fails."""
    kind, error, _, place = job.fault
    if place == "helper" or job.first == 0 or error == 0:
        return False
    # A file cannot be opened without memory either. Of one such failure there is a trace.
    opens = kind in {"allocation", "open"} and job.scenario.output is not None
    return kind == "write" or opens and (
        job.last == EVERY_CALL or b"failed to open xml file" in outcome.trace
    )


def is_end_by_loader(job, outcome):
    """The C library itself ends a process that has no memory for a library's thread-local data,
    which a library with a C++ runtime of its own needs for its first exception."""
    message = b"memory for thread-local data: ABORT"
    return job.fault.kind == "allocation" and outcome.exit_code == 127 and message in outcome.errors


def has_document(job, outcome):
    """Whether there is to be a whole one."""
    return not loses_fragments(job, outcome) and not is_end_by_loader(job, outcome)


def complaints(job, outcome, untroubled):
    if outcome.exit_code is None:
        yield "it hangs"
        return
    if not (0 <= outcome.exit_code <= 40 or is_end_by_loader(job, outcome)):
        yield f"it ends with {outcome.exit_code}"
        return
    if outcome.new_drivers is None:
        yield "the computer's file is damaged"
    elif not outcome.new_drivers <= set(job.scenario.installed):
        yield "a driver is new that was not asked for"
    if outcome.litter:
        yield "a file is left beside the computer's"
    if outcome.children_left:
        yield "a process is left"
    if b"terminate called" in outcome.errors:
        yield "the helper is ended by an exception"
    same_end = outcome.exit_code == untroubled.exit_code
    same = same_end and outcome.document == untroubled.document
    if not has_document(job, outcome):
        if job.fault.kind == "write" and not (same_end and outcome.new_drivers == untroubled.new_drivers):
            yield "a lost document changes the outcome"
        return
    if (outcome.exit_code, outcome.document) != (1, CANNOT_START):
        try:
            status, installed = read_document(outcome.document)
            if status != outcome.exit_code:
                yield "exit code and document differ"
            elif not installed <= (outcome.new_drivers or set()):
                yield "installed, and the driver is not new"
        except ElementTree.ParseError as error:
            yield f"the document is broken: {error}"
    if job.fault.error == 0 and not same:
        yield "a short write changes the outcome"
    if outcome.exit_code == 0 and not same and not outcome.errors:
        yield "another result without a word"


def invalid_documents(documents, parent_folder):
    """Those that the schema refuses."""
    names = {}
    for number, document in enumerate(documents):
        file = pathlib.Path(parent_folder, f"{number}.xml")
        file.write_bytes(document)
        names[str(file)] = document
    command = ["xmllint", "--noout", "--schema", SCHEMA, *names]
    lines = subprocess.run(command, stderr=subprocess.PIPE, text=True).stderr.splitlines()
    return [document for name, document in names.items() if f"{name} validates" not in lines]


# ---- All of them ----


def place(job):
    """All but the number of the call."""
    scenario, fault = job.scenario.name, job.fault
    calls = {job.first: "one call", 0: "no call"}.get(job.last, "all calls from")
    error = errno.errorcode.get(fault.error, "half")
    return f"{scenario}, {fault.kind} ({error}) in the {fault.place}, {calls}"


def main():
    findings = defaultdict(list)
    with tempfile.TemporaryDirectory() as parent_folder, multiprocessing.Pool(
        2, become_runner, (parent_folder,)
    ) as pool:
        untroubled = dict(pool.imap(run, SWEEPS))
        jobs = [
            job._replace(first=call, last=last)
            for job, outcome in untroubled.items()
            for call in range(1, outcome.calls + 1)
            for last in (call, EVERY_CALL)
        ]
        documents, troubled, faulty = {}, Counter(), Counter()
        ended = pool.imap_unordered(run, jobs, 16)
        for job, outcome in [*untroubled.items(), *ended]:
            sweep = job._replace(first=0, last=0)
            troubled[sweep] += outcome.faults > 0
            faulty[sweep] += outcome.faults
            wrong = list(complaints(job, outcome, untroubled[sweep]))
            if job == sweep and outcome.exit_code != 0:
                wrong.append("an untroubled run fails")
            for complaint in wrong:
                findings[complaint].append(job)
            if not wrong and outcome.exit_code != 1 and has_document(job, outcome):
                documents.setdefault(outcome.document, job)
        for document in invalid_documents(documents, parent_folder):
            findings[f"the schema refuses {document.decode()}"].append(documents[document])
    for sweep in SWEEPS:
        print(f"{place(sweep)}: {troubled[sweep]} runs, {faulty[sweep]} faults")
        if troubled[sweep] < 2 * sweep.fault.fewest:
            findings["too few calls could fail"].append(sweep)
    print(f"{len(jobs)} runs, {len(documents)} different documents")
    for complaint, found in findings.items():
        print(f"\n{complaint}: {len(found)} times")
        for where in sorted({place(job) for job in found}):
            print(f"  {where}:", *sorted(job.first for job in found if place(job) == where))
    sys.exit(1 if findings else 0)


main()
