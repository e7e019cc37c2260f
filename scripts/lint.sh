#!/bin/sh
# Formatting and static analysis: lint.sh [everything]
# Each source is analysed as the Linux build compiles it, and what only the Windows build has as
# that one does; with `everything`, every source of the Windows build too (twice the time).
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
analyse() {
  preset=$1
  shift
  tr '\n' '\0' | xargs -0 -r -n 1 -P "$(nproc)" \
    clang-tidy --quiet -p "build/$preset" "$@" 2>/dev/null || status=1
}

lists=$(mktemp -d)
trap 'rm -rf "$lists"' EXIT
sources_of release >"$lists/release"
sources_of windows >"$lists/windows"
[ "${1:-}" = everything ] || {
  grep -vxFf "$lists/release" "$lists/windows" >"$lists/only" || true
  mv "$lists/only" "$lists/windows"
}

analyse release <"$lists/release"
# clang finds the headers of the C library by its target, those of the C++ library not.
set -- --extra-arg-before=--target=x86_64-w64-mingw32
for folder in $(x86_64-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | grep '^ /.*c++'); do
  set -- "$@" "--extra-arg-before=-isystem$folder"
done
analyse windows "$@" <"$lists/windows"

exit $status
