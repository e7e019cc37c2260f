#!/bin/sh
# The format of every source, and static analysis: lint.sh [folder...]   (src sdk kit tests)
# Of the roll-out, and of the sources in these folders as Linux compiles them; as Windows does of
# those that Linux does not.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build windows lint

[ $# -gt 0 ] || set -- src sdk kit tests
folders=$*
status=0
git ls-files -z -- '*.cpp' '*.c' '*.h' | xargs -0 clang-format --dry-run --Werror || status=1

# configure <preset>
# Each source by itself and without precompiled headers, so that an include that is missing shows.
configure() {
  cmake --preset "$1" -B "build/lint/$1" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
    -DCMAKE_UNITY_BUILD=OFF >/dev/null
  sources_of "build/lint/$1" >"build/lint/$1.txt"
}

# Leaves one command for each source of ours, also when several targets compile it. Prints the
# sources, longest first, so that all cores end together.
sources_of() {
  python3 - "$1/compile_commands.json" $folders <<'PYTHON'
import json, os, sys
commands = {}
for entry in json.load(open(sys.argv[1])):
    source = os.path.relpath(entry["file"])
    if source.endswith((".cpp", ".c")) and source.split(os.sep)[0] in sys.argv[2:]:
        commands.setdefault(source, entry)
json.dump(list(commands.values()), open(sys.argv[1], "w"))
print("\n".join(sorted(commands, key=os.path.getsize, reverse=True)))
PYTHON
}

# analyse <preset> [option...]: the sources that standard input lists
analyse() {
  build=build/lint/$1
  shift
  tr '\n' '\0' | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" "$@" 2>/dev/null
}

(cd deploy/ansible && ansible-lint --offline --strict --profile production) || status=1

configure release
configure windows
analyse release <build/lint/release.txt || status=1

# clang finds the headers of the C library by its target, those of the C++ library not.
set -- --extra-arg-before=--target=x86_64-w64-mingw32
for folder in $(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | grep '^ /.*c++'); do
  set -- "$@" "--extra-arg-before=-isystem$folder"
done
# There an argument list is a pointer, which va_start initialises.
grep -vxFf build/lint/release.txt build/lint/windows.txt |
  analyse windows "$@" --checks=-cppcoreguidelines-init-variables || status=1
exit $status
