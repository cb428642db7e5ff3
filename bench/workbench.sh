#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The workbench beside others on the same machine and display (Xvfb): a dropped CSV file to figures beside R, and the time
# from the start of a process to its window beside gretl's. Packages: xvfb, xdotool, r-base-core, gretl. Usage:
# workbench.sh BUILD_FOLDER FILE.csv SEPARATOR DECIMAL RESPONSE FIELD...
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "$1")
file=$(readlink -f "$2")
separator=$3 decimal=$4
shift 4
runs=${RUNS:-9}
work=$(mktemp -d)
mkdir -m 700 "$work/runtime"
export HOME=$work XDG_CONFIG_HOME=$work XDG_DATA_HOME=$work XDG_RUNTIME_DIR=$work/runtime LC_ALL=C.UTF-8
exec 3<>"$work/display"
Xvfb -displayfd 3 -screen 0 1400x900x24 -nolisten tcp >/dev/null 2>&1 &
server=$!
trap 'kill $server 2>/dev/null; rm -rf "$work"' EXIT
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
DISPLAY=:$(tr -d '\n' <"$work/display")
export DISPLAY

echo "== a dropped file to figures"
QT_QPA_PLATFORM=xcb "$build/bin/bench_workbench" "$file" "$runs" "$@"
echo "== R: read.csv, lm with summary and influence, four plots; then the whole process"
for _ in 1 2 3; do
    before=$(date +%s%N)
    Rscript "$here/workbench.R" "$file" "$decimal" "$separator" "$@"
    echo "the whole process            $((($(date +%s%N) - before) / 1000000))"
done

# Milliseconds from the start to the first window of a name, and the processor's milliseconds until then.
start_up() {
    local what=$1 name=$2
    shift 2
    local times=() ticks=()
    for _ in $(seq "$runs"); do
        local before id=''
        before=$(date +%s%N)
        "$@" >/dev/null 2>&1 &
        local process=$!
        while [ -z "$id" ]; do id=$(xdotool search --onlyvisible --name "$name" 2>/dev/null | head -1) || true; done
        times+=($((($(date +%s%N) - before) / 1000000)))
        ticks+=($(awk '{ print ($14 + $15) * 10 }' "/proc/$process/stat"))
        kill "$process"
        wait "$process" 2>/dev/null || true
    done
    printf '%-12s window after %5d ms, processor time %5d ms (medians of %d)\n' "$what" \
        "$(printf '%s\n' "${times[@]}" | sort -n | sed -n "$((runs / 2 + 1))p")" \
        "$(printf '%s\n' "${ticks[@]}" | sort -n | sed -n "$((runs / 2 + 1))p")" "$runs"
}
echo "== from the start to the window"
start_up workbench 'Nuvo Workbench' "$build/bin/nuvo-workbench"
# To root gretl puts a question first; the window is that of somebody else.
person=()
if [ "$(id -u)" = 0 ]; then
    person=(setpriv --reuid=nobody --regid=nogroup --clear-groups env "HOME=$work/nobody")
    mkdir -m 777 "$work/nobody"
    chmod 755 "$work"
fi
if command -v gretl_x11 >/dev/null; then start_up gretl '^gretl' "${person[@]}" gretl_x11; fi
