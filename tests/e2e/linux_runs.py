"""Whole runs that only Linux can have: linux_runs.py <program> <helper program> <fixtures>
                                             <validation library for tests>

On computers that files describe well or badly, with the helper program for package authors, with
devices that refuse every byte, in any locale.
"""

import fcntl
import os
import pathlib
import re
import resource
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, HELPER, FIXTURES, VALIDATION_LIBRARY = (pathlib.Path(a).resolve() for a in sys.argv[1:5])

SCHEMA = FIXTURES.parents[1] / "docs/result.xsd"
HEADER = "Windows Registry Editor Version 5.00\n\n"
ENUM = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI"
CLASS = r"HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class"
WINDOWS = r"HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion"
EMPTY_INVENTORY = '<?xml version="1.0" encoding="UTF-8"?><SVMInventory lang="en" ></SVMInventory>'


def inf_file(hardware_id, version=""):
    return (
        '[Version]\nSignature="$Windows NT$"\nClass=System\n'
        f"{version}\n[Manufacturer]\nMaker=Models\n[Models]\nDevice=Install,{hardware_id}\n"
    )


def utf16(text):
    return ("\ufeff" + text.replace("\n", "\r\n")).encode("utf-16-le")


def run(program, *arguments, machine, **more):
    environment = {**os.environ, "TOLVANIX_MACHINE": str(machine), **more.pop("environment", {})}
    output = more.pop("stdout", subprocess.PIPE)
    return subprocess.run(
        [program, *arguments], env=environment, stdout=output, stderr=subprocess.PIPE, timeout=30, **more
    )


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
        file.write_bytes(content if isinstance(content, bytes) else content.encode())
        return file

    def run_program(self, *arguments, **more):
        result = run(self.folder / PROGRAM.name, *arguments, machine=self.machine, **more)
        if (result.stdout or b"").startswith(b"<?xml"):  # no trace stands before it
            command = ["xmllint", "--noout", "--schema", SCHEMA, "-"]
            subprocess.run(command, input=result.stdout, stderr=subprocess.PIPE, check=True)
        return result


class RegistryExport(WholeRun):
    def device(self, driver):
        driver = driver.replace("\\", "\\\\")
        return f'[{ENUM}\\A\\1]\n"HardwareID"="PCI\\\\VEN_1DE4&DEV_0001"\n"Driver"="{driver}"\n'

    def driver(self, driver):
        return f'[{CLASS}\\{driver}]\n"DriverVersion"="7.5"\n'

    def inventory(self, export, *arguments):
        self.machine = self.add("m.reg", export)
        return self.run_program("-i", *arguments)

    def test_every_encoding_and_form_counts_as_it_is_after_an_import(self):
        forms = ["forms_utf16", "forms_utf8", "forms_utf8_bom", "forms_regedit4"]
        for name, expected in [*((form, "forms") for form in forms), ("import_rules", "import_rules")]:
            self.machine = FIXTURES / f"machines/{name}.reg"
            document = (FIXTURES / f"machines/{expected}.xml").read_bytes().replace(b">\n", b">")
            self.assertEqual(self.run_program("-i").stdout, document, name)

    def test_joined_exports_are_one(self):
        version = f'[{WINDOWS}]\n"CurrentVersion"="6.3"\n'
        parts = [self.device(r"{4D36E972}\0001"), self.driver(r"{4D36E972}\0001"), version]
        plain = [HEADER + part + "\n" for part in parts]
        marked = ["\ufeff" + part for part in plain]
        wide = [utf16(part) for part in plain]
        for exports in [plain, marked, wide, [plain[0], "REGEDIT4\n\n" + parts[1], marked[2]]]:
            whole = b"".join(part if isinstance(part, bytes) else part.encode() for part in exports)
            result = self.inventory(whole, "-d=4")
            self.assertEqual(result.stderr, b"")
            self.assertRegex(result.stdout, b'deviceID="0001" .* version="7.5"')
            self.assertIn(b'majorVersion="6"  minorVersion="3"', result.stdout)

    def test_limits_and_odd_values(self):
        def driven(length):  # by a class key with a path of that length
            driver = "k" * (length - len(CLASS.partition("\\")[2] + "\\"))
            return HEADER + self.device(driver) + self.driver(driver)

        for content, code, part in [
            (driven(255), 0, b' version="7.5"'),
            (driven(256), 0, b' version="0"'),
            ((driven(100) + "; \ud83d").encode("utf-16", "surrogatepass"), 0, b' version="7.5"'),
            (HEADER + f'[{WINDOWS}]\n"CurrentVersion"="six"\n', 19, b'<Message id="19">'),
        ]:
            result = self.inventory(content)
            self.assertEqual((result.returncode, result.stderr), (code, b""))
            self.assertIn(part, result.stdout)

    def test_unusable_is_one_line_and_no_devices(self):
        device = HEADER + f'[{ENUM}\\A\\1]\n"HardwareID"='
        wide = HEADER.encode("utf-16")
        for complaint, *contents in [
            ("1: the file is empty", ""),
            ("1: this is no header of a registry export", "PCI 1\n", b"\xa5" * 5000, b"\xfe\xff"),
            ("3: the file ends in half a UTF-16 unit", "\ufeffREGEDIT4\n\n".encode("utf-16-le") + b"x"),
            ("3: this is neither a key nor a value", HEADER + "hello\n", HEADER + "\0", HEADER.encode() + wide, wide + HEADER.encode()),
            ("3: the key has no closing bracket", HEADER + "[HKEY_LOCAL_MACHINE\\SY"),
            ("3: the key has no name", HEADER + "[]\n"),
            ("3: there is text after the key", HEADER + "[a] b\n", HEADER + "[a]" + HEADER),
            ("3: this value is before the first key", HEADER + '"a"="b"\n'),
            ("6: this value is before the first key", HEADER + "[a]\n" + HEADER + '"b"="c"\n'),
            ("4: this is no form of data", device, device + "1\n"),
            ("4: the text has no closing quote", device + '"PCI\n\n'),
            ("4: there is text after the value", device + '"PCI"x\n'),
            ("4: the value ends in the middle", device + "hex(7):50,00,\\"),
            ("4: a byte is missing in the value", device + "hex(7):50,00,\n"),
            ("5: a byte is missing in the value", device + "hex(7):50,00,\\\n"),
            ('4: the type of the value is not followed by "):"', device + "hex(7:50\n"),
            ("4: one to eight hexadecimal digits needed", device + "dword:123456789\n"),
            ("4: the value's name is not followed by an equals sign", HEADER + '[a]\n"b"\n'),
        ]:
            for content in contents:
                result = self.inventory(content)
                self.assertEqual(result.stderr.decode(), f"tolvanix: {self.machine}:{complaint}\n")
                self.assertEqual(result.stdout.decode(), EMPTY_INVENTORY)
        for name, problem in [("none.reg", "No such file or directory"), ("/dev/null", "Operation not supported")]:
            self.machine = self.folder / name
            complaint = f"tolvanix: {self.machine}: {problem}\n"
            self.assertEqual(self.run_program("-i").stderr.decode(), complaint)


class ValidationLibraryThatDoesNotLoad(WholeRun):
    def test_loaders_reason_is_one_line(self):
        whole = VALIDATION_LIBRARY.read_bytes()
        not_whole = "/kivvalid.dll: not a whole shared object of 64 bits"
        self.add("package.xml", "<P/>")
        missing = self.run_program("-u")
        self.assertEqual((missing.returncode, missing.stderr), (23, b""))
        for content, reason in [
            (b"text", not_whole),
            (whole[:512], not_whole),
            (whole[:18] + b"\x28" + whole[19:], "/kivvalid.dll: .+"),  # the number of another processor
            (whole.replace(b"\0libc.so.6\0", b"\0libx.so.6\0"), "libx.so.6: cannot open .+"),
        ]:
            self.add("kivvalid.dll", content)
            result = self.run_program("-u")
            self.assertEqual(result.returncode, 24)
            self.assertRegex(result.stderr.decode(), rf"\Atolvanix: .*{reason}\n\Z")


class SysfsTree(WholeRun):
    def add_function(self, address, **files):
        for name, text in files.items():
            self.add(f"machine/bus/pci/devices/{address}/{name}", text + "\n")

    def devices(self):
        """What the document says of each device, but for its application's name."""
        result = self.run_program("-i")
        complaints = result.stderr.decode().splitlines()
        self.complaints = [line.replace(f"tolvanix: {self.machine}/bus/pci/devices", "", 1) for line in complaints]
        devices = result.stdout.decode().split("<Device ")[1:]
        values = [device.split('"')[1::2] for device in devices]
        return [" ".join(v[:8] + v[9:10]) for v in values]

    def has_id(self, hardware_id):
        self.add("a.inf", inf_file(hardware_id))
        status = self.run_program("-uhid", "-c", "-w", hardware_id).returncode
        self.assertIn(status, (34, 40))
        return status == 34

    def test_function_has_what_windows_would_give_it(self):
        uevent = "DRIVER=snd_dev-x\nPCI_CLASS=40300\nPCI_ID=1DE4:29C0\nPCI_SUBSYS_ID=1DF4:00AB"
        self.add_function("0001:0a:1f.3", uevent=uevent, revision="0x0c")
        self.add("machine/bus/pci/devices/0001:0a:1f.3/driver/module/version", "7.5-k\n")
        self.assertEqual(self.devices(), ["1DE4 29C0 00AB 1DF4 0266 0031 0003 Audio device 7.5-k"])
        for rest in ["SUBSYS_00AB1DF4&REV_0C", "SUBSYS_00AB1DF4", "CC_040300", "CC_0403"]:
            self.assertTrue(self.has_id(f"PCI\\VEN_1DE4&DEV_29C0&{rest}"), rest)
        self.assertFalse(self.has_id("PCI\\VEN_1DE4&DEV_29C0&CC_0404"))
        trace = self.run_program("-i", "-d=4").stdout.decode()
        self.assertIn("\nPCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1DF4&REV_0C\n", trace)
        self.assertIn('majorVersion="0"  minorVersion="0"', trace)
        self.machine = ""  # this computer
        major, minor = os.uname().release.split(".")[:2]
        trace = self.run_program("-i", "-d=4").stdout.decode()
        self.assertIn(f'majorVersion="{major}"  minorVersion="{minor}"', trace)

    def test_functions_are_ordered_by_address_and_have_a_place_each(self):
        places = {  # the large domains have the lowest numbers that are free
            "0000:02:03.0": "0002 0003 0000",
            "0000:02:1f.0": "0002 0031 0000",
            "0000:02:1f.1": "0002 0031 0001",
            "0000:10:00.0": "0016 0000 0000",
            "0002:00:00.0": "0512 0000 0000",
            "00ff:ff:00.0": "65535 0000 0000",
            "0100:02:03.0": "0258 0003 0000",
            "ffff:02:03.0": "0770 0003 0000",
            "10000:02:03.0": "1026 0003 0000",
        }
        for address in reversed(places):
            self.add_function(address, vendor="0x1de4", device="0x0001")
        self.assertEqual([" ".join(device.split()[4:7]) for device in self.devices()], [*places.values()])
        self.assertEqual(self.complaints, [])

    def test_domains_that_no_place_is_left_for_are_one_line(self):
        for number in range(258):
            self.add_function(f"{0xFF + number:04x}:00:00.0", vendor="0x1de4", device="0x0001")
        buses = [int(device.split()[4]) for device in self.devices()]
        self.assertEqual(buses, [255 * 256, *range(0, 255 * 256, 256)])
        self.assertEqual(self.complaints, [": more than 256 PCI domains; the functions of 2 are left out"])

    def test_snapshot_is_read_from_the_files_it_has(self):
        modalias = "pci:v00001DE4d00000007sv00001AF4sd00001100bc02sc80i0A"
        self.add_function("0000:00:01.0", vendor="0x1de4", device="0x0007", modalias=modalias)
        link = self.folder / "machine/bus/pci/devices/0000:00:01.0/driver"
        link.symlink_to("../other-driver")
        self.add_function("0000:00:02.0", uevent="PCI_ID=1DE4:0008\nDRIVER=made-up", **{"class": "0x0c0330"})
        self.add_function("0000:00:02.0", subsystem_vendor="0x1af4", subsystem_device="0x0011")
        # Bound to a driver, which `uevent` does not say.
        self.add_function("0000:00:07.0", uevent="PCI_ID=1DE4:0009", **{"class": "0x500000"})
        (link.parent.parent / "0000:00:07.0/driver").symlink_to("../other-driver")
        # Left out: what has no identifiers, is no function, or has gone.
        self.add_function("0000:00:03.0", irq="1")
        self.add_function("0000:00:04.0", vendor="nonsense")
        self.add_function("0000:00:06.0", vendor="0x1de4")
        os.mkfifo(self.folder / "machine/bus/pci/devices/0000:00:06.0/device")
        self.add_function("0000:00:08.0", modalias="p")
        self.add_function("0000:00:09.0", modalias="pci:v")
        for name in ["not a function", "000g:00:00.0", "0000:0g:00.0", "0000:00:0g.0", "0000:00:00.g"]:
            self.add_function(name, vendor="0x1de4", device="0x0001")
        (link.parent.parent / "0000:00:05.0").symlink_to("../gone")
        self.add("machine/module/made_up/version", "3\n")
        self.add("machine/module/other_driver/version", "4\n")
        self.assertEqual(
            self.devices(),
            [
                "1DE4 0007 1100 1AF4 0000 0001 0000 Network controller 4",
                "1DE4 0008 0011 1AF4 0000 0002 0000 USB controller 3",
                "1DE4 0009 0000 0000 0000 0007 0000 PCI Device 4",
            ],
        )
        problems = dict.fromkeys([3, 4, 5, 6, 8, 9], "its vendor and device cannot be read")
        problems[5] = "No such file or directory"
        self.assertEqual(self.complaints, [f"/0000:00:0{n}.0: {problem}" for n, problem in problems.items()])
        self.assertTrue(self.has_id("PCI\\VEN_1DE4&DEV_0007&CC_02800A"))
        self.assertTrue(self.has_id("PCI\\VEN_1DE4&DEV_0008&CC_0C0330"))

    def test_functions_share_drivers(self):
        expected = []
        for number in range(24):
            device, function = divmod(number, 8)
            driver = f"driver-{number % 3}"
            uevent = f"DRIVER={driver}\nPCI_ID=1DE4:{number:04X}\nPCI_SUBSYS_ID=1DE4:0001\nPCI_CLASS=20000"
            self.add_function(f"0000:00:{device:02x}.{function}", uevent=uevent)
            self.add(f"machine/module/driver_{number % 3}/version", f"{number % 3}.5\n")
            place = f"0000 {device:04} {function:04}"
            expected.append(f"1DE4 {number:04X} 0001 1DE4 {place} Ethernet controller {number % 3}.5")
        self.assertEqual(self.devices(), expected)

    def test_folder_without_devices_is_one_line(self):
        self.machine.mkdir()
        result = self.run_program("-i")
        complaint = f"tolvanix: {self.machine}/bus/pci/devices: No such file or directory\n"
        self.assertEqual(result.stderr.decode(), complaint)
        self.assertEqual(result.stdout.decode(), EMPTY_INVENTORY)


class HelperProgram(WholeRun):
    ID = "PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4"
    # A device that has a driver, and one that has none.
    EXPORT = rf"""{HEADER}[{ENUM}\VEN_1DE4&DEV_0C01\1]
"HardwareID"="PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4"
"Driver"="{{4D36E97D-e325-11ce-bfc1-08002be10318}}\\0003"

[{ENUM}\VEN_1DE4&DEV_0C02\1]
"HardwareID"="PCI\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4"

[{CLASS}\{{4d36e97d-e325-11ce-bfc1-08002be10318}}\0003]
"DriverVersion"="1.0.0.1"
""".rstrip()
    # In the letter case of the device's own text.
    ADDED = f"""

[{CLASS}\\{{4D36E97D-e325-11ce-bfc1-08002be10318}}\\0003]
"DriverVersion"="2.3.4.5"
"""

    def test_installation_adds_the_version_to_the_registry_export(self):
        helper = self.folder / "tolvanixhelper64/tolvanixhelper64.exe"
        helper.parent.mkdir()
        shutil.copy(HELPER, helper)
        self.add("device.inf", inf_file(self.ID, "DriverVer = 01/02/2024, 2.3.4.5 ; a comment"))
        for encode in (str.encode, utf16):
            self.machine = self.add("machine.reg", encode(self.EXPORT))
            for _ in range(2):  # the second run has nothing to add
                installed = self.run_program("-uhid", "-w", self.ID)
                self.assertEqual(installed.returncode, 0, installed)
                self.assertIn(b"<RebootRequired>0</RebootRequired>", installed.stdout)
                self.assertEqual(self.machine.read_bytes(), encode(self.EXPORT + self.ADDED))
            self.assertIn(b'version="2.3.4.5"', self.run_program("-i").stdout)

        # A relative name is meant where the program is started, for the helper too.
        self.machine = self.add("machine.reg", self.EXPORT).name
        self.assertEqual(self.run_program("-uhid", "-w", self.ID, cwd=self.folder).returncode, 0)

    def inf(self, version):
        return self.add(f"{version}.inf", inf_file(self.ID, f"DriverVer=01/02/2024{version}"))

    def test_failures_have_an_exit_code_each_and_change_nothing(self):
        export = self.add("machine.reg", self.EXPORT)
        good = self.inf(",2.3.4.5")
        for machine, arguments, exit_code in [
            ("", (self.ID, good), 2),
            (self.folder, (self.ID, good), 2),
            (self.folder / "none", (self.ID, good), 2),
            ("/proc/self/mem", (self.ID, good), 2),  # opens, and its first byte cannot be read
            (export, (self.ID,), 3),
            (export, (self.ID, self.folder / "none"), 4),
            (export, (self.ID, self.inf("")), 4),
            (export, (self.ID, self.inf(',"1""]"')), 4),
            (export, ("PCI\\VEN_1DE4&DEV_0C01", good), 5),
            (export, ("PCI\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4", good), 5),
            (export, (self.ID, self.inf(",1.0.0.0")), 7),
            (export, (self.ID, self.inf(",1.00.0.1.0")), 0),
        ]:
            result = run(HELPER, *arguments, machine=machine)
            self.assertEqual((result.returncode, result.stderr == b""), (exit_code, exit_code == 0), result)
        self.assertEqual(export.read_text(), self.EXPORT)

    def test_file_keeps_its_permissions_and_has_nothing_beside_it(self):
        export = self.add("machine/machine.reg", self.EXPORT)
        good = self.inf(",2.3.4.5")
        helper = shutil.copy(HELPER, self.folder)
        export.chmod(0o654)

        def no_large_file():
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

        def no_right():
            os.setuid(65534 if os.geteuid() == 0 else os.getuid())

        for folder_mode, before_start, exit_code, content in [
            (0o755, no_large_file, 6, self.EXPORT),
            (0o555, no_right, 8, self.EXPORT),
            (0o755, None, 0, self.EXPORT + self.ADDED),
        ]:
            self.folder.chmod(0o755)
            export.parent.chmod(folder_mode)
            result = run(helper, self.ID, good, machine=export, preexec_fn=before_start, restore_signals=False)
            self.assertEqual(result.returncode, exit_code, result)
            self.assertEqual(export.read_text(), content)
            self.assertEqual(os.listdir(export.parent), [export.name])
            self.assertEqual(stat.filemode(export.stat().st_mode), "-rw-r-xr--")


class Platform(WholeRun):
    def test_full_device_loses_fragments_and_the_status_stays(self):
        result = self.run_program("-uhid", "-o", "/dev/full", "-d=4", "-e", "trace.log")
        self.assertEqual((result.returncode, result.stdout), (11, b""))
        trace = (self.folder / "trace.log").read_text()
        self.assertIn("XMLWriter::print: failed to write xml file /dev/full.\n", trace)
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_program("-uhid", stdout=full).returncode, 11)

    def test_file_that_may_not_grow_loses_fragments_and_the_status_stays(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (20, 20))

        result = self.run_program("-uhid", "-o", "out.xml", preexec_fn=limit)
        self.assertEqual((result.returncode, (self.folder / "out.xml").stat().st_size), (11, 20))

    def test_output_that_does_not_block_gets_every_byte(self):
        for number in range(200):
            self.add(f"machine/bus/pci/devices/0000:{number:02x}:00.0/uevent", f"PCI_ID=1DE4:{number:04X}\n")
        for arguments in [["-i"], ["-i", "-d=4"]]:
            expected = self.run_program(*arguments).stdout
            read_end, write_end = os.pipe()
            size = fcntl.fcntl(write_end, fcntl.F_SETPIPE_SZ, 4096)
            self.assertGreater(len(expected), 2 * size)
            os.set_blocking(write_end, False)
            command = [self.folder / PROGRAM.name, *arguments]
            environment = {**os.environ, "TOLVANIX_MACHINE": str(self.machine)}
            process = subprocess.Popen(command, env=environment, stdout=write_end)
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
        shutil.copy(VALIDATION_LIBRARY, self.folder / "kivvalid.dll")
        self.add("tolvanixhelper64/tolvanixhelper64.exe", "")
        self.add("answer.txt", "<V></V>")
        self.add("package.xml", "<OtherPackage/>")
        self.add("other/folder/file", "")
        (self.folder / "link").symlink_to("other/folder")
        for name in ["other/package.xml", "a\\package.xml", "pack*.xml"]:
            self.add(name, "<P/>")
        for name in ["link/../package.xml", "a\\package.xml", "pack*.xml"]:
            run = self.run_program("-u", "-p", name, "-d=4")
            self.assertEqual(run.returncode, 0, run)
            self.assertIn(b"package XML length = 4\n", run.stdout)
        with open(self.folder / "package.xml", "wb") as huge:
            huge.truncate(1 << 42)  # no text, since no memory can hold it
        sanitizer = {"ASAN_OPTIONS": "allocator_may_return_null=1"}  # as the system's does
        self.assertEqual(self.run_program("-u", environment=sanitizer).returncode, 0)

    def folder_of_length(self, length):
        folder = self.folder / ("x" * 120) / ("y" * (length - 122 - len(str(self.folder))))
        folder.mkdir(parents=True)
        shutil.copy(PROGRAM, folder)
        return folder

    def test_own_folder_is_current_or_none_other(self):
        # The second is longer than a current folder may be: that of the caller stays.
        for length, is_own in [(255, True), (300, False)]:
            folder = self.folder_of_length(length)
            caller = self.add(f"{length}/file", "").parent
            run(folder / PROGRAM.name, "-i", "-o", "out.xml", machine=self.machine, cwd=caller)
            self.assertEqual([file.parent for file in self.folder.rglob("out.xml")], [folder if is_own else caller])
            shutil.rmtree(folder.parent)
            shutil.rmtree(caller)

    @unittest.skipIf(os.geteuid() != 0, "only root can change the root folder")
    def test_root_folder_is_the_programs_own_too(self):
        libraries = re.findall(r"/\S+", subprocess.run(["ldd", PROGRAM], stdout=subprocess.PIPE, check=True).stdout.decode())
        for file in libraries:
            (self.folder / file[1:]).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(file, self.folder / file[1:])
        self.add("elsewhere/file", "")

        def enter():
            os.chroot(self.folder)
            os.chdir("/elsewhere")

        # The sanitizers look for their own process there.
        environment = {"ASAN_OPTIONS": "detect_leaks=0"}
        run(f"/{PROGRAM.name}", "-i", "-o", "out.xml", machine="/machine", preexec_fn=enter, environment=environment)
        self.assertTrue((self.folder / "out.xml").exists())

    def test_path_too_long_for_the_helpers_starts_no_helper_of_another_folder(self):
        self.machine = self.add("machine.reg", HelperProgram.EXPORT)
        for length, started in [(255, True), (256, False)]:  # its own, which fails; none
            folder = self.folder_of_length(length)
            (folder / "a").write_text(inf_file(HelperProgram.ID))
            program = folder / PROGRAM.name
            arguments = ["-uhid", "-w", HelperProgram.ID, "-n", "a", "-d=4"]
            result = run(program, *arguments, machine=self.machine)
            self.assertEqual(result.returncode, 39)
            self.assertIn(b"UpdateDriver: Entered function.", result.stdout)
            self.assertEqual(b"ExecCmd: " in result.stdout, started, result.stdout)

    def test_fragment_and_trace_go_out_at_once(self):
        self.add("a.inf", inf_file(HelperProgram.ID))
        self.machine = self.add("machine.reg", HelperProgram.EXPORT)
        helper = self.add("tolvanixhelper64/tolvanixhelper64.exe", "#!/bin/sh\nkill -KILL $PPID\n")
        helper.chmod(0o755)
        killed = self.run_program("-uhid", "-w", HelperProgram.ID, "-d=4")
        self.assertIn(b'<SVMExecution lang="en">', killed.stdout)
        self.assertIn(b"ExecCmd: Using pDir;", killed.stdout)

    def test_any_locale_gives_the_same_bytes(self):
        self.machine = FIXTURES / "computers/four_devices.reg"
        outputs = {
            self.run_program("-i", "-d=4", environment={"LC_ALL": locale}).stdout
            for locale in ["C", "C.UTF-8", "de_DE.UTF-8", "ja_JP.SJIS", "none"]
        }
        self.assertEqual(len(outputs), 1)


unittest.main(argv=sys.argv[:1])
