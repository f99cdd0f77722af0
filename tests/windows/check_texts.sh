#!/bin/sh
# SPDX-License-Identifier: MIT
# Opens every window in every language, and in some of them with texts twice as large, two programs at a time; fails where a text
# cannot be read whole.
# Usage: check_texts.sh PROGRAM FOLDER_OF_LANGUAGES      under tests/run_under_xvfb.sh
set -eu
export GSETTINGS_BACKEND=memory
program=$1
languages=$(ls "$2")
{
    for language in en $languages; do echo "1 $language"; done
    for language in de ja ar; do echo "2 $language"; done
} | xargs -P 2 -L 1 sh -c 'GDK_DPI_SCALE=$2 "$1" "$3"' sh "$program"
