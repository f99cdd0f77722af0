#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command on an X server and with a window manager of its own, and ends both afterwards.
# Usage: run_under_xvfb.sh COMMAND [ARGUMENT...]      XVFB_SCREEN: size and depth (1280x1024x24)
set -eu
command -v Xvfb >/dev/null && command -v openbox >/dev/null && command -v xdotool >/dev/null || {
    echo "run_under_xvfb.sh needs xvfb, openbox and xdotool" >&2
    exit 1
}
work=$(mktemp -d)
server='' manager=''
finish() {
    for process in $manager $server; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT
trap 'exit 130' INT TERM HUP

# The server picks a free display itself and writes its number to descriptor 3 once it takes connections.
mkfifo "$work/display"
# Without resets: between the first programs that come and go it would turn others away.
Xvfb -noreset -displayfd 3 -screen 0 "${XVFB_SCREEN:-1280x1024x24}" -nolisten tcp 3>"$work/display" >"$work/server.log" 2>&1 &
server=$!
number=''
read -r number <"$work/display" || true
[ -n "$number" ] || {
    echo "Xvfb did not start:" >&2
    cat "$work/server.log" >&2
    exit 1
}
export DISPLAY=":$number"
# A home of its own: no settings of the user's are read or changed.
export XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache" XDG_DATA_HOME="$work/data"
mkdir "$work/config" "$work/cache" "$work/data"
export GDK_BACKEND=x11 GDK_SCALE="${GDK_SCALE:-1}" NO_AT_BRIDGE=1
unset WAYLAND_DISPLAY || true

openbox --sm-disable >"$work/manager.log" 2>&1 &
manager=$!
tries=0
until xdotool get_num_desktops >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] && kill -0 "$manager" 2>/dev/null || {
        echo "the window manager did not start:" >&2
        cat "$work/manager.log" >&2
        exit 1
    }
    sleep 0.1
done

status=0
"$@" || status=$?
exit "$status"
