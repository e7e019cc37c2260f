#!/bin/sh
# Runs one Windows program under Wine: wine-run.sh <prefix directory> program.exe [arguments]
# The prefix (Wine's registry and C: drive) is made on first use; nothing else on this computer is
# read or changed, whatever Wine settings its user has.
set -eu
WINEPREFIX=$(realpath -m "$1")
shift
HOME=$WINEPREFIX
export WINEPREFIX HOME WINEARCH=win64 WINEDEBUG=-all LC_ALL=C.UTF-8
# No Mono and Gecko (asked for at creation), no menu entries, no debugger for a crashing test.
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe,winedbg.exe=d'
unset DISPLAY WAYLAND_DISPLAY WINESERVER WINELOADER WINEDLLPATH

if [ ! -e "$WINEPREFIX/ready" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    if [ ! -e "$WINEPREFIX/ready" ]; then
      rm -rf "$WINEPREFIX"
      # The folder must exist: it is HOME too.
      mkdir "$WINEPREFIX"
      wineboot --init >"$WINEPREFIX.log" 2>&1
      # The device list is complete and the registry on disk only when the server has ended.
      wineserver --wait
      touch "$WINEPREFIX/ready"
    fi
  ) 9>"$WINEPREFIX.lock"
fi

# Wine's background processes keep standard error open for two seconds after the program has
# ended; whoever reads a pipe there would wait for them. They get a file instead.
errors=$(mktemp "$WINEPREFIX/stderr.XXXXXX")
trap 'rm -f "$errors"' EXIT
status=0
wine "$@" 2>"$errors" || status=$?
cat "$errors" >&2
exit "$status"
