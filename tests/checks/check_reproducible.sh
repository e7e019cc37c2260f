#!/bin/sh
# A second build, from a copy of the sources in another folder, gives the same packages:
# check_reproducible.sh <folder of the packages> [windows] [release]   (both)
set -eu
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
cd "$(dirname "$0")/../.."
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH CCACHE_DISABLE=1
git ls-files -z | xargs -0 cp --parents -t "$copy"
umask 077  # whose build it is does not show either
packages=$1
shift
"$copy/scripts/package.sh" "$@"
for package in "$copy"/build/package/tolvanix*; do cmp "$packages/${package##*/}" "$package"; done
