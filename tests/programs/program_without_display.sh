#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs the program where there is no display. Usage: program_without_display.sh PROGRAM MODEL
set -eu
program=$1
model=$2
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

# ends_with STATUS ARGUMENT...
ends_with() {
    wanted=$1
    shift
    status=0
    "$program" "$@" >/dev/null 2>&1 || status=$?
    [ "$status" = "$wanted" ] || fail "$* ended with $status instead of $wanted"
}
cp "$model" "$home/my model.3ds"
ends_with 0 --help
ends_with 0 -c "$home/my model.3ds"
ends_with 0 -c "$home/my model.3ds" "$home/other.pov"
cmp -s "$home/my model.pov" "$home/other.pov" || fail "the two conversions differ"
cmp -s "$model" "$home/my model.3ds" || fail "the input was changed"
cp "$model" "$home/räder.3ds"
for locale in C C.UTF-8; do
    export LC_ALL=$locale
    ends_with 0 -c "$home/räder.3ds" "$home/größe $locale.pov"
    [ -s "$home/größe $locale.pov" ] || fail "a name was changed in the locale $locale"
done
unset LC_ALL
printf 'nothing' >"$home/broken.3ds"
ends_with 1 -c "$home/broken.3ds"
ends_with 1 -c "$home/missing.3ds"
ends_with 1 -c "$home/my model.3ds" "$home/no/such/folder.pov"
ends_with 2 -c
text=$("$program" -c a b c 2>/dev/null) || true
[ -z "$text" ] || fail "a complaint on the standard output: $text"
case $("$program" -c 2>&1 >/dev/null) in *"Shows this help"*) ;; *) fail "no usage for -c alone" ;; esac
ends_with 2 -c a b c
ends_with 3 "$home/my model.3ds"
[ ! -e "$home/broken.pov" ] || fail "a failed conversion left a file"
[ ! -e "$home/config/orbivue/settings.ini" ] || fail "settings were written"
