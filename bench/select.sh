#!/usr/bin/env bash
# Choosing a model among all subsets of ten control variables, 2500 records in SQLite, side by side with R's leaps: in
# process (bench_select beside bench/leaps.R), and as whole processes (`nuvostat select optimal` beside Rscript with
# RSQLite and leaps, both reading the same file).
#
#   bench/select.sh BIN [RUNS]        e.g. bench/select.sh build/release/bin 11
#
# BIN holds nuvostat and bench_select. Needs Rscript (r-base-core) with r-cran-leaps and r-cran-rsqlite.
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

echo "In process:"
"$bin/bench_select" data.db 2> messages | sed -n '/median\|WithoutCache/p'
Rscript "$bench/leaps.R" data.db

choose() {
    "$bin/nuvostat" select optimal --database data.db --table data --response y "${controls[@]}" \
        --criterion min-s2 --models 20 --format json
}
leaps() { Rscript "$bench/leaps.R" data.db process; }
choose > chosen
leaps > found
for ((i = 0; i < runs; ++i)); do
    milliseconds choose >> ours
    milliseconds leaps >> theirs
done
echo "Whole processes:"
echo "nuvostat select optimal:          $(median < ours)"
echo "Rscript with RSQLite and leaps:   $(median < theirs)"
