#!/bin/sh
# SPDX-License-Identifier: MIT
# Opens a model in the program's window and closes it with Esc. Needs a display and a window manager.
# Usage: program_in_window.sh PROGRAM MODEL
set -eu
program=$1
model=$2
fail() {
    echo "$1" >&2
    exit 1
}
# wait_for WHAT COMMAND...: until the command succeeds, at most 30 seconds
wait_for() {
    what=$1
    shift
    tries=0
    until "$@" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ "$tries" -lt 300 ] || fail "waited in vain for $what"
        sleep 0.1
    done
}
settings=$XDG_CONFIG_HOME/orbivue/settings.ini
mkdir -p "$XDG_CONFIG_HOME/orbivue"
printf '[Settings]\nCloseOnEsc=1\nLastCamera=-1\nBkColorR=300\nLanguage=../none\nPovDiffuse=abc\nBounds=-5\n' >"$settings"

# start TITLE ARGUMENT...
start() {
    title=$1
    shift
    "$program" "$@" &
    process=$!
    wait_for "the title" xdotool search --all --onlyvisible --pid "$process" --name "$title"
}
run() {
    start "$2" "$1"
    window=$(xdotool search --all --onlyvisible --pid "$process" --name "$2" | tail -n 1)
    xdotool windowactivate --sync "$window" key Escape
    wait "$process" || fail "the program failed"
}
run "$model" "^Orbivue - $model\$"
grep -q '^LastCamera=32776' "$settings" || fail "the camera was not written"
grep -q '^BkColorR=44' "$settings" || fail "the colour was not written"
grep -q '^PovDiffuse=0.000' "$settings" || fail "a factor that is none was not written as 0"
grep -q '^Bounds=1' "$settings" || fail "a number that is not 0 was not written as 1"
grep -q '^Language=../none' "$settings" || fail "an unknown language was changed"

printf 'nothing' >"$XDG_CACHE_HOME/broken.3ds"
run "$XDG_CACHE_HOME/broken.3ds" "^Orbivue - $XDG_CACHE_HOME/broken.3ds - File open failed\$"
run "$XDG_CACHE_HOME/missing.3ds" '^Orbivue$'

# A path that a shell split, and a session that ends: what was opened is remembered.
cp "$model" "$XDG_CACHE_HOME/my new car.3ds"
start "^Orbivue - $XDG_CACHE_HOME/my new car.3ds\$" "$XDG_CACHE_HOME/my" new car.3ds extra
kill -TERM "$process"
status=0
wait "$process" || status=$?
[ "$status" = 143 ] || fail "ended with $status by a signal"
grep -q '^File1=.*my new car.3ds' "$settings" || fail "a signal lost the list of recent files"
