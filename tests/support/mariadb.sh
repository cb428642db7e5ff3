#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A MariaDB server for the tests, with a user nuvo without a password. server.sh tells the rest.
# shellcheck source-path=SCRIPTDIR source=server.sh
. "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/server.sh"

server=MariaDB
account=mysql
missing="No MariaDB server is installed (Debian package mariadb-server-core): its tests are skipped."

mariadbd=$(PATH=$PATH:/usr/sbin:/usr/local/sbin:/usr/libexec command -v mariadbd || true)
# The statements that make its own tables lie below its prefix, under one of two names in one of two folders.
tables=$(find "${mariadbd%/*/*}"/share/{mysql,mariadb}/{mysql,mariadb}_system_tables.sql 2>/dev/null | head -n 1 || true)

is_installed() { [[ -n $mariadbd && -n $tables ]]; }
url_on() { echo "mysql://nuvo@127.0.0.1:$1/"; }

alive() { # pid; a child that has ended counts as gone
    [[ -n $1 && -r /proc/$1/stat && $(sed 's/.*) \(.\).*/\1/' "/proc/$1/stat" 2>/dev/null) != Z ]]
}

make_data() { # directory
    cat >"$1/users.sql" <<'SQL'
CREATE USER IF NOT EXISTS nuvo@'127.0.0.1';
GRANT ALL ON *.* TO nuvo@'127.0.0.1' WITH GRANT OPTION;
SQL
    chmod a+r "$1/users.sql"
    # What the package's own script does takes the clients of another package.
    "${as[@]}" mkdir "$1/data"
    {
        printf '%s\n' 'CREATE DATABASE mysql;' 'USE mysql;'
        cat "$tables" "${tables%system_tables.sql}performance_tables.sql"
    } | (cd / && "${as[@]}" env LC_ALL=C "$mariadbd" --no-defaults --bootstrap "--datadir=$1/data")
}

start_on() { # directory port
    (
        cd /
        exec "${as[@]}" env LC_ALL=C "$mariadbd" --no-defaults "--datadir=$1/data" "--port=$2" \
            --bind-address=127.0.0.1 "--socket=$1/socket" "--pid-file=$1/pid" "--log-error=$1/log" \
            "--init-file=$1/users.sql" --skip-name-resolve --skip-log-bin --innodb-flush-log-at-trx-commit=0 \
            --innodb-buffer-pool-size=64M --innodb-fast-shutdown=2 >/dev/null 2>&1 </dev/null
    ) &
    local child=$!
    disown
    for _ in {1..300}; do
        (exec 3<>"/dev/tcp/127.0.0.1/$2") 2>/dev/null && [[ -s $1/pid ]] && return 0
        alive "$child" || return 1
        sleep 0.1
    done
    return 1
}

end_server() { # directory
    local pid
    pid=$(cat "$1/pid" 2>/dev/null || true)
    # A number alone can be another process's by now.
    alive "$pid" && tr '\0' ' ' <"/proc/$pid/cmdline" | grep -qF -- "$1/data" || return 0
    kill -KILL "$pid" 2>/dev/null || true
    for _ in {1..100}; do
        alive "$pid" || return 0
        sleep 0.1
    done
}

serve "$@"
