"""What kit/collect-computer.sh collects here: collect_computer.py <script> <program>"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT, PROGRAM = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])


def inventory(machine):
    environment = {**os.environ, "TOLVANIX_MACHINE": str(machine)}
    command = [PROGRAM, "-i"]
    run = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    return run.stdout, run.stderr


class CollectComputer(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def collect(self, *arguments):
        return subprocess.run([SCRIPT, *arguments], cwd=self.folder, stderr=subprocess.PIPE)

    def test_inventory_elsewhere_is_that_here(self):
        here = inventory("")
        self.assertIn(b"<Device ", here[0])
        self.assertEqual(self.collect("a computer").stderr, b"")
        self.assertEqual(inventory(self.folder / "a computer"), here)
        self.assertEqual(self.collect("other.tar.gz").stderr, b"")
        subprocess.run(["tar", "xzf", "other.tar.gz"], cwd=self.folder, check=True)
        self.assertEqual(inventory(self.folder / "other"), here)

    def test_wrong_use_is_one_line(self):
        for arguments, complaint in [((), "usage: "), (("a", "b"), "usage: "),
                                     ((".",), ". exists already\n")]:
            run = self.collect(*arguments)
            self.assertEqual(run.returncode, 2)
            self.assertIn("collect-computer.sh: " + complaint, run.stderr.decode())


unittest.main(argv=sys.argv[:1])
