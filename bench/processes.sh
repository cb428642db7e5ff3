#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Whole processes, side by side: `nuvostat fit` beside `gretlcli` with `ols --vcv` on the same 2500 x 10 data, and the
# peak memory of a fit on a table of a million rows beside one of 3000.
#
#   bench/processes.sh PROGRAM [RUNS]        e.g. bench/processes.sh build/release/bin/nuvostat 21
#
# Needs gretlcli (package gretl) and GNU time (package time).
set -euo pipefail

# shellcheck source=bench/rows.sh
source "$(dirname "$0")/rows.sh"
program=$(realpath "${1:?the nuvostat program}")
runs=${2:-21}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

fit() { "$program" fit --database data.db --table "$1" --response y "${controls[@]}" --matrices; }

rows 2500 > data.csv
"$program" import data.csv --database data.db --table small > /dev/null
cat > ols.inp <<'INP'
set verbose off
open data.csv --quiet
ols y 0 x1 x2 x3 x4 x5 x6 x7 x8 x9 x10 --vcv
INP
gretl() { gretlcli -b ols.inp; }

fit small > /dev/null && gretl > gretl.out
grep -q x10 gretl.out
for ((i = 0; i < runs; ++i)); do
    milliseconds fit small >> ours
    milliseconds gretl >> theirs
done
echo "nuvostat fit, 2500 x 10, SQLite:  $(median < ours)"
echo "gretlcli ols --vcv, same as CSV:  $(median < theirs)"

peak() { command time -f %M -o kilobytes "$program" fit --database data.db --table "$1" --response y "${controls[@]}" > /dev/null && cat kilobytes; }
for n in 3000 1000000; do
    rows "$n" > rows.csv
    "$program" import rows.csv --database data.db --table "rows$n" > /dev/null
    rm rows.csv
    echo "peak memory of a fit on $n rows: $(peak "rows$n") KiB"
done
