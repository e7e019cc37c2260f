#!/bin/sh
# What a Windows computer asks of a file that is delivered:
# check_windows_image.sh <file> <version> <libraries that it may import, as in "kernel32|msvcrt">
# A 64-bit console program, or a library (.dll), that needs nothing but those libraries of the
# system, and carries its version and its manifest.
set -eu
tools=x86_64-w64-mingw32
headers=$("$tools-objdump" -p "$1")
resources=$("$tools-windres" -i "$1" -O rc)

status=0
expect() { # <what> <text> <pattern>
  printf '%s\n' "$2" | grep -qE -- "$3" || { echo "missing: $1"; status=1; }
}
expect '64-bit image' "$headers" '^Magic.*PE32\+'
case $1 in
*.dll) type=2 manifest=2 && expect 'library' "$headers" '^.DLL$' ;;
*) type=1 manifest=1 ;;
esac
expect 'kind of file' "$resources" "FILETYPE 0x$type\$"
expect 'manifest where the system looks for it' "$resources" "^$manifest 24 "
expect 'console subsystem' "$headers" '^Subsystem.*Windows CUI'
expect 'random base address' "$headers" 'DYNAMIC_BASE'
expect 'random base address of 64 bits' "$headers" 'HIGH_ENTROPY_VA'
expect 'no execution of data' "$headers" 'NX_COMPAT'
expect 'stack protector' "$("$tools-nm" "$1")" ' __stack_chk_fail$'
numbers=$(echo "$2" | sed 's/\./, /g')
expect 'file version' "$resources" "FILEVERSION $numbers\$"
expect 'product version' "$resources" "PRODUCTVERSION $numbers\$"
expect 'rights of the caller' "$resources" 'requestedExecutionLevel level=""asInvoker""'
expect 'Windows 10 and 11' "$resources" 'supportedOS Id=""\{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a\}""'
expect 'UTF-8' "$resources" '>UTF-8</activeCodePage>'

foreign=$(printf '%s\n' "$headers" | sed -n 's/.*DLL Name: //p' |
  grep -viE "^($3)\.dll\$" || true)
[ -z "$foreign" ] || { echo "imports:" $foreign; status=1; }
exit $status
