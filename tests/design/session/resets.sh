#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Whether clicks where a row's reset arrow would be can end Qt Designer: so many sessions on a real display (Xvfb), each with
# so many rounds of "click the form, click the component, click the right end of a definition's row, undo". Prints what became of
# each session; fails where one was ended. It takes seconds a session and nothing runs it by itself; it needs the package xvfb.
# Usage: resets.sh BUILD_FOLDER FOLDER [SESSIONS [ROUNDS [DESIGNER]]]
set -euo pipefail
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
build=$(readlink -f "$1") folder=$2 sessions=${3:-50}
export NUVO_RESETS=${4:-20} NUVO_PLATFORM=xcb
designer=${5:-$(sed -n 's/^NUVO_QT_DESIGNER:[A-Z]*=//p' "$build/CMakeCache.txt")}

mkdir -p "$folder"
folder=$(readlink -f "$folder")
rm -f "$folder/display"
exec 3<>"$folder/display"
Xvfb -displayfd 3 -screen 0 1600x1200x24 >"$folder/xvfb.log" 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null' EXIT
for _ in $(seq 50); do [ -s "$folder/display" ] && break; sleep 0.1; done
DISPLAY=:$(tr -d '\n' <"$folder/display")
export DISPLAY

ended=0
for session in $(seq "$sessions"); do
    if "$here/session.sh" "$designer" "$folder/session" "$build/samples.db" "$build/lib" \
        "$build/tests/design/plugins" >"$folder/log" 2>&1; then
        echo "session $session: $(tr -d '\n ' <"$folder/session/seen.json")"
    else
        ended=$((ended + 1))
        echo "session $session: ended, $(grep -c '^round' "$folder/log" || true) rounds begun; $(head -1 "$folder/log")"
    fi
done
echo "$ended of $sessions sessions were ended."
[ "$ended" -eq 0 ]
