"""The role for Ansible on 20 simulated computers: rollout_test.py <build folder>

The sample package goes to each, by a local connection; its computer is a registry export.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop()).resolve()
ROOT = pathlib.Path(__file__).parents[2]
CONTROL = r"[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class"
NETWORK = CONTROL + "\\{4d36e972-e325-11ce-bfc1-08002be10318}\\0001]\n"
STORAGE = CONTROL + "\\{4d36e97b-e325-11ce-bfc1-08002be10318}\\0000]\n"
VERSION = '"DriverVersion"="%s"\n'
CURRENT = NETWORK + VERSION % "1.1.0.12" + STORAGE + VERSION % "2.1.10.0"
# Names in the order of the inventory, what is changed in the export, what becomes of the computer.
COMPUTERS = [
    *((f"old{i:02}", "", "changed") for i in range(10)),
    *((f"current{i}", CURRENT, "ok") for i in range(5)),
    ("storage", NETWORK + VERSION % "1.1.0.12", "changed"),
    ("restart", "", "changed"),
    ("restarted", "", "changed"),
    ("refused", NETWORK + VERSION % "0.9", "failed"),
    ("helper", NETWORK + VERSION % "1.1.0.12", "failed"),
]
OUTCOMES = {name: outcome for name, _, outcome in COMPUTERS}
# Around the sample's helper program: it fails on one computer and asks two for a restart.
HELPER = """#!/bin/sh
case $TOLVANIX_MACHINE in */helper.reg) exit 6 ;; esac
./tolvanixhelper64.exe.sample "$@" || exit
case $TOLVANIX_MACHINE in */restart*.reg) exit 1 ;; esac
"""
HANDLER = """  handlers:
    - name: Restart the simulated computer
      ansible.builtin.debug:
        msg: "{{ inventory_hostname }} restarts"
      listen: Restart the computer
"""


class Rollout(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.temporary = cls.folder / "temporary"
        cls.temporary.mkdir()
        shutil.copytree(BUILD / "bin/sample-package", cls.folder / "package")
        helper = cls.folder / "package/tolvanixhelper64/tolvanixhelper64.exe"
        helper.rename(f"{helper}.sample")
        helper.write_text(HELPER)
        helper.chmod(0o755)
        sample = (ROOT / "sdk/sample/computer.reg").read_text("utf-16")
        lines = []
        for name, changes, _ in COMPUTERS:
            export = cls.folder / f"{name}.reg"
            export.write_text(f"{sample}\n{changes}", "utf-16")
            allowed = name == "restarted"
            lines.append(f"{name} tolvanix_machine={export} tolvanix_restart={allowed}\n")
        (cls.folder / "computers").write_text("".join(lines))
        playbook = (ROOT / "deploy/ansible/rollout.yml").read_text() + HANDLER
        (cls.folder / "rollout.yml").write_text(playbook)
        cls.first, cls.first_text = cls.play(waves=[3, 17], most_failed=15)
        cls.results = {f.name: f.read_text() for f in (cls.folder / "results").iterdir()
                       if f.suffix != ".gz"}
        cls.second, cls.second_text = cls.play(waves=[19, 1], most_failed=0)

    @classmethod
    def play(cls, waves, most_failed):
        """The outcome of each computer that had its turn, and all that was printed."""
        environment = {
            **os.environ, "ANSIBLE_ROLES_PATH": str(ROOT / "deploy/ansible/roles"),
            "ANSIBLE_HOME": str(cls.folder / "home"), "ANSIBLE_FORKS": "4",
            "ANSIBLE_PIPELINING": "1", "ANSIBLE_NOCOLOR": "1", "ANSIBLE_STDOUT_CALLBACK": "default",
            "ANSIBLE_LOCALHOST_WARNING": "0", "LC_ALL": "C.UTF-8", "TMPDIR": str(cls.temporary),
        }
        values = {"tolvanix_package": str(cls.folder / "package"), "tolvanix_waves": waves,
                  "tolvanix_max_fail_percentage": most_failed,
                  "ansible_python_interpreter": sys.executable}
        play = subprocess.run(
            ["ansible-playbook", "-c", "local", "-i", "computers", "-e", json.dumps(values),
             "rollout.yml"],
            cwd=cls.folder, env=environment, stdin=subprocess.DEVNULL, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        recap = re.findall(r"^(\S+) +: ok=\d+ +changed=(\d+) +unreachable=0 +failed=(\d+)",
                           play.stdout, re.M)
        outcome = {host: "failed" if failed != "0" else "changed" if changed != "0" else "ok"
                   for host, changed, failed in recap}
        return outcome, play.stdout

    def test_first_run(self):
        self.assertEqual(self.first, OUTCOMES, self.first_text)
        for reason in ("exit code 21: Operation failed. An unspecified error occurred while "
                       "performing validation.",
                       "exit code 39: Operation failed.  TolvanixHelper failed to complete update.",
                       '"Operation successful. A restart is needed."'):
            self.assertEqual(self.first_text.count(reason), 1, reason)
        self.assertEqual(re.findall(r"(\w+) restarts", self.first_text), ["restarted"])

    def test_results_are_brought_back(self):
        traces = ["helper.log", "refused.log"]
        self.assertEqual(sorted(self.results), sorted([f"{n}.xml" for n in OUTCOMES] + traces))
        self.assertIn('id="39"', self.results["helper.xml"])
        self.assertIn("is too old; the package needs at least 1.0.", self.results["refused.log"])

    def test_second_run_changes_nothing_and_stops_after_the_wave_that_fails(self):
        expected = {name: "failed" if outcome == "failed" else "ok"
                    for name, outcome in OUTCOMES.items() if name != "helper"}
        self.assertEqual(self.second, expected, self.second_text)

    def test_nothing_is_left_on_the_computers(self):
        self.assertEqual(list(self.folder.glob("temporary/*")), [])

    def test_report_shows_all_computers(self):
        report = subprocess.run(
            [BUILD / "bin/tolvanixkit", "report", "--format", "csv",
             *sorted((self.folder / "results").glob("*.xml"))], stdout=subprocess.PIPE, text=True)
        self.assertEqual({line.split(",")[0] for line in report.stdout.splitlines()[1:]},
                         set(OUTCOMES))


if __name__ == "__main__":
    unittest.main(verbosity=1)
