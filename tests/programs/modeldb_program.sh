#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# modeldb_program.sh PROGRAM SAMPLES   uses a store by the program alone, as a person would: what goes in must come out again.
set -uo pipefail
program=$1 samples=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0

# expect CODE WORDS COMMAND...   the exit code, and a regular expression that the output (both kinds) must match.
expect() {
    local code=$1 words=$2 output status=0
    shift 2
    output=$("$@" 2>&1) || status=$?
    if [ "$status" != "$code" ] || ! grep -qE -- "$words" <<<"$output"; then
        echo "FAILED: ${*:1}: ended with $status instead of $code, or says not '$words':" >&2
        head -5 <<<"$output" >&2
        failures=$((failures + 1))
    fi
}
db() { "$program" "$@" --store s.sqlite; }

mkdir -p models/deep/.hidden
cp -r "$samples"/. models/
cp "$samples/knot.3ds" "models/deep/Über knot.3DS"
echo "no model" >models/deep/bad.3ds
cp models/deep/bad.3ds models/deep/.hidden/
count=$(find "$samples" -maxdepth 1 -name '*.3ds' | wc -l)

expect 2 "there is no model store" db list
expect 3 "bad.3ds: .*$" db import models --group "My samples"
expect 3 "^0 added, $((count + 1)) there already, 1 left out" db import models --group "My samples"
expect 0 "^ *$count  My samples$" db list
expect 0 '"name":"orrery"' db list --group "My samples" --json
key=$(db list --search ORRER | cut -d ' ' -f 1)
expect 0 "texture: [0-9]+ bytes, [0-9a-f]{64} " db list "$key"
expect 0 ", 0 faults$" db check --full

# The exported orrery is the file that was imported, and draws the same textures: it imports as the same model.
expect 0 "^1 written" db export "$key" --into out
cmp "$samples/orrery.3ds" "out/My samples/orrery/orrery.3ds" || failures=$((failures + 1))
"$program" import out --group Again --store again.sqlite >/dev/null
if [ "$("$program" list "$key" --store again.sqlite | tail -n +2)" != "$(db list "$key" | tail -n +2)" ]; then
    echo "FAILED: an exported model is not what it was" >&2
    failures=$((failures + 1))
fi

expect 0 "^orbivue_1_[0-9a-f]{64}$" db token create anna --rights read,upload
expect 3 "a token has this name already" db token create anna
expect 0 "^anna  read,upload$" db token list
expect 0 "" db backup b.sqlite
expect 4 "b.sqlite: " db backup b.sqlite
expect 0 "" "$program" restore b.sqlite --store r.sqlite
expect 0 "^anna" "$program" token list --store r.sqlite
expect 2 "" "$program" restore b.sqlite --store r.sqlite
expect 0 "" "$program" restore b.sqlite --store of_others.sqlite --forget-tokens
expect 0 "^$" "$program" token list --store of_others.sqlite
expect 0 "^orbivue_" "$program" token create berta --store of_others.sqlite
expect 0 "^1 removed" db remove "$key"
expect 3 "$key: there is no such model" db remove "$key"
expect 0 "^$((count - 1)) removed" db remove --group "My samples"
expect 0 "^0 groups, 0 models, 0 files of 0 bytes, 0 faults" db check --full
expect 1 "no key" db list xyz
expect 2 "the file is no model store" "$program" check --store models/knot.3ds
chmod 444 r.sqlite
[ "$(id -u)" = 0 ] || expect 2 "" "$program" import models --group g --store r.sqlite
expect 4 "" bash -c "'$program' --help >/dev/full"
exit $((failures > 0))
