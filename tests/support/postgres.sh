#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A PostgreSQL server for the tests that trusts everybody who gets there; `start STATE PASSWORD` starts one that asks for
# this password instead. server.sh tells the rest.
# shellcheck source-path=SCRIPTDIR source=server.sh
. "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/server.sh"

server=PostgreSQL
account=postgres
missing="No PostgreSQL server is installed (Debian package postgresql): the tests need its initdb and pg_ctl."

# Some systems have a folder for each version.
bin=$(find /usr/lib/postgresql/*/bin -maxdepth 0 2>/dev/null | sort -V | tail -n 1)
if [[ -z $bin ]] && command -v initdb >/dev/null; then
    bin=$(dirname "$(command -v initdb)")
fi

is_installed() { [[ -n $bin && -x $bin/initdb ]]; }
url_on() { echo "postgresql://nuvo@127.0.0.1:$1/postgres"; }
postgres() { (cd / && "${as[@]}" env LC_ALL=C "$bin/$1" "${@:2}"); }

make_data() { # directory [password]
    local authentication=(-A trust)
    if [[ -n ${2:-} ]]; then
        printf '%s\n' "$2" >"$1/password"
        chmod a+r "$1/password"
        authentication=(-A scram-sha-256 "--pwfile=$1/password")
    fi
    postgres initdb -D "$1/data" -U nuvo "${authentication[@]}" -E UTF8 --locale=C.UTF-8 --no-sync
}

start_on() { # directory port
    postgres pg_ctl -D "$1/data" -w -t 60 -l "$1/log" \
        -o "-p $2 -c listen_addresses=127.0.0.1 -c unix_socket_directories= -c fsync=off -c max_connections=200" \
        start >/dev/null 2>&1 </dev/null
}

end_server() { # directory
    postgres pg_ctl -D "$1/data" -m immediate -w stop >/dev/null 2>&1
}

serve "$@"
