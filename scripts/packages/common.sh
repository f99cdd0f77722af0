# SPDX-License-Identifier: MIT
# What the checks of packages have in common. Wants: root, the folder of a system; run as root under tests/run_under_xvfb.sh.

step() { printf '== %s\n' "$*"; }
fail() { echo "$(basename "$0"): $*" >&2; exit 1; }
inside() { scripts/packages/in_root "$root" "$@"; }

# show_window PICTURE COMMAND...  runs a command in the system until its window shows a scene, takes a picture of that, and closes it.
show_window() {
    local picture=$1 window= tries=0 colours=0 status=0 program
    shift
    inside "$@" &
    program=$!
    while [ "$colours" -lt 2000 ]; do
        tries=$((tries + 1))
        [ "$tries" -lt 120 ] && kill -0 "$program" 2>/dev/null || fail "no window with a picture in it"
        sleep 0.5
        window=$(xdotool search --onlyvisible --name 'Orbivue' 2>/dev/null | tail -1) || continue
        import -window "$window" "$picture" 2>/dev/null || continue
        colours=$(identify -format %k "$picture")
    done
    xdotool windowfocus "$window" key alt+F4
    wait "$program" || status=$?
    [ "$status" = 0 ] || fail "the window ended with $status"
}
