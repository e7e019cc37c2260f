#!/bin/sh
# Collects what describes this computer's PCI devices, so that the program can take inventory of it
# elsewhere: collect-computer.sh FOLDER, or collect-computer.sh FILE.tar.gz for that folder in an
# archive. Elsewhere: TOLVANIX_MACHINE=FOLDER tolvanix -i
set -eu

complain() {
  echo "collect-computer.sh: $1" >&2
  exit "$2"
}

[ $# -eq 1 ] || complain "usage: collect-computer.sh FOLDER | FILE.tar.gz" 2
[ ! -e "$1" ] || complain "$1 exists already" 2
functions=/sys/bus/pci/devices
[ -d $functions ] || complain "this system has no $functions" 1

copy() { # copy FILE TO: as it is, when it is there and can be read
  [ ! -r "$1" ] || cat "$1" >"$2"
}

# collect_function SOURCE FOLDER
collect_function() {
  mkdir "$2"
  for name in uevent vendor device subsystem_vendor subsystem_device class modalias revision; do
    copy "$1/$name" "$2/$name"
  done
  # Where an old kernel has no file for it, the revision is byte 8 of these.
  [ -e "$2/revision" ] || dd if="$1/config" of="$2/config" bs=64 count=1 2>/dev/null
  [ -e "$1/driver" ] || return 0
  driver=$(basename "$(readlink "$1/driver")")
  ln -s "../../drivers/$driver" "$2/driver"
  [ -e "$drivers/$driver" ] || collect_driver "$1/driver/module/version" "$driver"
}

# collect_driver VERSION_FILE NAME: a driver without a version of its own has that of the kernel,
# which nothing else in the folder says.
collect_driver() {
  mkdir -p "$drivers/$2/module"
  version=$drivers/$2/module/version
  copy "$1" "$version"
  [ -e "$version" ] || copy "/sys/module/$(echo "$2" | tr - _)/version" "$version"
  [ -e "$version" ] || uname -r >"$version"
}

work=
trap '[ -z "$work" ] || rm -rf "$work"' EXIT
case $1 in
  *.tar.gz)
    work=$(mktemp -d)
    computer=$work/$(basename "$1" .tar.gz)
    ;;
  *) computer=$1 ;;
esac

drivers=$computer/bus/pci/drivers
mkdir -p "$computer/bus/pci/devices" "$drivers"
for function in "$functions"/*; do
  [ ! -e "$function" ] || collect_function "$function" "$computer/bus/pci/devices/${function##*/}"
done
[ -z "$work" ] || tar -C "$work" -czf "$1" "${computer##*/}"
