#!/bin/sh
# Formatting and static analysis: lint.sh [everything]
# Analysed are the program's sources as the Linux build compiles them; with `everything` the tests
# too, and then all of it as the Windows build does.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh build windows lint

status=0
git ls-files -z -- '*.cpp' '*.c' '*.h' | xargs -0 clang-format --dry-run --Werror || status=1

for preset in release windows; do
  [ -e "build/$preset/compile_commands.json" ] ||
    cmake --preset "$preset" -DTOLVANIX_BENCH=OFF >/dev/null
done

# The sources of a build, longest first so that both cores end together.
sources_of() {
  python3 - "build/$1/compile_commands.json" <<'PYTHON'
import json, os, sys
sources = {os.path.relpath(entry["file"]) for entry in json.load(open(sys.argv[1]))}
ours = [name for name in sources if name.endswith((".cpp", ".c")) and not name.startswith(("..", "build"))]
print("\n".join(sorted(ours, key=os.path.getsize, reverse=True)))
PYTHON
}
# Reads the names of sources; the rest of the arguments is for clang-tidy.
analyse() {
  preset=$1
  shift
  tr '\n' '\0' | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy --quiet -p "build/$preset" "$@" 2>/dev/null
}

if [ "${1:-}" != everything ]; then
  sources_of release | grep -v '^tests/' | analyse release || status=1
else
  sources_of release | analyse release || status=1
  # clang finds the headers of the C library by its target, those of the C++ library not.
  # There an argument list is a pointer, which va_start initialises.
  set -- --extra-arg-before=--target=x86_64-w64-mingw32 --checks=-cppcoreguidelines-init-variables
  for folder in $(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | grep '^ /.*c++'); do
    set -- "$@" "--extra-arg-before=-isystem$folder"
  done
  sources_of windows | analyse windows "$@" || status=1
fi
exit $status
