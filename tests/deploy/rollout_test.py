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
ROOT = pathlib.Path(__file__).resolve().parents[2]
DRIVER = ("[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Class\\%s]\n"
          '"DriverVersion"="%s"\n')
NETWORK, STORAGE = (f"{{4d36e97{kind}-e325-11ce-bfc1-08002be10318}}\\000{number}"
                    for kind, number in (("2", 1), ("b", 0)))
NETWORK_CURRENT = DRIVER % (NETWORK, "1.1.0.12")
CURRENT = NETWORK_CURRENT + DRIVER % (STORAGE, "2.1.10.0")
# In the order of the inventory: what the computer's export has besides, and what becomes of it.
COMPUTERS = {
    "current": (CURRENT, "ok"),
    "half": (NETWORK_CURRENT, "changed"),
    "restart": ("", "changed"),
    "restarted": ("", "changed"),
    **{f"current{i}": (CURRENT, "ok") for i in range(4)},
    **{f"old{i}": ("", "changed") for i in range(10)},
    "refused": (DRIVER % (NETWORK, "0.9"), "failed"),
    "helper": (NETWORK_CURRENT, "failed"),
}
SAID = (
    "exit code 21: Operation failed. An unspecified error occurred while performing validation.",
    "exit code 39: Operation failed.  TolvanixHelper failed to complete update.",
    "Operation successful. A restart is needed.", "restarted restarts",
)
# Around the sample's helper program: it fails on one computer and asks for a restart of two.
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
    def make_package_and_computers(self):
        shutil.copytree(BUILD / "bin/sample-package", self.folder / "package")
        helper = self.folder / "package/tolvanixhelper64/tolvanixhelper64.exe"
        helper.rename(f"{helper}.sample")
        helper.write_text(HELPER)
        helper.chmod(0o755)
        sample = (ROOT / "sdk/sample/computer.reg").read_text("utf-16")
        for name, (changes, _) in COMPUTERS.items():
            (self.folder / f"{name}.reg").write_text(f"{sample}\n{changes}", "utf-16")

    def play(self, *waves):
        """The outcome of each computer that had its turn, and all that was printed."""
        values = {
            "tolvanix_package": f"{self.folder}/package", "tolvanix_waves": waves,
            "tolvanix_machine": f"{self.folder}/{{{{ inventory_hostname }}}}.reg",
            "tolvanix_restart": "{{ inventory_hostname == 'restarted' }}",
            "ansible_connection": "local", "ansible_python_interpreter": "/usr/bin/python3",
        }
        environment = {
            **os.environ, "ANSIBLE_ROLES_PATH": f"{ROOT}/deploy/ansible/roles",
            "ANSIBLE_PIPELINING": "1", "ANSIBLE_HOME": f"{self.folder}/home",
            "LC_ALL": "C.UTF-8", "PWD": str(self.folder), "TMPDIR": f"{self.folder}/temporary",
        }
        text = subprocess.run(
            ["ansible-playbook", "-i", ",".join(COMPUTERS), "-e", json.dumps(values), "play.yml"],
            cwd=self.folder, env=environment, stdin=subprocess.DEVNULL, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        recap = re.findall(r"^(\S+) +: .*changed=(\d+) .*failed=(\d+)", text, re.M)
        return {host: "failed" if int(failed) else "changed" if int(changed) else "ok"
                for host, changed, failed in recap}, text

    def test_waves(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.make_package_and_computers()
        (self.folder / "temporary").mkdir()
        playbook = (ROOT / "deploy/ansible/rollout.yml").read_text()
        (self.folder / "play.yml").write_text(playbook + HANDLER)

        outcomes, text = self.play(20)
        self.assertEqual(outcomes, {name: c[1] for name, c in COMPUTERS.items()}, text)
        for said in SAID:
            self.assertEqual(text.count(f'"{said}"'), 1, text)
        self.assertNotIn("no result document", text)
        results = self.folder / "results"
        documents = sorted(results.glob("*.xml"))
        self.assertEqual([file.stem for file in documents], sorted(COMPUTERS))
        self.assertEqual(sorted(f.stem for f in results.glob("*.log")), ["helper", "refused"])
        self.assertIn("is too old; the package needs", (results / "refused.log").read_text())
        self.assertEqual(os.listdir(self.folder / "temporary"), [], "left on the computers")
        page = subprocess.check_output(
            [BUILD / "bin/tolvanixkit", "report", "--format", "html", *documents], text=True)
        self.assertEqual([name for name in COMPUTERS if f">{name}<" not in page], [])

        outcomes, text = self.play(18, 1, 1)  # the second wave fails, so the third has no turn
        again = dict.fromkeys(COMPUTERS, "ok") | {"refused": "failed"}
        del again["helper"]
        self.assertEqual(outcomes, again, text)


if __name__ == "__main__":
    unittest.main()
