"""Whole runs in which the system fails: fault_sweep.py <program> <helper program>
                                    <validation library> <library that makes calls fail> <schema>
                                    [kind of call...]

Each run is made again and again, with the first call of a kind failing, with the second, and so
on up to the last one of an untroubled run: that call alone, or it and all that follow. Without a
kind every kind of call fails. Whatever fails, a run ends with an exit code of its own, its document is whole and says the same, the
computer's file is the old one or the new one, and no process and no file is left.
"""

import ctypes
import errno
import itertools
import multiprocessing
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from collections import Counter, defaultdict, namedtuple

PROGRAM, HELPER, LIBRARY, FAULTS, SCHEMA = (pathlib.Path(a).resolve() for a in sys.argv[1:6])
KINDS = sys.argv[6:]

# ---- The package and the computers; `#` is the number of a device ----


def for_both(text):
    return text.replace("#", "1") + text.replace("#", "2")


CLASS = "{4d36e972-e325-11ce-bfc1-08002be10318}"
DRIVER = rf"""
[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class\{CLASS}\000#]
"DriverVersion"="1.0.0.1"
"""
DEVICE = rf"""
[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI\faulty\#]
"HardwareID"="PCI\\VEN_1DE1&DEV_000#&SUBSYS_00011DE1"
"DeviceDesc"="@oem1.inf,%device%;Faulty device number #"
"LocationInformation"="PCI bus #, device 0, function 0"
"Driver"="{CLASS}\\000#"
"""
EXPORT = "Windows Registry Editor Version 5.00\n" + for_both(DEVICE + DRIVER)
NEW_DRIVER = "\n" + DRIVER.replace("1.0.0.1", "2.3.4.5")
# The devices that have a new driver, by what the computer's file then contains.
STATES = {
    EXPORT + "".join(NEW_DRIVER.replace("#", str(number)) for number in devices): set(devices)
    for devices in [(), (1,), (2,), (1, 2)]
}
SUPPORTED = """<Device vendorID="1DE1" deviceID="000#" subDeviceID="0001" subVendorID="1DE1"
 version="2.3.4.5" minimumVersion="1.0"/>"""
UEVENT = "DRIVER=faulty\nPCI_CLASS=20000\nPCI_ID=1DE1:000#\nPCI_SUBSYS_ID=1DE1:0001\n"
INF_LINE = "Faulty device number #=Install,PCI\\VEN_1DE1&DEV_000#&SUBSYS_00011DE1\n"
EXPORT_FILE, TREE_FOLDER = "computer/computer.reg", "tree"
NAMES = {"program": "tolvanix", "helper": "tolvanixhelper64.exe"}
FILES = {
    "tolvanix": PROGRAM,
    "tolvanixhelper64/tolvanixhelper64.exe": HELPER,
    "kivvalid.dll": LIBRARY,
    "faulty.inf": '[Version]\nSignature="$Windows NT$"\nClass=Net\nDriverVer=01/02/2024,2.3.4.5\n'
    "[Manufacturer]\nMaker=Models\n[Models]\n" + for_both(INF_LINE),
    "package.xml": '<Package version="2.3.4.5"><Name><Display><![CDATA[Faults]]></Display></Name>'
    f"<SupportedDevices>{for_both(SUPPORTED)}</SupportedDevices></Package>",
    "tree/module/faulty/version": "1.0.0.1",
    "tree/bus/pci/devices/0000:01:00.0/uevent": UEVENT.replace("#", "1"),
    "tree/bus/pci/devices/0000:02:00.0/uevent": UEVENT.replace("#", "2"),
}

# ---- What is run, and what fails in it ----

# What a kind of calls fails with, if it is not EIO alone.
ERRORS = defaultdict(lambda: [errno.EIO]) | dict(
    allocation=[errno.ENOMEM], library=[errno.ENOMEM], chdir=[errno.EACCES], open=[errno.EMFILE],
    pipe=[errno.EMFILE], spawn=[errno.EAGAIN], poll=[errno.EINTR, errno.ENOMEM],
    getcwd=[errno.ENOENT], mapping=[errno.ENOMEM], wait=[errno.ECHILD],
    read=[errno.EIO, errno.EINTR], write=[errno.EIO, errno.ENOSPC],
    short_read=[0], short_write=[0],  # half of the bytes, which is no failure
)
# `installed`: the devices that an untroubled run gives a new driver; `program`, `helper`: the kinds
# of calls that are made to fail there, each with the fewest calls that the run can do with.
Run = namedtuple("Run", "machine arguments installed program helper", defaults=({},))
IN_PROGRAM = dict(
    allocation=40, directory_entry=6, open=6, close=6, status=6, chdir=1, getcwd=2, short_read=3
)
IN_HELPER = dict(
    allocation=20, read=3, short_read=3, short_write=1, write=1, open=4, close=3, status=3, sync=1,
    rename=1
)
ONE_ID = "-uhid -w PCI\\VEN_1DE1&DEV_0001&SUBSYS_00011DE1"
TRACED = " -o out.xml -d=4 -e trace.log"
UPDATE = Run(EXPORT_FILE, "-u", {1, 2}, IN_PROGRAM | dict(
    # It polls only when the helper is not quick.
    read=6, write=5, library=1, pipe=2, spawn=2, wait=2, poll=0), IN_HELPER)
RUNS = {
    "-i": Run(EXPORT_FILE, "-i", set(), dict(
        allocation=20, read=1, short_read=1, short_write=2, write=2, open=2, close=1, status=1,
        chdir=1)),
    "-i, traced": Run(EXPORT_FILE, "-i" + TRACED, set(), dict(
        allocation=40, read=1, write=4, open=4, close=1, status=1, chdir=1)),
    "-i of a tree": Run(TREE_FOLDER, "-i", set(), dict(
        allocation=20, read=3, directory_entry=3, open=5, close=5, chdir=1, mapping=1)),
    "-u": UPDATE._replace(program=UPDATE.program | dict(short_write=5)),
    "-u, traced": UPDATE._replace(arguments="-u" + TRACED),
    "-uhid, traced": Run(EXPORT_FILE, ONE_ID + TRACED, {1}, IN_PROGRAM | dict(
        read=4, write=4, pipe=1, spawn=1, wait=1), IN_HELPER),
}
# `first` and `last`: the calls that fail, 0 for none.
Job = namedtuple("Job", "run place kind error first last", defaults=(0, 0))
SWEEPS = [
    Job(name, place, kind, error)
    for name, run in RUNS.items()
    for place in ("program", "helper")
    for kind in getattr(run, place)
    if kind in (KINDS or ERRORS)
    for error in ERRORS[kind]
]

# ---- One run ----

EVERY_CALL = 2**32 - 1
TIME_LIMIT = 60  # seconds; only so that a run that hangs is one that fails
# `exit_code`: None when it did not end, negative for a signal; `new_drivers`: the devices that have
# one, None when the computer's file is damaged; `left`: what else is there, processes and files.
Outcome = namedtuple("Outcome", "exit_code document errors new_drivers trace left calls faults")
folder = None  # this process's own


def become_runner(parent_folder):
    global folder
    folder = pathlib.Path(tempfile.mkdtemp(dir=parent_folder))
    for name, content in FILES.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        if isinstance(content, pathlib.Path):
            shutil.copy(content, folder / name)
        else:
            (folder / name).write_text(content)
    # What a run leaves becomes this process's child.
    pr_set_child_subreaper = 36
    if ctypes.CDLL(None).prctl(pr_set_child_subreaper, 1, 0, 0, 0) != 0:
        raise OSError("a run's processes cannot be counted")


def take_children():
    """The processes that are left, running or ended."""
    left = []
    while True:
        try:
            os.waitpid(-1, 0)
            left.append("a process")
        except ChildProcessError:
            return left


def take_files():
    """What the files contain that the package did not have before, by name."""
    files = [file for level in ("*", "*/*") for file in folder.glob(level) if file.is_file()]
    added = {name: file for file in files if (name := str(file.relative_to(folder))) not in FILES}
    contents = {name: file.read_bytes() for name, file in added.items()}
    for file in added.values():
        file.unlink()
    return contents


def run(job):
    (folder / EXPORT_FILE).parent.mkdir(exist_ok=True)
    (folder / EXPORT_FILE).write_text(EXPORT)
    (folder / "report").write_bytes(bytes(8))
    environment = {
        "LD_PRELOAD": str(FAULTS),
        "FAULT_PROGRAM": NAMES[job.place],
        "FAULT_KIND": job.kind.removeprefix("short_"),
        "FAULT_FIRST": str(job.first),
        "FAULT_LAST": str(job.last),
        "FAULT_ERROR": str(job.error),
        "FAULT_REPORT": str(folder / "report"),
        "TOLVANIX_MACHINE": RUNS[job.run].machine,
    }
    command = [folder / "tolvanix", *RUNS[job.run].arguments.split()]
    options = dict(cwd=folder, env=environment, capture_output=True, timeout=TIME_LIMIT)
    try:
        ended = subprocess.run(command, **options)
    except subprocess.TimeoutExpired:
        ended = subprocess.CompletedProcess(command, None, b"", b"")
    files = take_files()
    counts = struct.unpack("II", files.pop("report"))
    document = ended.stdout + files.pop("out.xml", b"")
    trace = files.pop("trace.log", files.pop("tolvanix_debug.log", b""))
    new_drivers = STATES.get(files.pop(EXPORT_FILE, b"").decode(errors="replace"))
    left = [*files, *take_children()]
    return job, Outcome(ended.returncode, document, ended.stderr, new_drivers, trace, left, *counts)


# ---- What must hold ----

# What is traced when an update lacks memory for the hardware IDs that it has handled, and the exit
# code. With its memory the validation library gets its document back.
CAUGHT = b"PerformExecution: Caught exception. e.getErrorNum() = "
LACKS = {
    b"PerformExecution: Error: Unable to create HwIDList object.\n" + CAUGHT + b"28\n": 28,
    b"AddHwIDNode: Error: Unable to create HwIDNode object.\nPerformExecution: Error: Failed to add "
    b"new hardware ID node to the list.\n" + CAUGHT + b"29\n": 29,
    b"HwIDNode: Error: Unable to allocate char array to hold hardware ID string.\n": 0,
}
FREED = b"\nFreeValidationXML: Freeing validation XML.\n"

CANNOT_START = b"Error: Failed while trying to initialize objects."


def read_document(document):
    """The status that it ends with, and the devices that it says have a new driver."""
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
    if job.place == "helper" or job.first == 0:
        return False
    # A file cannot be opened without memory either. Of one such failure there is a trace.
    opens = job.kind in {"allocation", "open"} and " -o " in RUNS[job.run].arguments
    not_opened = job.last == EVERY_CALL or b"failed to open xml file" in outcome.trace
    return job.kind == "write" or opens and not_opened


def is_end_by_loader(job, outcome):
    """The C library itself ends a process that has no memory for a library's thread-local data,
    which a library with a C++ runtime of its own needs for its first exception."""
    message = b"memory for thread-local data: ABORT"
    return job.kind == "allocation" and outcome.exit_code == 127 and message in outcome.errors


def has_document(job, outcome):
    """Whether there is to be a whole one."""
    return not loses_fragments(job, outcome) and not is_end_by_loader(job, outcome)


def complaints(job, outcome, untroubled):
    if outcome.exit_code not in range(41) and not is_end_by_loader(job, outcome):
        yield f"it ends with {outcome.exit_code}"
        return
    lacks = [status for text, status in LACKS.items() if text in outcome.trace]
    if job.first == job.last and any(status != outcome.exit_code for status in lacks):
        yield "a lack of memory has another exit code"
    if lacks and FREED not in outcome.trace:
        yield "the validation library does not get its document back"
    if outcome.new_drivers is None:
        yield "the computer's file is damaged"
    elif not outcome.new_drivers <= RUNS[job.run].installed:
        yield "a driver is new that was not asked for"
    # What cannot be waited for is taken by the system when the program ends.
    left = [what for what in outcome.left if (job.kind, what) != ("wait", "a process")]
    if left:
        yield f"left are {left}"
    if b"terminate called" in outcome.errors:
        yield "the helper is ended by an exception"
    same_end = outcome.exit_code == untroubled.exit_code
    same = same_end and outcome.document == untroubled.document
    if not has_document(job, outcome):
        lasting = same_end and outcome.new_drivers == untroubled.new_drivers
        if job.kind == "write" and not lasting:
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
    if job.error == 0 and not same:
        yield "half of the bytes at first change the outcome"
    if outcome.exit_code == 0 and not same and not outcome.errors:
        yield "another result without a word"


def invalid_documents(documents, parent_folder):
    """Those that the schema refuses."""
    names = {str(pathlib.Path(parent_folder, f"{n}.xml")): d for n, d in enumerate(documents)}
    for name, document in names.items():
        pathlib.Path(name).write_bytes(document)
    command = ["xmllint", "--noout", "--schema", SCHEMA, *names]
    lines = subprocess.run(command, stderr=subprocess.PIPE, text=True).stderr.splitlines()
    return [document for name, document in names.items() if f"{name} validates" not in lines]


# ---- All of them ----


def describe(job):
    """All but the number of the call."""
    calls = {job.first: "one call", 0: "no call"}.get(job.last, "all calls from")
    error = errno.errorcode.get(job.error, "half")
    return f"{job.run}, {job.kind} ({error}) in the {job.place}, {calls}"


def main():
    findings = defaultdict(list)
    troubled, faulty, documents = Counter(), Counter(), {}
    never_lacked = set(LACKS) if "allocation" in (KINDS or ERRORS) else set()
    with tempfile.TemporaryDirectory() as parent_folder, multiprocessing.Pool(
        2, become_runner, (parent_folder,)
    ) as pool:
        untroubled = dict(pool.imap(run, SWEEPS))
        jobs = [
            job._replace(first=call, last=last)
            for job, outcome in untroubled.items()
            for call in range(1, outcome.calls + 1)
            # What is interrupted each time would never end.
            for last in ((call,) if job.error == errno.EINTR else (call, EVERY_CALL))
        ]
        for job, outcome in itertools.chain(untroubled.items(), pool.imap_unordered(run, jobs, 16)):
            sweep = job._replace(first=0, last=0)
            troubled[sweep] += outcome.faults > 0
            faulty[sweep] += outcome.faults
            never_lacked -= {text for text in never_lacked if text in outcome.trace}
            wrong = list(complaints(job, outcome, untroubled[sweep]))
            if job == sweep and outcome.exit_code != 0:
                wrong.append("an untroubled run fails")
            for complaint in wrong:
                findings[complaint, describe(job)].append(job.first)
            if not wrong and outcome.exit_code != 1 and has_document(job, outcome):
                documents.setdefault(outcome.document, describe(job))
        for document in invalid_documents(documents, parent_folder):
            findings[f"the schema refuses {document.decode()}", documents[document]].append("")
    for text in never_lacked:
        findings["never traced", text.decode()].append("")
    for sweep in SWEEPS:
        print(f"{describe(sweep)}: {troubled[sweep]} runs, {faulty[sweep]} faults")
        if troubled[sweep] < getattr(RUNS[sweep.run], sweep.place)[sweep.kind]:
            findings["too few calls could fail", describe(sweep)].append("")
    total = f"{sum(faulty.values())} faults in {len(jobs)} runs"
    print(f"{total}, {len(documents)} different documents")
    for (complaint, where), calls in findings.items():
        print(f"{complaint}: {where}", *sorted(calls))
    sys.exit(1 if findings else 0)


main()
