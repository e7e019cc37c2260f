#!/bin/sh
# Runs the installed program from any folder. It looks for relative names in its own folder, so the
# names of the result and debug files are made absolute here, where the caller means them.
set -eu

option=
for argument in "$@"; do
  shift
  case $option in
    -o | -e)
      option=
      case $argument in
        '' | /*) ;;
        *) argument=$PWD/$argument ;;
      esac
      ;;
    -n | -p | -w) option= ;;
    *)
      option=$argument
      case $option in
        -u | -uhid)
          echo "tolvanix: $option works on a driver package: run the tolvanix in its folder" >&2
          exit 64
          ;;
      esac
      ;;
  esac
  set -- "$@" "$argument"
done

own=$(readlink -f "$0")
exec "${own%/*}/../lib/tolvanix/tolvanix" "$@"
