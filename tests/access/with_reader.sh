#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command in a session with the bus that screen readers use, on a display of its own.
# Usage: with_reader.sh COMMAND [ARGUMENT...]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
command -v dbus-run-session >/dev/null && /usr/bin/python3 -c 'import pyatspi' 2>/dev/null || {
    echo "with_reader.sh needs dbus, at-spi2-core and python3-pyatspi" >&2
    exit 1
}
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
"$here/../run_under_xvfb.sh" dbus-run-session -- env -u NO_AT_BRIDGE "$@"
