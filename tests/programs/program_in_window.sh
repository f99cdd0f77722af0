#!/bin/sh
# SPDX-License-Identifier: MIT
# Opens models in the program's window, and closes it in each of its ways. Needs a display and a window manager.
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
cd "$XDG_CACHE_HOME"
here=$PWD
mkdir models empty
latin1=$(printf 'r\344der')  # no UTF-8
cp "$model" models/a.3ds
cp "$model" models/b.3ds
cp "$model" 'my new car.3ds'
cp "$model" "$latin1.3ds"
printf 'nothing' >broken.3ds

# window TITLE: the window with a title that matches, of the process
window() {
    for found in $(xdotool search --all --onlyvisible --pid "$process" --name .); do
        ! xdotool getwindowname "$found" | grep -q "$1" || echo "$found"
    done | grep .
}
# start TITLE ARGUMENT...
start() {
    title=$1
    shift
    "$program" "$@" 2>"$here/errors.txt" &
    process=$!
    wait_for "the title $title of $*" window "$title"
}
press() { xdotool windowactivate --sync "$(window .)" key "$@"; }
# opens TITLE ERRORS ARGUMENT...: and Esc closes; ERRORS is a pattern for all of standard error
opens() {
    title=$1 errors=$2
    shift 2
    start "$title" "$@"
    press Escape
    wait "$process" || fail "the program failed with $*"
    # shellcheck disable=SC2254  # a pattern is wanted
    case $(cat "$here/errors.txt") in $errors) ;; *) fail "$*: standard error: $(cat "$here/errors.txt")" ;; esac
}
# wrote LINE: the settings have a line that begins so
wrote() { grep -q "^$1" "$settings" || fail "the settings have no $1"; }

printf '[Settings]\nCloseOnEsc=1\nLastCamera=-1\nLanguage=../none\n' >"$settings"
opens "^Orbivue - $model\$" '' "$model"
wrote 'LastCamera=32776'
wrote 'Language=../none'

#     title                                             errors                            arguments
opens "^Orbivue - $here/broken.3ds - File open failed\$" "Orbivue: $here/broken.3ds: ?*"  broken.3ds
opens '^Orbivue$'                                       ''                                missing.3ds
opens "^Orbivue - $here/models/a.3ds\$"                 ''                                models
opens '^Orbivue$'                "Orbivue: $here/empty: there is no model in this folder" empty
opens "^Orbivue - $here/my new car.3ds\$"               ''             "file://$here/my%20new%20car.3ds"
opens "^Orbivue - $here/r.*der.3ds\$"                    ''                                "$latin1.3ds"
wrote "File1=$here/$latin1.3ds"
cp "$settings" "$here/before.ini"
for option in -x --version -h; do
    "$program" "$option" >/dev/null 2>&1 || [ $option = -x ] || fail "$option failed"
done
cmp -s "$settings" "$here/before.ini" || fail "the settings were written without a window"

# A program that is started has the user's environment, and the folder of what it is to open.
mkdir bin exported
printf '#!/bin/sh\necho "$GDK_BACKEND,$LANGUAGE,${DESKTOP_STARTUP_ID-},$PWD,$*" >"%s/opened"\n' "$here" >bin/xdg-open
chmod +x bin/xdg-open
printf '[Settings]\nPovUseLastName=1\nPovLastName=%s/exported/-a b.pov\nLanguage=en\n' "$here" >"$settings"
export PATH="$here/bin:$PATH" LANGUAGE=xx GDK_BACKEND='x11,*' DESKTOP_STARTUP_ID=ours_TIME1
start "^Orbivue - $model\$" "$model"
press alt+e Down Return
wait_for "the export's window" window 'Status -'
wait_for "the export" test -s 'exported/-a b.pov'
wait_for "the opener" sh -c "xdotool key Return; test -s opened"
[ "$(cat opened)" = "x11,*,xx,,$here/exported,$here/exported/-a b.pov" ] || fail "the opener got $(cat opened)"
kill -TERM "$process"
wait "$process" || true
cp "$here/before.ini" "$settings"

# Where Esc is not to close, it does nothing. A path that a shell split, and a session that ends: what was opened is
# remembered.
sed -i 's/^CloseOnEsc=1/CloseOnEsc=0/' "$settings"
start "^Orbivue - $here/models/a.3ds\$" models/a.3ds
press Escape space
wait_for "the next model" window "^Orbivue - $here/models/b.3ds\$"
kill -KILL "$process"
wait "$process" || true
start "^Orbivue - $here/my new car.3ds\$" my new car.3ds extra
kill -TERM "$process"
status=0
wait "$process" || status=$?
[ "$status" = 143 ] || fail "ended with $status by a signal"
wrote "File1=$here/my new car.3ds"
