#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Choosing a model among ten control variables, 2500 records in SQLite, side by side with R's leaps and step and with
# gretl: in process (bench_select beside bench/leaps.R and gretl's own stopwatch; gretl eliminates backwards and has no
# other search), and as whole processes (`nuvostat select` beside Rscript and gretlcli, all reading the same data).
#
#   bench/select.sh BIN [RUNS]        e.g. bench/select.sh build/release/bin 11
#
# BIN holds nuvostat and bench_select. Needs Rscript (r-base-core) with r-cran-leaps and r-cran-rsqlite, and gretlcli.
set -euo pipefail

bench=$(realpath "$(dirname "$0")")
# shellcheck source=bench/rows.sh
source "$bench/rows.sh"
bin=$(realpath "${1:?the folder with nuvostat and bench_select}")
runs=${2:-11}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

rows 2500 > data.csv
"$bin/nuvostat" import data.csv --database data.db --table data > imported

cat > omit.inp <<'INP'
set verbose off
open data.csv --quiet
list X = x1 x2 x3 x4 x5 x6 x7 x8 x9 x10
set stopwatch
loop 20 --quiet
    ols y 0 X --quiet
    omit X --auto=0.05 --quiet
endloop
printf "gretl's ols and omit --auto: mean %.2f ms\n", $stopwatch * 1000 / 20
INP

echo "In process:"
"$bin/bench_select" data.db 2> messages | sed -n '/median\|WithoutCache/p'
Rscript "$bench/leaps.R" data.db
gretlcli -b omit.inp | grep '^gretl.s'

choose() {
    local method=$1
    shift
    "$bin/nuvostat" select "$method" --database data.db --table data --response y "${controls[@]}" "$@" --format json
}
written() { choose optimal --criterion min-s2 --models 20; }
sizes() { choose optimal --criterion cp --sizes 3; }
backward() { choose backward --rule textbook --p 0.05; }
leaps() { Rscript "$bench/leaps.R" data.db process; }
cat > once.inp <<'INP'
set verbose off
open data.csv --quiet
list X = x1 x2 x3 x4 x5 x6 x7 x8 x9 x10
ols y 0 X --quiet
omit X --auto=0.05 --quiet
INP
omit() { gretlcli -b once.inp; }
for run in written sizes backward leaps omit; do "$run" > "$run.out"; done
for ((i = 0; i < runs; ++i)); do
    for run in written sizes backward leaps omit; do milliseconds "$run" >> "$run.ms"; done
done
echo "Whole processes:"
echo "nuvostat select optimal, as written:           $(median < written.ms)"
echo "nuvostat select optimal --sizes 3:             $(median < sizes.ms)"
echo "nuvostat select backward --rule textbook:      $(median < backward.ms)"
echo "Rscript with RSQLite and leaps:                $(median < leaps.ms)"
echo "gretlcli, ols and omit --auto, CSV:            $(median < omit.ms)"
