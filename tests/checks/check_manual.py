"""The manual pages and completions say what the programs do:
check_manual.py <source folder> <folder of the programs>
"""

import pathlib
import re
import subprocess
import sys
import unittest

PROGRAMS = pathlib.Path(sys.argv.pop())
ROOT = pathlib.Path(sys.argv.pop())


def read(name):
    return (ROOT / name).read_text()


def help_of(program, *arguments):
    return subprocess.run([PROGRAMS / program, *arguments], stdout=subprocess.PIPE, text=True,
                          check=True).stdout


def statuses():
    """The text of each status, by its number."""
    numbers = dict(re.findall(r"(k\w+) = (\d+),", read("src/app/Status.h")))
    rows = re.findall(r'\{(k\w+),\s*((?:"(?:\\.|[^"\\])*"\s*)+)\}', read("src/app/Status.cpp"))
    return {int(numbers[name]): "".join(re.findall(r'"((?:\\.|[^"\\])*)"', text)).replace('\\"', '"')
            for name, text in rows}


class Manual(unittest.TestCase):
    maxDiff = None

    def test_manual_page_has_the_text_of_each_exit_code(self):
        page = read("docs/man/tolvanix.1")
        listed = re.findall(r"^\.It (\d+)\n((?:(?!\.[A-Z]).*\n)+)", page, re.M)
        self.assertEqual({int(number): text.split() for number, text in listed},
                         {number: text.split() for number, text in statuses().items()})

    def test_readme_has_each_exit_code_once(self):
        section = read("README.md").split("## Exit codes", 1)[1].split("\n## ", 1)[0]
        listed = " ".join(re.findall(r"^\| ([\d ,to]+) \|", section, re.M) +
                          re.findall(r"\((\d[\d, and]+)have\s+texts", section))
        ranges = re.findall(r"(\d+)(?: to (\d+))?", listed)
        numbers = [n for first, last in ranges for n in range(int(first), int(last or first) + 1)]
        self.assertEqual(sorted(numbers), sorted(statuses()))

    def test_options(self):
        """Those of the help are in the manual page and in each completion."""
        commands = re.findall(r"^  (\w+) ", help_of("tolvanixkit", "--help"), re.M)
        kit = "".join(help_of("tolvanixkit", command, "--help") for command in commands)
        for program, text in ("tolvanix", help_of("tolvanix", "-h")), ("tolvanixkit", kit):
            options = set(re.findall(r"(?<![\w-])--?[a-z]+", text)) - {"-h", "--help"}
            words = options | set(commands if program == "tolvanixkit" else [])
            page = re.sub(r"\bFl (\\-)?", lambda found: "--" if found[1] else "-",
                          read(f"docs/man/{program}.1"))
            fish = re.sub(r" -[los] (\S+)", r" -\1 --\1", read(f"deploy/completions/{program}.fish"))
            for place, shown in ("manual page", page), ("fish", fish), *(
                    (name, read(f"deploy/completions/{name}"))
                    for name in (f"{program}.bash", f"_{program}")):
                missing = {w for w in words if not re.search(rf"(?<![\w-]){w}(?!\w)", shown)}
                self.assertEqual(missing, set(), f"{program}: {place}")

    def test_bash_completes(self):
        for line, expected in (
            ("tolvanix -", "-i -u -uhid -h -v"),
            ("tolvanix -i -d = ", "0 1 2 3 4"),
            ("tolvanix -u -n sdk/sample/sampl", "sdk/sample/samplenet.inf sdk/sample/samplestor.inf"),
            ("tolvanixkit re", "report"),
            ("tolvanixkit report --format ", "table html json csv"),
            ("tolvanixkit check --", "--library --helper --help"),
            ("tolvanixkit explain READ", "README.md"),
        ):
            words = line.split(" ")
            script = (f". deploy/completions/{words[0]}.bash; COMP_WORDS=(\"$@\") "
                      f"COMP_CWORD={len(words) - 1}; _{words[0]}; echo \"${{COMPREPLY[*]}}\"")
            shown = subprocess.run(["bash", "-c", script, "bash", *words], cwd=ROOT,
                                   stdout=subprocess.PIPE, text=True).stdout
            self.assertEqual(shown.strip(), expected, line)


if __name__ == "__main__":
    unittest.main()
