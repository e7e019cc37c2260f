#!/bin/sh
# What distributions ask of a program that they ship: check_linux_image.sh <file>
# It needs no library but those of the C library.
set -eu
status=0
expect() { # <what> <option of readelf> <pattern>
  readelf -W "$2" "$file" | grep -qE -- "$3" || { echo "missing: $1"; status=1; }
}
file=$1
expect 'random base address' --file-header '^ *Type: +DYN'
expect 'no execution of data' --program-headers ' GNU_STACK .* RW '
expect 'relocations read-only after the start' --program-headers '^ *GNU_RELRO '
expect 'symbols bound at the start' --dynamic '\(FLAGS\).*BIND_NOW'
expect 'stack protector' --dyn-syms ' __stack_chk_fail(@|$)'
expect 'checked functions of the C library' --dyn-syms '_chk@GLIBC'
foreign=$(readelf -W --dynamic "$file" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
  grep -vE '^(libc\.so\.6|libm\.so\.6|ld-linux-x86-64\.so\.2)$' || true)
[ -z "$foreign" ] || { echo "needs:" $foreign; status=1; }
exit $status
