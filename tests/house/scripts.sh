#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What scripts/install says and does, with the commands that it calls replaced by stand-ins that write down how they
# were called. Usage: scripts.sh SOURCE_ROOT
set -uo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root="$work/a clone"
mkdir -p "$root/scripts" "$work/bin"
cp "$1/scripts/install" "$1/scripts/packages" "$root/scripts/"
failures=0

stand_in() { # NAME BODY
    printf '#!/bin/bash\n%s\n' "$2" >"$work/bin/$1"
    chmod +x "$work/bin/$1"
}

check() { # WHAT CONDITION…
    local what=$1
    shift
    if ! "$@"; then
        echo "FAILED: $what"
        sed 's/^/    said:   /' "$work/said"
        sed 's/^/    called: /' "$work/called"
        failures=$((failures + 1))
    fi
}

install_lists() { # without a terminal
    : >"$work/called"
    PATH="$work/bin:/usr/bin:/bin" setsid -w "$root/scripts/install" "$@" >"$work/said" 2>&1 </dev/null
    status=$?
}
called() { grep -q -- "$1" "$work/called"; }
said() { grep -q -- "$1" "$work/said"; }
not() { ! "$@"; }

packages() { # AWK_STATEMENTS: what dpkg-query tells where these do not leave a package out; one holds another in itself
    stand_in dpkg-query "awk '$1 \$2 == \"libqt6opengl6-dev\" { next }
                         \$2 == \"qt6-base-dev\" { print \"installed qt6-base-dev, libqt6opengl6-dev (= 6.11.2), abi-6\"; next }
                         { print \"installed \" \$2 \", \" }' '$root/scripts/packages'"
}
packages ''
stand_in apt-get "echo \"apt-get \$*\" >>'$work/called'"
stand_in sudo "echo \"sudo \$*\" >>'$work/called'; [ \"\$1\" = -n ] && exit 1; \"\$@\""
stand_in id 'echo 1000'

install_lists build test lint measure
check 'nothing missing: nothing is said, asked for or done' test "$status" -eq 0 -a ! -s "$work/said" -a ! -s "$work/called"

# shellcheck disable=SC2016 # the dollars are awk's
packages '$2 == "cmake" { next } $2 == "g++" { print "config-files g++, c++-compiler"; next }'
install_lists build
check 'no rights and no terminal: status 1' test "$status" -eq 1
check 'no rights and no terminal: one line' test "$(wc -l <"$work/said")" -eq 1
check 'no rights and no terminal: the packages are named, removed ones too' said ' cmake g++$'
check 'no rights and no terminal: nothing is installed' not called apt-get

install_lists lint
check 'lists that are not asked for are not looked at' test "$status" -eq 0 -a ! -s "$work/called"

stand_in sudo "echo \"sudo \$*\" >>'$work/called'; [ \"\$1\" = -n ] && shift; \"\$@\""
install_lists build
check 'sudo without a password: used, without a terminal too' test "$status" -eq 0
check 'sudo without a password: says why' said 'with sudo, because they are needed and missing: cmake g++$'
check 'the lists of packages are brought up to date first' called '^sudo env DEBIAN_FRONTEND=noninteractive apt-get .* update$'
check 'what is missing is installed, and no more' called '^apt-get .* install --no-install-recommends cmake g++$'

stand_in id 'echo 0'
install_lists build
check 'root: no sudo' test "$status" -eq 0
check 'root: no sudo' not called sudo
check 'root: installs' called 'install --no-install-recommends cmake g++$'

stand_in apt-get 'echo "E: no such host"; exit 100'
install_lists build
check 'apt-get fails: status 1' test "$status" -eq 1
check 'apt-get fails: its words are shown' said 'E: no such host'
check 'apt-get fails: the last line says what' said 'apt-get could not install cmake g++; its whole output is in '

exit $((failures > 0))
