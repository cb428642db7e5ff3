#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Every record of an SQLite table of ten control variables, side by side in one run, whole processes, time and peak
# memory of each: nuvostat over the first 2500 and over all, nuvostat choosing among all subsets, numpy over chunks of
# Python's fetchmany, gretlcli from CSV, R with RSQLite and lm; and in process, a forward-only QSqlQuery over the same
# columns beside the scan (bench_scan).
#
#   bench/records.sh BIN [ROWS [RUNS]]        e.g. bench/records.sh build/release/bin 1000000 5
#
# BIN holds nuvostat and bench_scan. Needs time, python3-numpy, gretl, Rscript with r-cran-rsqlite; what is missing is
# left out.
set -euo pipefail

bench=$(realpath "$(dirname "$0")")
# shellcheck source=bench/rows.sh
source "$bench/rows.sh"
bin=$(realpath "${1:?the folder with nuvostat and bench_scan}")
count=${2:-1000000}
runs=${3:-5}
python=${PYTHON:-/usr/bin/python3}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

rows "$count" > data.csv
"$bin/nuvostat" import data.csv --database data.db --table data > imported

fit() { "$bin/nuvostat" fit --database data.db --table data --response y "${controls[@]}" --format json "$@"; }
first() { fit --records first; }
all() { fit --records all; }
optimal() {
    "$bin/nuvostat" select optimal --database data.db --table data --response y "${controls[@]}" --records all \
        --format json
}
numpy() { "$python" "$bench/records.py" data.db; }
gretl() {
    printf 'set verbose off\nopen data.csv --quiet\nols y const x1 x2 x3 x4 x5 x6 x7 x8 x9 x10 --quiet\n' > fit.inp
    gretlcli -b fit.inp
}
lm() { Rscript "$bench/records.R" data.db; }
export -f fit first all optimal numpy gretl lm
export bin bench python

programs=(first all optimal)
if "$python" -c 'import numpy' 2> missing; then programs+=(numpy); fi
if command -v gretlcli > missing; then programs+=(gretl); fi
if command -v Rscript > missing; then programs+=(lm); fi

export controls_text="${controls[*]}"
measure() {
    /usr/bin/time -f '%e %M' -o figures bash -c "read -ra controls <<< \"\$controls_text\"; $1" > out 2> messages
    cat figures
}
for ((i = 0; i < runs; ++i)); do
    for program in "${programs[@]}"; do measure "$program" >> "$program.times"; done
done
echo "$count rows of ten control variables, $runs runs in turn: seconds (median, least), peak memory in MB"
for program in "${programs[@]}"; do
    sort -n "$program.times" |
        awk -v name="$program" '{ v[NR] = $1; if ($2 > m) m = $2 }
            END { printf "%-8s %6.2f %6.2f %8.1f\n", name, v[int((NR + 1) / 2)], v[1], m / 1024 }'
done
if [[ -x $bin/bench_scan ]]; then
    echo "In process:"
    "$bin/bench_scan" data.db data y x1 x2 x3 x4 x5 x6 x7 x8 x9 x10
fi
