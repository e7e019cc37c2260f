"""The manual pages, README, CHANGELOG and completions say what the programs are:
check_manual.py <source folder> <folder of the programs>
"""

import pathlib
import re
import subprocess
import sys
import unittest

ROOT, PROGRAMS = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
TEXT = r'"((?:\\.|[^"\\])*)"'


def read(name):
    return (ROOT / name).read_text()


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True, cwd=ROOT).stdout


def statuses():
    """The words of each status, by its number."""
    numbers = dict(re.findall(r"(k\w+) = (\d+),", read("src/app/Status.h")))
    rows = re.findall(rf"\{{(k\w+),\s*((?:{TEXT}\s*)+)\}}", read("src/app/Status.cpp"))
    return {int(numbers[row[0]]): "".join(re.findall(TEXT, row[1])).replace('\\"', '"').split()
            for row in rows}


class Manual(unittest.TestCase):
    def test_exit_codes(self):
        listed = re.findall(r"^\.It (\d+)\n((?:(?!\.[A-Z]).*\n)+)", read("docs/man/tolvanix.1"),
                            re.M)
        self.assertEqual({int(number): text.split() for number, text in listed}, statuses())
        section = read("README.md").split("## Exit codes", 1)[1].split("\n## ", 1)[0]
        cells = re.findall(r"^\| ([\d ,to]+) \||\((\d[\d, and]+)have\s+texts", section, re.M)
        ranges = re.findall(r"(\d+)(?: to (\d+))?", str(cells))
        numbers = [n for first, last in ranges for n in range(int(first), int(last or first) + 1)]
        self.assertEqual(sorted(numbers), sorted(statuses()))

    def test_changes(self):
        version = re.search(r"TOLVANIX_VERSION ([\d.]+)", read("cmake/version.cmake"))[1]
        self.assertIn(f"\n## {version}\n", read("CHANGELOG.md"))
        self.assertIn(f"tolvanix ({version}-1)", read("deploy/debian/changelog"))

    def test_options(self):
        """Those of the help are in the manual page and in each completion."""
        kit = PROGRAMS / "tolvanixkit"
        commands = set(re.findall(r"^  (\w+) ", run(kit, "--help"), re.M))
        kit_help = "".join(run(kit, command, "--help") for command in commands)
        for program, words, text, option in (
                ("tolvanix", set(), run(PROGRAMS / "tolvanix", "-h"), r"(?<![\w-])-[a-z]+"),
                ("tolvanixkit", commands, kit_help, r"^  (?:-\w,)?(--?\w+)")):
            words |= set(re.findall(option, text, re.M)) - {"-h"}
            page = read(f"docs/man/{program}.1").replace("Fl \\-", "--").replace("Fl ", "-")
            fish = read(f"deploy/completions/{program}.fish")
            shown = {"page": page, "fish": re.sub(r" -[los] (\S+)", r" -\1 --\1", fish),
                     "bash": read(f"deploy/completions/{program}.bash"),
                     "zsh": read(f"deploy/completions/_{program}")}
            missing = [(place, word) for place in shown for word in words
                       if not re.search(rf"(?<![\w-]){word}(?!\w)", shown[place])]
            self.assertEqual(missing, [])

    def test_bash_completes(self):
        for line, expected in (
            ("tolvanix -", "-i -u -uhid -h -v"),
            ("tolvanix -i -d = ", "0 1 2 3 4"),
            ("tolvanix -u -n sdk/sample/samplen", "sdk/sample/samplenet.inf"),
            ("tolvanixkit re", "report"),
            ("tolvanixkit report --format ", "table html json csv"),
            ("tolvanixkit explain READ", "README.md"),
        ):
            program, *words = line.split(" ")
            script = (f'. deploy/completions/{program}.bash; COMP_WORDS=("$@") '
                      f'COMP_CWORD={len(words)}; _{program}; echo "${{COMPREPLY[*]}}"')
            completed = run("bash", "-c", script, "bash", program, *words)
            self.assertEqual(completed, expected + "\n", line)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
