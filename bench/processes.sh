#!/usr/bin/env bash
# Whole processes, side by side: `nuvostat fit` beside `gretlcli` with `ols --vcv` on the same 2500 x 10 data, and the
# peak memory of a fit on a table of a million rows beside one of 3000.
#
#   bench/processes.sh PROGRAM [RUNS]        e.g. bench/processes.sh build/release/bin/nuvostat 21
#
# Needs gretlcli (package gretl) and GNU time (package time).
set -euo pipefail

program=$(realpath "${1:?the nuvostat program}")
runs=${2:-21}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# rows ROWS: y and ten columns, the same at every call
rows() {
    awk -v n="$1" 'BEGIN {
        srand(20240607); printf "y"; for (j = 1; j <= 10; ++j) printf ",x%d", j; print ""
        for (i = 0; i < n; ++i) {
            y = 3 + rand(); line = ""
            for (j = 1; j <= 10; ++j) { x = 10 * j + 100 * rand(); y += (j % 3 - 1) * x; line = line sprintf(",%.12g", x) }
            printf "%.12g%s\n", y, line
        } }'
}

controls=()
for j in 1 2 3 4 5 6 7 8 9 10; do controls+=(--control "x$j"); done
fit() { "$program" fit --database data.db --table "$1" --response y "${controls[@]}" --matrices; }

# milliseconds COMMAND...: one run's wall time
milliseconds() {
    local from=${EPOCHREALTIME/./}
    "$@" > /dev/null 2> messages
    echo $(((${EPOCHREALTIME/./} - from + 50) / 100))
}
median() { sort -n | awk '{ v[NR] = $1 } END { printf "%.1f ms (%.1f to %.1f)\n", v[int((NR + 1) / 2)] / 10, v[1] / 10, v[NR] / 10 }'; }

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
