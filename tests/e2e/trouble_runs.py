"""Whole runs on a system in trouble, the same on every platform: trouble_runs.py <folder of the
sample package> <program> <schema of the documents> [what runs a program...]

With little memory, a full disk, no standard streams, a current folder that is gone.
"""

import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest

SAMPLE, PROGRAM, SCHEMA = (pathlib.Path(a).resolve() for a in sys.argv[1:4])
LAUNCHER = [os.path.abspath(a) for a in sys.argv[4:]]
LARGE = 400_000_000
# Wine itself takes three quarters of its own.
ADDRESS_SPACE = 2_000_000_000 if LAUNCHER else 1_000_000_000


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))


def close_streams():
    os.close(0)
    os.close(1)


class Trouble(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.package = pathlib.Path(folder.name, "package")
        shutil.copytree(SAMPLE, self.package)
        self.result = self.package / "result.xml"

    def run_program(self, *arguments, **options):
        command = [*LAUNCHER, self.package / PROGRAM.name, *arguments]
        environment = {**os.environ, "TOLVANIX_MACHINE": str(self.package / "no computer")}
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL, **options}
        return subprocess.run(command, env=environment, timeout=60, **options)

    def expect_result(self, status):
        checked = ["xmllint", "--noout", "--schema", SCHEMA, self.result]
        subprocess.run(checked, check=True, stderr=subprocess.DEVNULL)
        self.assertIn(f'<Message id="{status}">', self.result.read_text())

    def test_out_of_memory_is_a_status(self):
        with open(self.package / "package.xml", "w", encoding="ascii") as package:
            package.write("<Package>" + "x" * LARGE)
        options = ("-u", "-o", "result.xml")
        self.assertEqual(self.run_program(*options, preexec_fn=limit_memory).returncode, 18)
        self.expect_result(18)

    def test_full_disk_changes_no_status_and_is_traced(self):
        full = "Z:\\dev\\full" if LAUNCHER else "/dev/full"
        run = self.run_program("-uhid", "-w", "PCI\\VEN_1DE0", "-n", "none", "-o", full, "-d=4")
        self.assertEqual(run.returncode, 15)
        self.assertIn(f"XMLWriter::print: failed to write xml file {full}.", run.stdout.decode())
        with open("/dev/full", "wb") as stdout:
            self.assertEqual(self.run_program("-uhid", stdout=stdout).returncode, 11)

    def test_streams_that_are_closed_keep_nothing_from_the_document(self):
        options = ("-uhid", "-w", "PCI\\VEN_1DE0&DEV_0010", "-c", "-o", "result.xml")
        run = self.run_program(*options, preexec_fn=close_streams, stdout=None)
        self.assertEqual(run.returncode, 35)
        self.expect_result(35)

    def test_folder_that_is_gone_is_not_needed(self):
        gone = self.package.parent / "gone"
        gone.mkdir()
        run = self.run_program("-v", preexec_fn=gone.rmdir, cwd=gone)
        self.assertEqual(run.returncode, 0)


unittest.main(argv=sys.argv[:1])
