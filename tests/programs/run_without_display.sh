#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# ./run where there is no display: it draws into new pictures and leaves every other file as it was.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
unset DISPLAY WAYLAND_DISPLAY
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
fail() {
    echo "run_without_display: $1" >&2
    exit 1
}
mkdir models
cp "$root/build/release/share/orbivue/samples/knot.3ds" 'models/a knot.3ds'
printf 'nothing' >models/broken.3ds
printf 'old' >'models/a knot.3ds.orbivue.png'
ln -s "$folder/led astray" 'models/a knot.3ds.orbivue-2.png'

for arguments in 'models/a knot.3ds' 'models/a|knot.3ds'; do
    IFS='|' read -ra parts <<<"$arguments"
    "$root/run" "${parts[@]}" >>said.txt || fail "$arguments failed"
done
for number in 3 4; do
    picture="models/a knot.3ds.orbivue-$number.png"
    [ "$(head -c 4 "$picture" | tail -c 3)" = PNG ] || fail "$picture is no picture"
    grep -qF "$folder/$picture" said.txt || fail "nobody was told of $picture"
done
[ "$(cat 'models/a knot.3ds.orbivue.png')" = old ] || fail "a file of the user's was overwritten"
[ ! -e 'led astray' ] || fail "a link of the user's was followed"

# STATUS ARGUMENT: failures leave nothing behind
while read -r wanted argument; do
    status=0
    "$root/run" "$argument" >/dev/null 2>&1 || status=$?
    [ "$status" = "$wanted" ] || fail "$argument ended with $status instead of $wanted"
done <<'ROWS'
2 models/broken.3ds
2 models/missing.3ds
2 --no-such-switch
0 --version
ROWS
[ "$(ls models | wc -l)" = 6 ] || fail "left behind: $(ls models)"
