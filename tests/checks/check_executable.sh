#!/bin/sh
# What a Windows computer asks of the program's file: check_executable.sh <tolvanix.exe> <version>
# A 64-bit console program that needs no library but the system's, and carries its version and its
# manifest.
set -eu
tools=x86_64-w64-mingw32
headers=$("$tools-objdump" -p "$1")
resources=$("$tools-windres" -i "$1" -O rc)

status=0
expect() { # <what> <text> <pattern>
  printf '%s\n' "$2" | grep -qE -- "$3" || { echo "missing: $1"; status=1; }
}
expect '64-bit image' "$headers" '^Magic.*PE32\+'
expect 'console subsystem' "$headers" '^Subsystem.*Windows CUI'
expect 'random base address' "$headers" 'DYNAMIC_BASE'
expect 'no execution of data' "$headers" 'NX_COMPAT'
numbers=$(echo "$2" | sed 's/\./, /g')
expect 'file version' "$resources" "FILEVERSION $numbers\$"
expect 'product version' "$resources" "PRODUCTVERSION $numbers\$"
expect 'rights of the caller' "$resources" 'requestedExecutionLevel level=""asInvoker""'
expect 'Windows 10 and 11' "$resources" 'supportedOS Id=""\{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a\}""'
expect 'UTF-8' "$resources" '>UTF-8</activeCodePage>'

foreign=$(printf '%s\n' "$headers" | sed -n 's/.*DLL Name: //p' |
  grep -viE '^(kernel32|msvcrt|advapi32|setupapi)\.dll$' || true)
[ -z "$foreign" ] || { echo "imports:" $foreign; status=1; }
exit $status
