#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# All subsets of ten control variables and searches by partial F in process, 2500 observations, beside R's leaps and step.
#
#   bench/subsets.sh BIN        e.g. bench/subsets.sh build/release/bin
#
# BIN holds bench_subsets. Needs Rscript (r-base-core) with r-cran-leaps.
set -euo pipefail

bench=$(realpath "$(dirname "$0")")
# shellcheck source=bench/rows.sh
source "$bench/rows.sh"
bin=$(realpath "${1:?the folder with bench_subsets}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

rows 2500 > data.csv
"$bin/bench_subsets" data.csv --benchmark_repetitions=11 --benchmark_report_aggregates_only=true 2> messages |
    grep -E 'median|stddev'
Rscript "$bench/leaps.R" data.csv
