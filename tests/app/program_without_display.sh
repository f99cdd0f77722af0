#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs the program where there is no display. Usage: program_without_display.sh PROGRAM
set -eu
program=$1
unset DISPLAY WAYLAND_DISPLAY
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" XDG_DATA_HOME="$home/data"

fail() {
    echo "$1" >&2
    exit 1
}
if text=$("$program" some.3ds 2>&1); then fail "success without a display"; fi
[ "$(printf '%s\n' "$text" | wc -l)" = 1 ] || fail "more than one line: $text"
case $text in *orbivue-render*) ;; *) fail "no way out named: $text" ;; esac

text=$("$program" --help 2>/dev/null) || true
case $text in *"Shows this help"*) ;; *) fail "no help: $text" ;; esac
[ ! -e "$home/config/orbivue/settings.ini" ] || fail "settings were written"
