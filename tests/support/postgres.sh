#!/usr/bin/env bash
# A PostgreSQL server for the tests: on loopback, in a temporary directory, trusting everybody who gets there.
#   postgres.sh start STATE    starts one and writes its directory and its URL into the file STATE
#   postgres.sh start STATE PASSWORD    one that asks for this password instead of trusting
#   postgres.sh stop STATE     stops the server of STATE and removes its directory
#   postgres.sh kill STATE     stops it at once and keeps its directory
#   postgres.sh restart STATE  starts it again after that, under the same URL
# A server that a killed run left behind is stopped by the next start with the same STATE.
set -euo pipefail

action=$1
state=$2

bin=$(find /usr/lib/postgresql/*/bin -maxdepth 0 2>/dev/null | sort -V | tail -n 1)
if [[ -z $bin ]] && command -v initdb >/dev/null; then
    bin=$(dirname "$(command -v initdb)")
fi
if [[ -z $bin || ! -x $bin/initdb ]]; then
    echo "No PostgreSQL server is installed (Debian package postgresql): the tests need its initdb and pg_ctl." >&2
    exit 1
fi

# The server refuses to run as root.
as=()
if [[ $(id -u) == 0 ]]; then
    user=$(id -un postgres 2>/dev/null || echo nobody)
    as=(setpriv "--reuid=$user" "--regid=$(id -g "$user")" --clear-groups)
fi

server() { (cd / && "${as[@]}" env LC_ALL=C "$bin/$1" "${@:2}"); }

stop_server() {
    [[ -f $state ]] || return 0
    local directory
    directory=$(sed -n 1p "$state")
    if [[ $directory == */nuvo-postgres-* && -d $directory ]]; then
        server pg_ctl -D "$directory/data" -m immediate -w stop >/dev/null 2>&1 || true
        rm -rf "$directory"
    fi
    rm -f "$state"
}

start_on() { # directory port
    server pg_ctl -D "$1/data" -w -t 60 -l "$1/log" \
        -o "-p $2 -c listen_addresses=127.0.0.1 -c unix_socket_directories= -c fsync=off -c max_connections=200" \
        start >/dev/null 2>&1 </dev/null
}

case $action in
start)
    stop_server
    directory=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-postgres-XXXXXX")
    [[ ${#as[@]} == 0 ]] || chown "$user" "$directory"
    authentication=(-A trust)
    if [[ -n ${3:-} ]]; then
        printf '%s\n' "$3" >"$directory/password"
        chmod a+r "$directory/password"
        authentication=(-A scram-sha-256 "--pwfile=$directory/password")
    fi
    server initdb -D "$directory/data" -U nuvo "${authentication[@]}" -E UTF8 --locale=C.UTF-8 --no-sync >"$directory.initdb" 2>&1 || {
        cat "$directory.initdb" >&2
        exit 1
    }
    rm -f "$directory.initdb"
    mkdir -p "$(dirname "$state")"
    for _ in {1..20}; do
        port=$((20000 + RANDOM % 12000)) # below the ports that clients are given
        printf '%s\n%s\n' "$directory" "postgresql://nuvo@127.0.0.1:$port/postgres" >"$state"
        start_on "$directory" "$port" && exit 0
    done
    echo "The PostgreSQL server does not start:" >&2
    cat "$directory/log" >&2
    stop_server
    exit 1
    ;;
kill)
    server pg_ctl -D "$(sed -n 1p "$state")/data" -m immediate -w stop >/dev/null
    ;;
restart)
    directory=$(sed -n 1p "$state")
    port=$(sed -n 2p "$state" | sed 's/.*:\([0-9]*\)\/.*/\1/')
    start_on "$directory" "$port"
    ;;
stop)
    stop_server
    ;;
*)
    echo "usage: postgres.sh start|stop|kill|restart STATE" >&2
    exit 2
    ;;
esac
