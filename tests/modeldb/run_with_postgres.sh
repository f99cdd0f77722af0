#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run_with_postgres.sh COMMAND...   runs a command with a PostgreSQL server of its own, which lives in a temporary folder, listens on
# a socket there alone, and is gone afterwards. ORBIVUE_TEST_POSTGRES tells the command its address up to the database's name.
# Ends with 77 where no server is installed. Root hands the server to "nobody", as it refuses to be root's.
set -euo pipefail
bin=$(find /usr/lib/postgresql -mindepth 2 -maxdepth 2 -name bin 2>/dev/null | sort -V | tail -1)
if [ ! -x "$bin/initdb" ]; then
    echo "run_with_postgres.sh: no PostgreSQL server is installed (Debian: postgresql)" >&2
    exit 77
fi
# A socket's path must be short, whatever TMPDIR is.
folder=$(mktemp -d /tmp/orbivue-pg.XXXXXX)
as=()
if [ "$(id -u)" = 0 ]; then
    as=(setpriv --reuid=65534 --regid=65534 --clear-groups env "HOME=$folder" LC_ALL=C.UTF-8)
    chown 65534:65534 "$folder"
fi
stop() {
    # Sent by its own program: a server whose folder goes away would run on for a while.
    (cd "$folder" && "${as[@]}" "$bin/pg_ctl" -D data -m immediate -w -s stop) >/dev/null 2>&1 || true
    cd / && rm -rf "$folder"
}
trap stop EXIT
trap 'exit 130' INT TERM
cd "$folder"
"${as[@]}" "$bin/initdb" -D data -U orbivue -A trust -E UTF8 --locale=C.UTF-8 --no-sync --no-instructions >init.log || { cat init.log >&2; exit 1; }
"${as[@]}" "$bin/pg_ctl" -D data -w -t 20 -s -l log start -o "-c fsync=off -c full_page_writes=off -c listen_addresses='' \
-c unix_socket_directories=$folder -c jit=off -c max_connections=50 -p 5501" || { cat log >&2; exit 1; }
cd "$OLDPWD"
export ORBIVUE_TEST_POSTGRES="postgresql://orbivue@${folder//\//%2F}:5501/"
"$@"
