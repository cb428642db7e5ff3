#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The time of adding up a million rows of ten controls by PostgreSQL servers that this starts: one alone, and a table
# spread over two, with the plans of the statements. Needs build/release/bin/bench_server, or BENCH names another one.
#   bench/server.sh [ROWS [ROUNDS]]
set -euo pipefail
cd "$(dirname "$0")/.."
bench=${BENCH:-build/release/bin/bench_server}
rows=${1:-1000000}
export ROUNDS=${2:-3}
states=$(mktemp -d)
stop() {
    for state in "$states"/*; do tests/support/postgres.sh stop "$state"; done
    rm -rf "$states"
}
trap stop EXIT
for number in 0 1 2; do tests/support/postgres.sh start "$states/$number"; done
url() { sed -n 2p "$states/$1"; }
port() { url "$1" | sed 's/.*:\([0-9]*\)\/.*/\1/'; }
sql() { psql -X -q -v ON_ERROR_STOP=1 "$(url "$1")" -c "$2"; }

# processor seconds of all servers so far, those of sessions that have ended
spent() {
    local number ticks=0
    for number in 0 1 2; do
        read -r -a stat < "/proc/$(head -n 1 "$(sed -n 1p "$states/$number")/data/postmaster.pid")/stat"
        ticks=$((ticks + stat[15] + stat[16]))
    done
    echo $((ticks * 100 / $(getconf CLK_TCK)))
}
# measure WHAT ARGUMENT...: the benchmark's rounds, and what the servers spend on each
measure() {
    local before
    echo "$1:"
    before=$(spent)
    "$bench" "${@:2}"
    sleep 0.5
    awk -v spent=$(($(spent) - before)) 'BEGIN { printf "servers: %.2f processor seconds a round\n", spent / 100 / ENVIRON["ROUNDS"] }'
}

columns="id int"
values="i"
controls=()
for j in 1 2 3 4 5 6 7 8 9 10; do
    columns+=", x$j float8"
    values+=", $((10 * j)) + 100 * random()"
    controls+=("x$j")
done
columns+=", y float8"
values+=", i % 101 + random()"

sql 0 "CREATE TABLE alone ($columns)"
sql 0 "INSERT INTO alone SELECT $values FROM generate_series(1, $rows) i"
sql 0 "CREATE EXTENSION postgres_fdw"
sql 0 "CREATE TABLE spread ($columns) PARTITION BY RANGE (id)"
for shard in 1 2; do
    from=$(((shard - 1) * rows / 2 + 1))
    to=$((shard * rows / 2))
    sql $shard "CREATE TABLE part ($columns)"
    sql $shard "INSERT INTO part SELECT $values FROM generate_series($from, $to) i"
    sql $shard "VACUUM ANALYZE part"
    sql 0 "CREATE SERVER shard$shard FOREIGN DATA WRAPPER postgres_fdw OPTIONS (host '127.0.0.1', port '$(port $shard)',
           dbname 'postgres', async_capable 'true', fetch_size '10000')"
    sql 0 "CREATE USER MAPPING FOR CURRENT_USER SERVER shard$shard OPTIONS (user 'nuvo')"
    sql 0 "CREATE FOREIGN TABLE part$shard PARTITION OF spread FOR VALUES FROM ($from) TO ($((to + 1)))
           SERVER shard$shard OPTIONS (table_name 'part')"
done
sql 0 "VACUUM ANALYZE alone"
sql 0 "ANALYZE spread"

measure "one server, $rows rows, ten controls" --server-alone "$(url 0)" alone y "${controls[@]}"
measure "two shards, each asked by itself" --server-alone "$(url 0)" spread y "${controls[@]}"
measure "two shards, the parent asked" --server-alone --parent "$(url 0)" spread y "${controls[@]}"
echo "one server, beside reading every record:"
"$bench" "$(url 0)" alone y "${controls[@]}"
for count in 1 2 5; do
    measure "one server, $count controls" --server-alone "$(url 0)" alone y "${controls[@]:0:$count}"
done
for count in 1 2 3; do
    sql 0 "UPDATE alone SET x$count = NULL WHERE id % $((count * 2 + 1)) = 0"
    sql 0 "VACUUM FULL ANALYZE alone"
    measure "one server, ten controls, nulls in $count of them: $((1 << count)) patterns" --server-alone "$(url 0)" alone \
        y "${controls[@]}"
done
