#!/bin/sh
# Installs what the other scripts need: setup.sh <group>...   (Debian 12; as root, else with sudo)
set -eu

packages=
for group in "$@"; do
  case $group in
    build) packages="$packages cmake ninja-build g++ googletest libgmock-dev libxml2-utils pciutils
      python3 libcli11-dev nlohmann-json3-dev" ;;
    windows) packages="$packages cmake ninja-build g++-mingw-w64-x86-64-posix wine wine64 googletest
      libcli11-dev nlohmann-json3-dev" ;;
    lint) packages="$packages clang-format clang-tidy python3 ansible ansible-lint" ;;
    demo) packages="$packages libxml2-utils pci.ids" ;;
    coverage) packages="$packages clang llvm libclang-rt-14-dev" ;;
    fuzz) packages="$packages cmake ninja-build clang libclang-rt-14-dev libxml2-dev python3
      libcli11-dev nlohmann-json3-dev" ;;
    browser) packages="$packages python3 python3-selenium chromium chromium-driver" ;;
    bench) packages="$packages libbenchmark-dev libpugixml-dev hyperfine ripgrep time" ;;
    package) packages="$packages dpkg-dev lintian mandoc mmdebstrap
      strip-nondeterminism unzip" ;;
    deploy) packages="$packages ansible-core python3" ;;
    *) echo "setup.sh: no such group: $group" >&2; exit 2 ;;
  esac
done

missing=
for package in $packages; do
  status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=
[ "$(id -u)" -eq 0 ] || as_root='sudo -n'
install() {
  $as_root apt-get -q update &&
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 \
      install --no-install-recommends $missing
}
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "installing:$missing"
if ! install >"$log" 2>&1; then
  tail -n 5 "$log" >&2
  echo "These packages are missing and could not be installed:$missing" >&2
  exit 1
fi
