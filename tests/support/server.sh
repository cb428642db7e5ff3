# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2154
# What the scripts of the database servers of the tests have in common; they say what is particular to theirs and then
# call `serve "$@"`:
#   start STATE [ARGUMENT]  starts one on loopback, in a temporary directory, and writes its directory and its URL into
#                           the file STATE
#   stop STATE              stops the server of STATE and removes its directory
#   kill STATE              stops it at once and keeps its directory
#   restart STATE           starts it again after that, under the same URL
#   installed               whether there is such a server; status 77 where there is none
# A server that a killed run left behind is stopped by the next start with the same STATE.
#
# The particular: `server` (its name), `account` (the system's for it), `missing` (the sentence where none is installed),
# and the functions is_installed; make_data DIRECTORY [ARGUMENT]; start_on DIRECTORY PORT, which returns when it answers;
# end_server DIRECTORY; url_on PORT.
set -euo pipefail

kind=${0##*/}
kind=${kind%.sh}

# The servers refuse to run as root.
as=()
become_account() {
    if [[ $(id -u) == 0 ]]; then
        user=$(id -un "$account" 2>/dev/null || echo nobody)
        as=(setpriv "--reuid=$user" "--regid=$(id -g "$user")" --clear-groups)
    fi
}

stop_server() { # state
    [[ -f $1 ]] || return 0
    local directory
    directory=$(sed -n 1p "$1")
    if [[ $directory == */nuvo-"$kind"-* && -d $directory ]]; then
        end_server "$directory" || true
        rm -rf "$directory"
    fi
    rm -f "$1"
}

start_server() { # state [argument]
    stop_server "$1"
    local directory port
    directory=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-$kind-XXXXXX")
    [[ ${#as[@]} == 0 ]] || chown "$user" "$directory"
    make_data "$directory" "${@:2}" >"$directory.making" 2>&1 || {
        tail -n 20 "$directory.making" >&2
        exit 1
    }
    rm -f "$directory.making"
    mkdir -p "$(dirname "$1")"
    for _ in {1..20}; do
        port=$((20000 + RANDOM % 12000)) # below the ports that clients are given
        printf '%s\n%s\n' "$directory" "$(url_on "$port")" >"$1"
        start_on "$directory" "$port" && return 0
        end_server "$directory" || true
    done
    echo "The $server server does not start:" >&2
    tail -n 20 "$directory"/log* >&2
    stop_server "$1"
    exit 1
}

serve() { # action state [argument]
    if ! is_installed; then
        [[ $1 != stop ]] || exit 0
        rm -f "${2:-}"
        echo "$missing" >&2
        exit 77
    fi
    become_account
    case $1 in
    installed) ;;
    start) start_server "${@:2}" ;;
    stop) stop_server "$2" ;;
    kill) end_server "$(sed -n 1p "$2")" ;;
    restart) start_on "$(sed -n 1p "$2")" "$(sed -n '2s/.*:\([0-9]*\)\/.*/\1/p' "$2")" ;;
    *)
        echo "usage: ${0##*/} start|stop|kill|restart STATE, or installed" >&2
        exit 2
        ;;
    esac
}
