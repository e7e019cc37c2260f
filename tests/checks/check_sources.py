"""Rules for the sources that no compiler checks: check_sources.py <rule> <source folder>
                                                                  [build folder]

callers    Each function that winapi.h declares for other systems is called by the program, and each
           of its constants and types is used.
layers     Each folder includes what the table in docs/architecture.md says, no more and no less.
built      Each source and each test is part of the build.
platform   Platform headers and macros stand only where the platform is dealt with.
"""

import json
import pathlib
import re
import sys

RULE, ROOT, *BUILD = sys.argv[1], *(pathlib.Path(f).resolve() for f in sys.argv[2:])


def sources(*folders):
    """The text of each file, by its name below the root."""
    files = [f for folder in folders for f in sorted((ROOT / folder).rglob("*.*"))]
    code = [f for f in files if f.suffix in {".h", ".cpp", ".c"}]
    return {str(f.relative_to(ROOT)): f.read_text() for f in code}


def words(code):
    """Those outside comments and texts."""
    passed_over = r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|//[^\n]*|/\*.*?\*/'
    return re.findall(r"\w+", re.sub(passed_over, " ", code, flags=re.DOTALL))


def callers():
    code = sources("src", "sdk")
    declarations = code.pop("src/winapi/winapi.h").split("#else", 1)[1]
    functions = re.findall(r"^(?:\[\[\w+\]\] )?(?:\w+[ *]+)+(\w+)\([^;{]*[;{]", declarations, re.M)
    others = r"^(?:inline const|constexpr|using|struct)(?: \w+)*? (\w+)(?: = |\(| \{)"
    others = re.findall(others, declarations, re.M)
    program = "".join(code[name] for name in code if not name.startswith("src/winapi/posix/"))
    called, used = set(words(program)), words("".join(code.values()) + declarations)
    unused = {name for name in others if used.count(name) < 2} | set(functions) - called
    return [f"winapi.h declares {name}, which nothing uses" for name in unused]


def layers():
    table = (ROOT / "docs/architecture.md").read_text()
    rows = re.findall(r"^\| `((?:src|kit)[\w/]*)` \|.*\| ([^|]+) \|$", table, re.M)
    described = {folder: set(parts.split(", ")) - {"nothing of ours"} for folder, parts in rows}
    actual = {}
    for name, code in sources("src", "kit").items():
        folder = name.rpartition("/")[0]
        included = set(re.findall(r'^#include "(\w[\w/]*)/\w+\.h"', code, re.M))
        actual[folder] = actual.get(folder, set()) | included - {folder.partition("/")[2]}
    return [f"{folder}: includes {actual.get(folder)}, described is {described.get(folder)}"
            for folder in actual.keys() | described if actual.get(folder) != described.get(folder)]


def built():
    commands = json.loads((BUILD[0] / "compile_commands.json").read_text())
    compiled = {pathlib.Path(c["directory"], c["file"]).resolve() for c in commands}
    expected = re.compile(r"(src|kit)/(?!.*_windows\.).*\.cpp|tests/.*_test\.cpp")
    return [f"{name} is not built" for name in sources("src", "kit", "tests")
            if expected.fullmatch(name) and ROOT / name not in compiled]


def platform():
    # What measures and what fuzzes the program runs on Linux alone, and is left out.
    allowed = re.compile(r"(src|tests)/winapi/|(?!src/).*_(posix|windows)\.\w+$")
    # The standard library's own headers are those without a folder and without ".h". The validation
    # library has a C interface. What else is included serves every platform.
    shared = r"[a-z_]+>|gtest/|gmock/|CLI/|nlohmann/|(?:stddef|stdint|uchar)\.h>"
    header = rf"\s*#\s*include\s*<(?!{shared})"
    macro = r".*\b(?:_WIN32|_WIN64|WIN32|__MINGW\w*|__linux__|__unix__)\b"
    foreign = re.compile(f"{header}|{macro}")
    return [f"{name}:{number}: {line}"
            for name, code in sources("src", "sdk", "kit", "tests").items()
            if not allowed.match(name)
            for number, line in enumerate(code.splitlines(), 1) if foreign.match(line)]


findings = {"callers": callers, "layers": layers, "built": built, "platform": platform}[RULE]()
print("\n".join(findings))
sys.exit(1 if findings else 0)
