#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs the program where there is no display. Usage: program_without_display.sh PROGRAM SAMPLES
set -eu
program=$1
model=$2/knot.3ds  # names no pictures, so that all its conversions are the same text
materials=$2/materials.3ds
unset DISPLAY WAYLAND_DISPLAY
export LC_ALL=C
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" XDG_DATA_HOME="$home/data"
cd "$home"
latin1=$(printf 'r\344der')  # no UTF-8
mkdir 'a b' config config/orbivue
cp "$model" 'a b/my model.3ds'
cp "$model" räder.3ds
cp "$model" "$latin1.3ds"
cp "$model" ./-x.3ds
printf 'nothing' >broken.3ds

fail() {
    echo "$1" >&2
    exit 1
}
# expect STATUS OUTPUT ERRORS ARGUMENT...: runs the program; the two texts are patterns for the whole streams
expect() {
    wanted=$1 output=$2 errors=$3
    shift 3
    status=0
    "$program" "$@" >out.txt 2>err.txt </dev/null || status=$?
    [ "$status" = "$wanted" ] || fail "$* ended with $status instead of $wanted"
    # shellcheck disable=SC2254  # a pattern is wanted
    case $(cat out.txt) in $output) ;; *) fail "$*: standard output: $(cat out.txt)" ;; esac
    case $(cat err.txt) in $errors) ;; *) fail "$*: standard error: $(cat err.txt)" ;; esac
}

usage='*Usage:*Shows this help*'
no_display='Orbivue: there is no display to open a window on; orbivue-render draws models without one.'
#      status output  errors         arguments
expect 0 "$usage"     ''             --help
expect 0 "$usage"     ''             -ch
expect 0 'Orbivue 1.9.5' ''          --version
expect 2 ''           "*'x'$usage"   -x
expect 2 ''           "*'no'$usage"  --no
expect 2 ''           "$usage"       -c
expect 2 ''           "$usage"       -c a b c
expect 3 ''           "$no_display"
expect 3 ''           "$no_display"  some.3ds
expect 3 ''           "$no_display"  --display :77 some.3ds
expect 3 ''           "$no_display"  -- -h
expect 1 ''           ''             -c broken.3ds
expect 1 ''           ''             -c missing.3ds
expect 1 ''           ''             -c räder.3ds no/such/folder.pov
[ ! -e broken.pov ] || fail "a failed conversion left a file"

# converts OUTPUT ARGUMENT...
converts() {
    written=$1
    shift
    expect 0 '' '' -c "$@"
    [ -e first.pov ] || cp "./$written" first.pov
    cmp -s "./$written" first.pov || fail "$* did not write $written as it should"
}
converts 'a b/my model.pov' 'a b/my model.3ds'
converts other.pov          'a b/my model.3ds' other.pov
converts "$latin1.pov"      "$latin1.3ds"
converts -x.pov             -- -x.3ds
converts 'a b/address.pov'  "file://$home/a%20b/my%20model.3ds" "file:$home/a%20b/address.pov"
LC_ALL=C.UTF-8
converts "2$latin1.pov"     "$latin1.3ds" "2$latin1.pov"
cmp -s "$model" 'a b/my model.3ds' || fail "the input was changed"
[ ! -e config/orbivue/settings.ini ] || fail "settings were written"

# What a conversion takes from the settings, and what it does not.
printf '%s\n' '[Settings]' PovRadiosity=1 PovDiffuse=0.250 PovSelfDiff=0.875 PovOutputTex=0 PovPreviewBack=1 \
    PovUseLastName=1 PovLastName=wrong.pov BkColorR=255 >config/orbivue/settings.ini
cp config/orbivue/settings.ini before.ini
expect 0 '' '' -c "$materials" lit.pov
for text in 'radiosity *{' 'diffuse \.25 ' 'diffuse \.875 ' 'image_map' '^background{rgb<0,0,0>}'; do
    grep -q "$text" lit.pov || fail "with these settings a conversion has no '$text'"
done
! grep -q 'radiosity' first.pov || fail "radiosity without settings"
cmp -s config/orbivue/settings.ini before.ini || fail "a conversion changed the settings"
[ ! -e wrong.pov ] || fail "a conversion wrote to the name of the last export"
