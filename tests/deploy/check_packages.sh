#!/bin/sh
# What scripts/package.sh made, as users get it: check_packages.sh <folder of the packages>
# The zip under Wine, the Debian package in a root of its own, both without a trace afterwards.
set -eu
cd "$(dirname "$0")/../.."
root=$PWD packages=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $1"; exit 1; }
same() { diff "$1" "$2" >&2 || fail "$3"; }

# They name each other, and are not installed here.
! mandoc -Tlint docs/man/*.1 | grep -v 'referenced manual not found: Xr tolvanix' ||
  fail 'the manual pages have faults'
lintian --allow-root --fail-on error,warning "$packages"/*.deb

in_a_debian() {
  # From where this computer has its packages.
  sources=/etc/apt/sources.list.d/debian.sources
  [ -e "$sources" ] || sources=/etc/apt/sources.list
  mmdebstrap --quiet --variant=apt --include=man-db,pci.ids bookworm "$work/debian" "$sources"
  mount --bind /sys "$work/debian/sys"
  trap 'umount "$work/debian/sys"; rm -rf --one-file-system "$work"' EXIT
  inside() { chroot "$work/debian" "$@"; }
  files() {
    (cd "$work/debian" && find etc home opt root srv tmp usr var/lib/tolvanix 2>&1 | sort)
  }
  cp "$packages"/*.deb "$work/debian/var/cache"
  files >"$work/before"
  inside sh -c 'dpkg -i /var/cache/tolvanix_*.deb' >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  files >"$work/installed"
  build/release/bin/tolvanix -i >"$work/expected"
  inside sh -c 'cd / && tolvanix -i' >"$work/inventory"
  same "$work/expected" "$work/inventory" 'the inventory is another one'
  inside sh -c 'cd /srv && tolvanix -d=4 -o inventory.xml -e trace.log -i'
  same "$work/expected" "$work/debian/srv/inventory.xml" 'no inventory in the current folder'
  grep -q 'Debugging has been initialized' "$work/debian/srv/trace.log"
  inside tolvanixkit report --format csv /srv/inventory.xml | grep -q ^inventory,
  rm "$work/debian/srv/inventory.xml" "$work/debian/srv/trace.log"
  status=0
  inside tolvanix -u 2>/dev/null || status=$?
  [ "$status" -eq 64 ] || fail "-u of the installed command ends with $status"
  inside man -P cat tolvanix | grep -q 'inventory and driver updates'
  files | same "$work/installed" - 'a run leaves files'
  inside dpkg --purge tolvanix >"$work/log"
  files | same "$work/before" - 'the package leaves files'
}
if [ "$(id -u)" -eq 0 ]; then
  in_a_debian
else
  echo 'Skipped, because it takes root: the Debian package in a root of its own.'
fi

unzip -q "$packages"/*.zip -d "$work"
cd "$work"/tolvanix-*
rm -rf "$packages/wineprefix"  # its devices are the last run's
wine() { "$root/cmake/wine-run.sh" "$packages/wineprefix" "$@"; }
printf '@cmd /c deploy\\install.cmd %%1 .\r\n@echo code %%ERRORLEVEL%%\r\n' >run.cmd
install() { # <package> <exit code>
  wine cmd /c run.cmd "$1" | tr -d '\r' | grep -qx "code $2" || fail "install.cmd: not $2"
}
current() { # <class key> <version>
  wine reg add "HKLM\\SYSTEM\\CurrentControlSet\\Control\\Class\\$1" /v DriverVersion \
    /d "$2" /f >/dev/null
}
wine tolvanix.exe -i | grep -q '<SVMInventory' || fail 'no inventory under Wine'
wine tolvanixkit.exe check sample-package >/dev/null || fail 'the sample package has faults'
install sample-package 21
wine reg import sdk/sample/computer.reg
cp -r sample-package restart
echo 'int main() { return 1; }' |
  x86_64-w64-mingw32-gcc-posix -x c - -o restart/tolvanixhelper64/tolvanixhelper64.exe
install restart 3010
current '{4d36e972-e325-11ce-bfc1-08002be10318}\0001' 1.1.0.12
current '{4d36e97b-e325-11ce-bfc1-08002be10318}\0000' 2.1.10.0
install sample-package 0
cmake -G Ninja -S sdk -B sdk-build --toolchain "$PWD/cmake/mingw-w64.cmake" >"$work/log" &&
  cmake --build sdk-build >>"$work/log" || { cat "$work/log"; fail 'the sdk does not build'; }
