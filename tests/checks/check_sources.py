"""Rules for the sources that no compiler checks: check_sources.py <rule> <source folder> [build folder]

callers    Each function that winapi.h declares for other systems is called by the program, and each of its
           constants and types is used.
layers     Each folder includes what the table in docs/architecture.md says, no more and no less.
built      Each source and each test is part of the build.
platform   Platform headers and macros stand only where the platform is dealt with.
"""

import json
import pathlib
import re
import sys

CODE = {".h", ".cpp", ".c"}


def code_files(root, *folders):
    return [f for folder in folders for f in sorted((root / folder).rglob("*")) if f.suffix in CODE]


def without_comments_and_texts(code):
    code = re.sub(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|//[^\n]*', " ", code)
    return re.sub(r"/\*.*?\*/", " ", code, flags=re.DOTALL)


def callers(root):
    header = root / "src/winapi/winapi.h"
    declarations = without_comments_and_texts(header.read_text().split("#else", 1)[1])
    names = re.findall(r"^(?:\[\[\w+\]\] )?(?:\w+[ *]+)+(\w+)\([^;{]*[;{]", declarations, re.MULTILINE)
    if not names:
        return ["no function found in winapi.h"]
    program = " ".join(
        without_comments_and_texts(f.read_text())
        for f in code_files(root, "src", "sdk")
        if f != header and root / "src/winapi/posix" not in f.parents
    )
    words = set(re.findall(r"\w+", program))
    findings = [f"winapi.h declares {name}, which nothing calls" for name in names if name not in words]
    others = re.findall(r"^(?:inline const|constexpr|using|struct)(?: \w+)*? (\w+)(?: = |\(| \{)", declarations, re.MULTILINE)
    used = program + declarations + " ".join(f.read_text() for f in code_files(root, "src/winapi/posix"))
    return findings + [f"winapi.h declares {name}, which nothing uses" for name in others
                       if len(re.findall(rf"\b{name}\b", used)) < 2]


def layers(root):
    described = {}
    for folder, allowed in re.findall(r"^\| `src/([\w/]+)` \|.*\| ([^|]+) \|$", (root / "docs/architecture.md").read_text(), re.MULTILINE):
        described[folder] = set() if allowed == "nothing of ours" else set(allowed.split(", "))
    actual = {str(f.parent.relative_to(root / "src")): set() for f in code_files(root, "src")}
    for file in code_files(root, "src"):
        folder = str(file.parent.relative_to(root / "src"))
        included = set(re.findall(r'^#include "(\w[\w/]*)/\w+\.h"', file.read_text(), re.MULTILINE))
        actual[folder] |= included - {folder}
    return [f"src/{folder}: includes {sorted(actual.get(folder, {'no files'}))}, described is {sorted(described.get(folder, {'nothing'}))}"
            for folder in sorted(actual.keys() | described.keys()) if actual.get(folder) != described.get(folder)]


def built(root, build):
    commands = json.loads((build / "compile_commands.json").read_text())
    compiled = {pathlib.Path(c["directory"], c["file"]).resolve() for c in commands}
    expected = [f for f in code_files(root, "src") if f.suffix == ".cpp"]
    expected += sorted((root / "tests").rglob("*_test.cpp"))
    return [f"{f.relative_to(root)} is not built" for f in expected if f not in compiled]


def platform(root):
    def allowed(file):
        # What measures the program, and what fuzzes it, runs on Linux alone.
        ours = {root / "src/winapi", root / "tests/winapi", root / "bench", root / "fuzz"}
        if ours & set(file.parents):
            return True
        return file.parts[len(root.parts)] != "src" and file.stem.endswith(("_posix", "_windows"))

    # The standard library's own headers are those without a folder and without ".h".
    include = re.compile(r'^\s*#\s*include\s*<(?![a-z_]+>|(?:gtest|benchmark)/|pugixml\.hpp)([^>]+)>')
    # The validation library has a C interface.
    c_headers = {"stddef.h", "stdint.h", "uchar.h"}
    macro = re.compile(r"\b(_WIN32|_WIN64|WIN32|__MINGW\w*|__linux__|__unix__)\b")
    findings = []
    for file in code_files(root, "src", "sdk", "tests", "bench", "fuzz"):
        if allowed(file):
            continue
        for number, line in enumerate(file.read_text(errors="replace").splitlines(), 1):
            found = include.match(line)
            if macro.search(line) or (found and found[1] not in c_headers):
                findings.append(f"{file.relative_to(root)}:{number}: {line.strip()}")
    return findings


def main():
    rule, *folders = sys.argv[1:]
    rules = {"callers": callers, "layers": layers, "built": built, "platform": platform}
    findings = rules[rule](*(pathlib.Path(f).resolve() for f in folders))
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


main()
