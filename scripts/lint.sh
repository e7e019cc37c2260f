#!/bin/sh
# The format of every source, and static analysis of src, sdk, kit, tests and fuzz as each platform
# compiles them.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build windows lint fuzz

status=0
git ls-files -z -- '*.cpp' '*.c' '*.h' | xargs -0 clang-format --dry-run --Werror || status=1

# analyse <preset> <option for cmake> [option for clang-tidy...]
# Without precompiled headers, so that an include that is missing shows.
analyse() {
  build=build/lint/$1
  cmake --preset "$1" -B "$build" "$2" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
  shift 2
  sources_of "$build" | tr '\n' '\0' |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" "$@" 2>/dev/null
}

# Leaves one command for each source of ours, also when several targets compile it. Prints the
# sources, longest first, so that all cores end together.
sources_of() {
  python3 - "$1/compile_commands.json" <<'PYTHON'
import json, os, sys
commands = {}
for entry in json.load(open(sys.argv[1])):
    source = os.path.relpath(entry["file"])
    if source.endswith((".cpp", ".c")) and not source.startswith(("..", "build")):
        commands.setdefault(source, entry)
json.dump(list(commands.values()), open(sys.argv[1], "w"))
print("\n".join(sorted(commands, key=os.path.getsize, reverse=True)))
PYTHON
}

(cd deploy/ansible && ansible-lint --offline --strict --profile production) || status=1

analyse release -DTOLVANIX_FUZZ=ON || status=1
# clang finds the headers of the C library by its target, those of the C++ library not.
# There an argument list is a pointer, which va_start initialises.
set -- --extra-arg-before=--target=x86_64-w64-mingw32 --checks=-cppcoreguidelines-init-variables
for folder in $(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | grep '^ /.*c++'); do
  set -- "$@" "--extra-arg-before=-isystem$folder"
done
analyse windows -DTOLVANIX_FUZZ=OFF "$@" || status=1
exit $status
