# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034
# For the scripts that time whole processes: the same made-up table for all programs, and the clock.

# rows ROWS: y and ten columns as CSV, the same at every call
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

# milliseconds COMMAND...: one run's wall time, in tenths
milliseconds() {
    local from=${EPOCHREALTIME/./}
    "$@" > /dev/null 2> messages
    echo $(((${EPOCHREALTIME/./} - from + 50) / 100))
}
median() { sort -n | awk '{ v[NR] = $1 } END { printf "%.1f ms (%.1f to %.1f)\n", v[int((NR + 1) / 2)] / 10, v[1] / 10, v[NR] / 10 }'; }
