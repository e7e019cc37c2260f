"""Whole runs that only Linux can have: linux_runs.py <program> <helper program> <fixtures>
                                             <validation library for tests>

On computers that files describe well or badly, with the helper program for package authors, with
devices that refuse every byte, in any locale.
"""

import fcntl
import os
import pathlib
import pty
import re
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PROGRAM, HELPER, FIXTURES, VALIDATION_LIBRARY = (pathlib.Path(a).resolve() for a in sys.argv[1:5])

SCHEMA = FIXTURES.parents[1] / "docs/result.xsd"
ENUM = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI"
CLASS = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class"
WINDOWS = r"HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion"
EMPTY_INVENTORY = '<?xml version="1.0" encoding="UTF-8"?><SVMInventory lang="en" ></SVMInventory>'


def device(instance, hardware_id, **values):
    values = {"HardwareID": hardware_id, **values}
    lines = [f'"{name}"="{value}"\n'.replace("\\", "\\\\") for name, value in values.items()]
    return f"[{ENUM}\\{instance}\\1]\n" + "".join(lines)


def driver(key, version):
    return f'[{CLASS}\\{key}]\n"DriverVersion"="{version}"\n'


HEADER = "Windows Registry Editor Version 5.00\n\n"
ID = "PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4"
ID_WITHOUT_DRIVER = "PCI\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4"
KEY = "{4D36E97D-e325-11ce-bfc1-08002be10318}\\0003"
# The last line has no end.
EXPORT = HEADER + device("A", ID, Driver=KEY) + device("B", ID_WITHOUT_DRIVER)
EXPORT += driver(KEY.lower(), "1.0.0.1").rstrip()
ADDED = "\n\n" + driver(KEY, "2.3.4.5")  # in the letter case of the device's own text


def inf_file(hardware_id, version=",2.3.4.5"):
    return (
        f'[Version]\nSignature="$Windows NT$"\nClass=System\nDriverVer = 01/02/2024{version} ; c\n'
        f"[Manufacturer]\nMaker=Models\n[Models]\nDevice=Install,{hardware_id}\n"
    )


def utf16(text):
    return ("\ufeff" + text.replace("\n", "\r\n")).encode("utf-16-le")


def environment_with(machine):
    return {**os.environ, "TOLVANIX_MACHINE": str(machine)}


def run(program, *arguments, machine, environment={}, stdout=subprocess.PIPE, **more):
    environment = environment_with(machine) | environment
    more |= {"stdout": stdout, "stderr": subprocess.PIPE}
    return subprocess.run([program, *arguments], env=environment, timeout=30, **more)


class WholeRun(unittest.TestCase):
    """A package's folder with the program in it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copy(PROGRAM, self.folder)
        self.machine = self.folder / "machine"

    def add(self, name, content):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        if isinstance(content, pathlib.Path):
            shutil.copy(content, file)
        else:
            file.write_bytes(content if isinstance(content, bytes) else content.encode())
        return file

    def add_helper(self, script):
        name = "tolvanixhelper64/tolvanixhelper64.exe"
        self.add(name, "#!/bin/sh\n" + script).chmod(0o755)

    def start_program(self, *arguments, **more):
        command = [self.folder / PROGRAM.name, *arguments]
        return subprocess.Popen(command, env=environment_with(self.machine), **more)

    def run_program(self, *arguments, **more):
        result = run(self.folder / PROGRAM.name, *arguments, machine=self.machine, **more)
        if (result.stdout or b"").startswith(b"<?xml"):  # no trace stands before it
            command = ["xmllint", "--noout", "--schema", SCHEMA, "-"]
            subprocess.run(command, input=result.stdout, stderr=subprocess.PIPE, check=True)
        return result


class RegistryExport(WholeRun):
    def inventory(self, export, *arguments):
        self.machine = self.add("m.reg", export)
        return self.run_program("-i", *arguments)

    def test_every_encoding_and_form_counts_as_it_is_after_an_import(self):
        for self.machine in (FIXTURES / "machines").glob("*.reg"):
            document = "forms.xml" if "forms" in self.machine.name else "import_rules.xml"
            expected = self.machine.with_name(document).read_bytes().replace(b">\n", b">")
            self.assertEqual(self.run_program("-i").stdout, expected, self.machine)

    def test_joined_exports_are_one(self):
        version = f'[{WINDOWS}]\n"CurrentVersion"="6.3"\n'
        parts = [part + "\n" for part in [device("A", ID, Driver=KEY), driver(KEY, "7.5"), version]]
        plain = [(HEADER + part).encode() for part in parts]
        marked = ["\ufeff".encode() + part for part in plain]
        wide = [utf16(HEADER + part) for part in parts]
        old = b"REGEDIT4\n\n" + parts[1].encode()
        for exports in [plain, marked, wide, [plain[0], old, marked[2]]]:
            result = self.inventory(b"".join(exports), "-d=4")
            self.assertEqual(result.stderr, b"")
            self.assertRegex(result.stdout, b'deviceID="0C01" .* version="7.5"')
            self.assertIn(b'majorVersion="6"  minorVersion="3"', result.stdout)

    def test_limits_and_odd_values(self):
        def driven(length):  # by a class key with a path of that length
            key = "k" * (length - len(CLASS.partition("\\")[2] + "\\"))
            return HEADER + device("A", ID, Driver=key) + driver(key, "7.5")

        for content, code, part in [
            (driven(255), 0, b' version="7.5"'),
            (driven(256), 0, b' version="0"'),
            (HEADER + f'[{WINDOWS}]\n"CurrentVersion"="six"\n', 19, b'<Message id="19">'),
        ]:
            result = self.inventory(content)
            self.assertEqual((result.returncode, result.stderr), (code, b""))
            self.assertIn(part, result.stdout)

    def test_unusable_is_one_line_and_no_devices(self):
        value = HEADER + f'[{ENUM}\\A\\1]\n"HardwareID"='
        wide = HEADER.encode("utf-16")
        for complaint, *contents in [
            ("1: the file is empty", ""),
            ("1: this is no header of a registry export", "PCI 1\n", b"\xa5" * 5000, b"\xfe\xff"),
            ("3: the file ends in half a UTF-16 unit", utf16("REGEDIT4\n\n") + b"x"),
            ("3: this is neither a key nor a value", HEADER + "hello\n", HEADER + "\0",
             HEADER.encode() + wide, wide + HEADER.encode()),
            ("3: the key has no closing bracket", HEADER + "[HKEY_LOCAL_MACHINE\\SY"),
            ("3: the key has no name", HEADER + "[]\n"),
            ("3: there is text after the key", HEADER + "[a] b\n", HEADER + "[a]" + HEADER),
            ("3: this value is before the first key", HEADER + '"a"="b"\n'),
            ("6: this value is before the first key", HEADER + "[a]\n" + HEADER + '"b"="c"\n'),
            ("4: this is no form of data", value, value + "1\n"),
            ("4: the text has no closing quote", value + '"PCI\n\n'),
            ("4: there is text after the value", value + '"PCI"x\n'),
            ("4: the value ends in the middle", value + "hex(7):50,00,\\"),
            ("4: a byte is missing in the value", value + "hex(7):50,00,\n"),
            ("5: a byte is missing in the value", value + "hex(7):50,00,\\\n"),
            ('4: the type of the value is not followed by "):"', value + "hex(7:50\n"),
            ("4: one to eight hexadecimal digits needed", value + "dword:123456789\n"),
            ("4: the value's name is not followed by an equals sign", HEADER + '[a]\n"b"\n'),
        ]:
            for content in contents:
                result = self.inventory(content)
                self.assertEqual(result.stderr.decode(), f"tolvanix: {self.machine}:{complaint}\n")
                self.assertEqual(result.stdout.decode(), EMPTY_INVENTORY)

    def test_computer_without_a_file_or_folder_is_one_line_and_no_devices(self):
        self.add("folder/file", "")
        for name, complaint in [
            ("none.reg", ": No such file or directory"),
            ("/dev/null", ": Operation not supported"),
            ("folder", "/bus/pci/devices: No such file or directory"),
        ]:
            self.machine = self.folder / name
            result = self.run_program("-i")
            self.assertEqual(result.stderr.decode(), f"tolvanix: {self.machine}{complaint}\n")
            self.assertEqual(result.stdout.decode(), EMPTY_INVENTORY)


class SysfsTree(WholeRun):
    DEVICES = "machine/bus/pci/devices"

    def add_function(self, address, driver=None, **files):
        for name, text in files.items():
            self.add(f"{self.DEVICES}/{address}/{name}", text + "\n")
        if driver:
            (self.folder / self.DEVICES / address / "driver").symlink_to(driver)

    def devices(self):
        """What the document says of each device, but for its application's name."""
        result = self.run_program("-i")
        prefix = f"tolvanix: {self.machine}/bus/pci/devices"
        self.complaints = result.stderr.decode().replace(prefix, "").splitlines()
        values = [part.split('"')[1::2] for part in result.stdout.decode().split("<Device ")[1:]]
        return [" ".join(v[:8] + v[9:10]) for v in values]

    def test_system_is_this_computers_or_unknown(self):
        self.machine.mkdir()
        major, minor = os.uname().release.split(".")[:2]
        for self.machine, version in [(self.machine, ("0", "0")), ("", (major, minor))]:
            trace = self.run_program("-i", "-d=4").stdout.decode()
            self.assertIn('majorVersion="%s"  minorVersion="%s"' % version, trace)

    def test_domains_that_no_place_is_left_for_are_one_line(self):
        for domain in range(0xFF, 0xFF + 258):
            self.add_function(f"{domain:04x}:00:00.0", uevent="PCI_ID=1DE4:0001")
        buses = [int(device.split()[4]) for device in self.devices()]
        self.assertEqual(buses, [255 * 256, *range(0, 255 * 256, 256)])
        complaint = ": more than 256 PCI domains; the functions of 2 are left out"
        self.assertEqual(self.complaints, [complaint])

    def test_snapshot_is_read_from_the_files_it_has(self):
        modalias = "pci:v00001DE4d00000007sv00001AF4sd00001100bc02sc80i0A"
        known = {"vendor": "0x1de4", "device": "0x0007"}
        self.add_function("0000:00:01.0", "../other-driver", modalias=modalias, **known)
        uevent = "noise\nPCI_SUBSYS_ID=0001\nPCI_ID=1DE4:0008\nDRIVER=made-up"
        subsystem = {"subsystem_vendor": "0x1af4", "subsystem_device": "0x0011"}
        self.add_function("0000:00:02.0", uevent=uevent, **{"class": "0x0c0330"}, **subsystem)
        # Bound to a driver, which `uevent` does not say.
        uevent = "PCI_ID=1DE4:0009\nPCI_CLASS=500000"
        self.add_function("0000:00:07.0", "../other-driver", uevent=uevent)
        uevent = "DRIVER=of-its-own\nPCI_CLASS=40300\nPCI_ID=1DE4:29C0\nPCI_SUBSYS_ID=1DF4:00AB"
        self.add_function("0001:0a:1f.3", uevent=uevent)
        self.add(f"{self.DEVICES}/0001:0a:1f.3/driver/module/version", "7.5-k\n")
        # Left out: what has no identifiers, is no function, or has gone.
        self.add_function("0000:00:03.0", irq="1")
        self.add_function("0000:00:04.0", vendor="nonsense")
        (self.folder / self.DEVICES / "0000:00:05.0").symlink_to("../gone")
        self.add_function("0000:00:06.0", vendor="0x1de4")
        os.mkfifo(self.folder / self.DEVICES / "0000:00:06.0/device")
        self.add_function("0000:00:08.0", modalias="p")
        self.add_function("0000:00:09.0", modalias="pci:v")
        for name in ["no function", "000g:00:00.0", "0000:0g:00.0", "0000:00:0g.0", "0000:00:00.g",
                     "0000-00:00.0", "0000:00-00.0", "0000:00:00-0"]:
            self.add_function(name, **known)
        for driver, version in [("made_up", "3"), ("other_driver", "4"), ("of_its_own", "5")]:
            self.add(f"machine/module/{driver}/version", version + "\n")
        devices = [
            "1DE4 0007 1100 1AF4 0000 0001 0000 Network controller 4",
            "1DE4 0008 0011 1AF4 0000 0002 0000 USB controller 3",
            "1DE4 0009 0000 0000 0000 0007 0000 PCI Device 4",
            "1DE4 29C0 00AB 1DF4 0266 0031 0003 Audio device 7.5-k",
        ]
        self.assertEqual(self.devices(), devices)
        problems = dict.fromkeys([3, 4, 5, 6, 8, 9], "its vendor and device cannot be read")
        problems[5] = "No such file or directory"
        expected = [f"/0000:00:0{n}.0: {problem}" for n, problem in problems.items()]
        self.assertEqual(self.complaints, expected)
        for hardware_id in ["PCI\\VEN_1DE4&DEV_0007&CC_02800A", "PCI\\VEN_1DE4&DEV_0008&CC_0C0330"]:
            self.add("a.inf", inf_file(hardware_id))
            self.assertEqual(self.run_program("-uhid", "-c", "-w", hardware_id).returncode, 34)


class HelperProgram(WholeRun):
    def test_installation_adds_the_version_to_the_registry_export(self):
        self.add("tolvanixhelper64/tolvanixhelper64.exe", HELPER)
        self.add("device.inf", inf_file(ID))
        no_version = EXPORT.replace("DriverVersion", "DriverDate")
        no_class_key = (HEADER + device("A", ID, Driver=KEY)).rstrip()
        for export, encode in [
            (EXPORT, str.encode), (EXPORT, utf16), (no_version, str.encode),
            (no_class_key, str.encode),
        ]:
            self.machine = self.add("machine.reg", encode(export))
            for _ in range(2):  # the second run has nothing to add
                installed = self.run_program("-uhid", "-w", ID)
                self.assertEqual(installed.returncode, 0, installed)
                self.assertEqual(self.machine.read_bytes(), encode(export + ADDED))

        # A relative name is meant where the program is started, for the helper too.
        self.machine = self.add("machine.reg", EXPORT).name
        self.assertEqual(self.run_program("-uhid", "-w", ID, cwd=self.folder).returncode, 0)

    def test_every_outcome_has_an_exit_code_and_failures_change_nothing(self):
        export = self.add("machine/machine.reg", EXPORT)
        self.folder.chmod(0o755)
        export.chmod(0o654)
        good, helper = self.add("good.inf", inf_file(ID)), self.add("helper", HELPER)
        versions = ["", ',"1""]"', ",1.0.0.0", ",1.00.0.1.0"]
        without, odd, older, same = (self.add(f"{v}.inf", inf_file(ID, v)) for v in versions)

        def no_large_file():
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

        def no_right():
            export.parent.chmod(0o555)
            os.setuid(65534 if os.geteuid() == 0 else os.getuid())

        for machine, arguments, prepare, exit_code in [
            ("", (ID, good), None, 2),
            (self.folder, (ID, good), None, 2),
            (self.folder / "none", (ID, good), None, 2),
            ("/proc/self/mem", (ID, good), None, 2),  # opens, and its first byte cannot be read
            (export, (ID,), None, 3),
            (export, (ID, self.folder / "none"), None, 4),
            (export, (ID, without), None, 4),
            (export, (ID, odd), None, 4),
            (export, ("PCI\\VEN_1DE4&DEV_0C01", good), None, 5),
            (export, (ID_WITHOUT_DRIVER, good), None, 5),
            (export, (ID, good), no_large_file, 6),
            (export, (ID, older), None, 7),
            (export, (ID, good), no_right, 8),
            (export, (ID, same), None, 0),
            (export, (ID, good), None, 0),
        ]:
            options = {"preexec_fn": prepare, "restore_signals": False}
            result = run(helper, *arguments, machine=machine, **options)
            export.parent.chmod(0o755)
            outcome = (result.returncode, result.stderr == b"")
            self.assertEqual(outcome, (exit_code, exit_code == 0), result)
            expected = EXPORT + ADDED if (arguments, exit_code) == ((ID, good), 0) else EXPORT
            self.assertEqual(export.read_text(), expected, result)
            self.assertEqual(os.listdir(export.parent), [export.name], result)
            self.assertEqual(export.stat().st_mode & 0o7777, 0o654, result)


class CollectComputer(WholeRun):
    def collect(self, *arguments):
        script = FIXTURES.parents[1] / "kit/collect-computer.sh"
        return subprocess.run([script, *arguments], cwd=self.folder, stderr=subprocess.PIPE)

    def inventory(self, machine):
        self.machine = machine
        result = self.run_program("-i")
        return result.stdout, result.stderr

    def test_inventory_elsewhere_is_that_here(self):
        here = self.inventory("")
        self.assertIn(b"<Device ", here[0])
        self.assertEqual(self.collect("a computer").stderr, b"")
        self.assertEqual(self.inventory(self.folder / "a computer"), here)
        self.assertEqual(self.collect("other.tar.gz").stderr, b"")
        subprocess.run(["tar", "xzf", "other.tar.gz"], cwd=self.folder, check=True)
        self.assertEqual(self.inventory(self.folder / "other"), here)

    def test_wrong_use_is_one_line(self):
        for arguments, complaint in [((), "usage: "), (("a", "b"), "usage: "),
                                     ((".",), ". exists already\n")]:
            run = self.collect(*arguments)
            self.assertEqual(run.returncode, 2)
            self.assertIn("collect-computer.sh: " + complaint, run.stderr.decode())


class Terminal(WholeRun):
    def run_on_terminal(self, columns, *arguments, stdout):
        """What a run writes to a terminal, on standard error and perhaps on standard output."""
        ours, its = pty.openpty()
        fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("4H", 25, columns, 0, 0))
        process = self.start_program(*arguments, stdout=stdout or its, stderr=its)
        os.close(its)
        written = b""
        try:
            while part := os.read(ours, 4096):
                written += part
        except OSError:  # the other end is closed
            pass
        os.close(ours)
        process.wait(timeout=30)
        return written.decode().replace("\r\n", "\n")

    def test_helper_at_work_is_one_line_that_is_erased(self):
        self.machine = self.add("machine.reg", EXPORT)
        device = ('<Device vendorID="1DE4" deviceID="0C0{0}" subDeviceID="000{0}" '
                  'subVendorID="1DE4"></Device>')
        self.add("kivvalid.dll", VALIDATION_LIBRARY)
        self.add("answer.txt", f"<V>{device.format(1)}{device.format(2)}</V>")
        self.add("package.xml", "<P/>")
        self.add("a.inf", inf_file(ID))
        self.add("\u00fc\x1b[1m.inf", inf_file(ID_WITHOUT_DRIVER))
        self.add_helper("echo at work >&2\n")

        lines = [f"0 of 2 done, up to 300 s: {ID[4:]} from a.inf",
                 f"1 of 2 done, up to 300 s: {ID_WITHOUT_DRIVER[4:]} from \u00fc?[1m.inf"]

        def shown(line, before=""):
            return f"{before}{line}at work\n\r{' ' * len(line.encode())}\r"

        whole = "".join(map(shown, lines))
        cut = "".join(shown(line[:39]) for line in lines)
        for columns, expected in [(200, whole), (40, cut), (1, "at work\n" * 2), (0, whole)]:
            options = {"stdout": subprocess.DEVNULL}
            self.assertEqual(self.run_on_terminal(columns, "-u", **options), expected)
        # A document on the same terminal keeps its line.
        both = self.run_on_terminal(200, "-u", stdout=None)
        document = re.split("|".join(re.escape(shown(line, "\n")) for line in lines), both)
        self.assertEqual("".join(document), self.run_program("-u").stdout.decode())
        self.assertEqual(self.run_program("-u").stderr, b"at work\n" * 2)
        self.assertEqual(self.run_on_terminal(200, "-u", "-c", stdout=subprocess.DEVNULL), "")


class Platform(WholeRun):
    def test_validation_library_that_does_not_load_has_a_reason_of_one_line(self):
        self.add("package.xml", "<P/>")
        self.assertEqual(self.run_program("-u").stderr, b"")
        whole = VALIDATION_LIBRARY.read_bytes()
        not_whole = "/kivvalid.dll: not a whole shared object of 64 bits"
        for content, reason in [
            (b"text", not_whole),
            (whole[:512], not_whole),
            (b"text" + whole[4:], not_whole),
            (whole[:4] + b"\x01" + whole[5:], not_whole),  # of 32 bits
            (whole[:18] + b"\x28" + whole[19:], "/kivvalid.dll: .+"),  # for another processor
            (whole.replace(b"\0libc.so.6\0", b"\0libx.so.6\0"), "libx.so.6: cannot open .+"),
        ]:
            self.add("kivvalid.dll", content)
            self.assertRegex(self.run_program("-u").stderr.decode(), rf"\Atolvanix: .*{reason}\n\Z")

    def test_signal_ends_the_program_and_not_its_helper(self):
        self.add("machine", EXPORT)
        self.add("a.inf", inf_file(ID))
        self.add_helper(": >../started\nread line <../go\n: >../done\n")
        os.mkfifo(self.folder / "go")
        started, done = self.folder / "started", self.folder / "done"
        arguments = ["-uhid", "-w", ID, "-o", "x", "-d=4", "-e", "trace"]
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            options = {"start_new_session": True,
                       "preexec_fn": lambda number=number: signal.signal(number, signal.SIG_DFL)}
            for end, helper_ends in ((os.kill, False), (os.killpg, True)):
                with self.subTest(signal=number, end=end):
                    process = self.start_program(*arguments, **options)
                    while not started.exists():
                        time.sleep(0.01)
                    end(process.pid, number)
                    self.assertEqual(process.wait(), -number)
                    started.unlink()
                    if not helper_ends:
                        (self.folder / "go").write_text("\n")
                        while not done.exists():
                            time.sleep(0.01)
                        done.unlink()
                    # All that was written by then is in the files; the document has no end.
                    beginning = '<?xml version="1.0" encoding="UTF-8"?><SVMExecution lang="en">'
                    self.assertEqual((self.folder / "x").read_text(), beginning)
                    trace = (self.folder / "trace").read_text()
                    self.assertRegex(trace, r"\nExecCmd: Using pDir; .*tolvanixhelper64\n\Z")
                    (self.folder / "x").unlink()

    def test_output_that_does_not_block_gets_every_byte(self):
        for number in range(200):
            self.add(f"machine/bus/pci/devices/0000:{number:02x}:00.0/uevent", "PCI_ID=1DE4:1\n")
        for arguments in [["-i"], ["-i", "-d=4"]]:
            expected = self.run_program(*arguments).stdout
            read_end, write_end = os.pipe()
            size = fcntl.fcntl(write_end, fcntl.F_SETPIPE_SZ, 4096)
            self.assertGreater(len(expected), 2 * size)
            os.set_blocking(write_end, False)
            process = self.start_program(*arguments, stdout=write_end)
            with process, open(read_end, "rb") as reader:
                os.close(write_end)
                # Nothing is read before the program waits, or has given up.
                stat = pathlib.Path(f"/proc/{process.pid}/stat")
                while process.poll() is None and stat.read_text().rsplit(")")[-1].split()[0] != "S":
                    time.sleep(0.01)
                self.assertEqual(reader.read(), expected)
            self.assertEqual(process.returncode, 0)

    def test_named_inf_that_the_search_does_not_find_is_reported(self):
        # A backslash is part of the name for the C library, and a folder's end for the search.
        self.add("a\\b.inf", "")
        result = self.run_program("-uhid", "-w", "PCI\\VEN_1DF1", "-n", "a\\b.inf")
        self.assertEqual(result.returncode, 31)

    def test_package_is_read_by_the_name_that_opens_it(self):
        self.add("kivvalid.dll", VALIDATION_LIBRARY)
        self.add("answer.txt", "<V></V>")
        self.add("other/folder/file", "")
        (self.folder / "link").symlink_to("other/folder")
        for name, opened in [("link/../package.xml", "other/package.xml"),
                             ("a\\package.xml", "a\\package.xml"), ("pack*.xml", "pack*.xml")]:
            self.add("package.xml", "<OtherPackage/>")
            self.add(opened, "<P/>")
            run = self.run_program("-u", "-p", name, "-d=4")
            self.assertEqual(run.returncode, 0, run)
            self.assertIn(b"package XML length = 4\n", run.stdout)
        os.truncate(self.folder / "package.xml", 1 << 42)  # no text, since no memory can hold it
        sanitizer = {"ASAN_OPTIONS": "allocator_may_return_null=1"}  # as the system's does
        self.assertEqual(self.run_program("-u", environment=sanitizer).returncode, 0)

    def test_folder_with_a_long_path_is_the_programs_own_or_none_other(self):
        self.machine = self.add("machine.reg", EXPORT)
        for length, is_own, starts_a_helper in [
            (255, True, True),
            (256, True, False),  # the helper's folder has too long a path
            (300, False, True),  # its own has; that of the caller stays, which has a helper
        ]:
            folder = self.folder / ("x" * 120) / ("y" * (length - 122 - len(str(self.folder))))
            program = self.add(folder / PROGRAM.name, PROGRAM)
            caller = self.add(f"{length}/a", inf_file(ID)).parent
            shutil.copy(caller / "a", folder)
            command = ["-uhid", "-w", ID, "-n", "a", "-d=4", "-o", "out.xml"]
            result = run(program, *command, machine=self.machine, cwd=caller)
            written = [file.parent for file in self.folder.rglob("out.xml")]
            self.assertEqual(written, [folder if is_own else caller])
            self.assertEqual(b"ExecCmd: " in result.stdout, starts_a_helper, result.stdout)
            shutil.rmtree(folder.parent)
            shutil.rmtree(caller)

    @unittest.skipIf(os.geteuid() != 0, "only root can change the root folder")
    def test_root_folder_is_the_programs_own_too(self):
        libraries = subprocess.run(["ldd", PROGRAM], stdout=subprocess.PIPE, check=True).stdout
        for file in re.findall(r"/\S+", libraries.decode()):
            self.add(file[1:], pathlib.Path(file))
        self.add("elsewhere/file", "")

        def enter():
            os.chroot(self.folder)
            os.chdir("/elsewhere")

        # The sanitizers look for their own process there.
        options = {"preexec_fn": enter, "environment": {"ASAN_OPTIONS": "detect_leaks=0"}}
        run(f"/{PROGRAM.name}", "-i", "-o", "out.xml", machine="/machine", **options)
        self.assertTrue((self.folder / "out.xml").exists())

    def test_fragment_and_trace_go_out_at_once(self):
        self.add("a.inf", inf_file(ID))
        self.machine = self.add("machine.reg", EXPORT)
        self.add_helper("kill -KILL $PPID\n")
        killed = self.run_program("-uhid", "-w", ID, "-d=4")
        self.assertIn(b'<SVMExecution lang="en">', killed.stdout)
        self.assertIn(b"ExecCmd: Using pDir;", killed.stdout)

    def test_any_locale_gives_the_same_bytes(self):
        self.machine = FIXTURES / "computers/four_devices.reg"
        locales = ["C", "C.UTF-8", "de_DE.UTF-8", "ja_JP.SJIS", "none"]
        runs = [self.run_program("-i", "-d=4", environment={"LC_ALL": name}) for name in locales]
        self.assertEqual(len({run.stdout for run in runs}), 1)


unittest.main(argv=sys.argv[:1])
