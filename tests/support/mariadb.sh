#!/usr/bin/env bash
# A MariaDB server for the tests: on loopback, in a temporary directory, with a user nuvo without a password.
#   mariadb.sh start STATE    starts one and writes its directory and its URL into the file STATE; status 77, and no
#                             file, where none is installed
#   mariadb.sh stop STATE     stops the server of STATE and removes its directory
#   mariadb.sh kill STATE     stops it at once and keeps its directory
#   mariadb.sh restart STATE  starts it again after that, under the same URL
# A server that a killed run left behind is stopped by the next start with the same STATE.
set -euo pipefail

action=$1
state=$2

system=/usr/share/mysql
if [[ ! -x /usr/sbin/mariadbd || ! -f $system/mysql_system_tables.sql ]]; then
    [[ $action == stop ]] && exit 0
    rm -f "$state"
    echo "No MariaDB server is installed (Debian package mariadb-server-core): its tests are skipped." >&2
    exit 77
fi

# The server refuses to run as root.
as=()
if [[ $(id -u) == 0 ]]; then
    user=$(id -un mysql 2>/dev/null || echo nobody)
    as=(setpriv "--reuid=$user" "--regid=$(id -g "$user")" --clear-groups)
fi

alive() { # pid; a child that has ended counts as gone
    [[ -n $1 && -r /proc/$1/stat && $(sed 's/.*) \(.\).*/\1/' "/proc/$1/stat" 2>/dev/null) != Z ]]
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

stop_server() {
    [[ -f $state ]] || return 0
    local directory
    directory=$(sed -n 1p "$state")
    if [[ $directory == */nuvo-mariadb-* && -d $directory ]]; then
        end_server "$directory"
        rm -rf "$directory"
    fi
    rm -f "$state"
}

start_on() { # directory port
    rm -f "$1/ready"
    (
        cd /
        exec "${as[@]}" env LC_ALL=C /usr/sbin/mariadbd --no-defaults "--datadir=$1/data" "--port=$2" \
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

case $action in
start)
    stop_server
    directory=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-mariadb-XXXXXX")
    cat >"$directory/users.sql" <<'SQL'
CREATE USER IF NOT EXISTS nuvo@'127.0.0.1';
GRANT ALL ON *.* TO nuvo@'127.0.0.1' WITH GRANT OPTION;
SQL
    [[ ${#as[@]} == 0 ]] || chown -R "$user" "$directory"
    # What the package's own script does takes the clients of another package.
    "${as[@]}" mkdir "$directory/data"
    {
        printf '%s\n' 'CREATE DATABASE mysql;' 'USE mysql;'
        cat "$system/mysql_system_tables.sql" "$system/mysql_performance_tables.sql"
    } | (cd / && "${as[@]}" env LC_ALL=C /usr/sbin/mariadbd --no-defaults --bootstrap "--datadir=$directory/data" \
        >"$directory/bootstrap" 2>&1) || {
        tail -n 20 "$directory/bootstrap" >&2
        exit 1
    }
    mkdir -p "$(dirname "$state")"
    for _ in {1..20}; do
        port=$((20000 + RANDOM % 12000)) # below the ports that clients are given
        printf '%s\n%s\n' "$directory" "mysql://nuvo@127.0.0.1:$port/" >"$state"
        start_on "$directory" "$port" && exit 0
        end_server "$directory"
    done
    echo "The MariaDB server does not start:" >&2
    tail -n 20 "$directory"/log* >&2
    stop_server
    exit 1
    ;;
kill)
    end_server "$(sed -n 1p "$state")"
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
    echo "usage: mariadb.sh start|stop|kill|restart STATE" >&2
    exit 2
    ;;
esac
