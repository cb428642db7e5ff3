#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# try.sh PACKAGES [SUITE [MIRROR]]: installs the packages of this folder with apt in an empty Debian and tries them there. The
# variable NUVO_EMPTY_DEBIAN names an archive that the empty Debian is kept in from one time to the next.
set -euo pipefail
shopt -s nullglob
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
packages=$(readlink -f "$1")
suite=${2:-bookworm}
mirror=${3:-$({ cat /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources} 2>/dev/null || true; } |
    awk '$1 == "deb" || $1 == "URIs:" { for (i = 2; i <= NF; ++i) if ($i ~ /^https?:/ && !u) u = $i } END { print u }')}

fail() {
    echo "packaging/try.sh: $*" >&2
    exit 1
}
[ "$(id -u)" -eq 0 ] || fail "an empty Debian is made with debootstrap, which takes root's rights."
command -v debootstrap >/dev/null || fail "debootstrap is missing; scripts/install package installs it."

there=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-try-XXXXXX")
chmod 755 "$there"
trap 'umount "$there/proc" 2>/dev/null || true; rm -rf "$there" "$there".*' EXIT
started=$SECONDS
say() { echo "$((SECONDS - started)) s: $*"; }
inside() { chroot "$there" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp/runtime "$@"; }
here() { inside sh -c "cd /tmp && $*"; }
apt() { inside apt-get -q -y "$@" >"$there.log" 2>&1 || { tail -n 20 "$there.log" >&2 && fail "apt-get $* failed."; }; }
# quietly COMMAND…: what it says is shown only when it fails
quietly() { "$@" >"$there.log" 2>&1 || { tail -n 40 "$there.log" >&2 && fail "$* failed."; }; }

if [ -s "${NUVO_EMPTY_DEBIAN-}" ]; then
    tar -xpf "$NUVO_EMPTY_DEBIAN" -C "$there" --numeric-owner
else
    quietly debootstrap --variant=minbase "$suite" "$there" "$mirror"
    [ -z "${NUVO_EMPTY_DEBIAN-}" ] || tar -cpf "$NUVO_EMPTY_DEBIAN" -C "$there" --numeric-owner .
fi
mount -t proc proc "$there/proc"
# Settings and certificates with which this machine reaches its packages.
{ grep -lsE '^ *Acquire::(http|https|Check|Proxy)' /etc/apt/apt.conf /etc/apt/apt.conf.d/* || true; } |
    xargs -r -I '{}' cp '{}' "$there/etc/apt/apt.conf.d/"
[ ! -d /etc/ssl/certs ] || { mkdir -p "$there/etc/ssl" && cp -aL /etc/ssl/certs "$there/etc/ssl/"; }
mkdir -m 700 "$there/tmp/runtime"
say "an empty $suite is there"

mkdir "$there/packages"
cp "$packages"/*.deb "$there/packages/"
ours=$(for file in "$there"/packages/*.deb; do dpkg-deb -f "$file" Package; done)
# What is there but what packages and programs keep for themselves.
files() { (cd "$there" && find . -xdev \( -path ./proc -o -path ./tmp -o -path ./root -o -path ./packages -o -path ./var/cache \
    -o -path ./var/log -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./etc/ld.so.cache \) -prune -o -print | sort); }

# Where the packages are that begin like this, seen from inside.
debs() { (cd "$there" && printf '/%s ' packages/"$1"*.deb); }

started=$SECONDS
apt update
# shellcheck disable=SC2046 # names of files, as below
apt install --no-install-recommends $(debs libnuvostatistics1_) $(debs nuvostat_)
say "the program is installed, counted from the empty machine"
here nuvostat samples demo
here nuvostat fit --database demo/samples.db --table Longley --response TOTEMP --control GNP --control UNEMP \
    >"$there/tmp/page.txt"
grep -q 'R² = 0\.98' "$there/tmp/page.txt" || { cat "$there/tmp/page.txt" && fail "nuvostat fit printed no page."; }
say "a page is printed: $(head -n 1 "$there/tmp/page.txt")"
[ -s "$there/usr/share/man/man1/nuvostat.1.gz" ] || fail "there is no manual page."

# What the others need comes first, and what is there then is written down, so that what they leave shows.
inside apt-get -q -y purge libnuvostatistics1 >"$there.log" 2>&1
# shellcheck disable=SC2046
inside apt-get -s install --no-install-recommends $(debs '') |
    sed -n 's/^Inst \([^ ]*\) .*/\1/p' | grep -vxF "$ours" >"$there/tmp/needed" || true
# shellcheck disable=SC2046 # names of packages
apt install --no-install-recommends g++ cmake ninja-build pkg-config designer-qt6 qt6-tools-dev libqt6opengl6-dev \
    $(cat "$there/tmp/needed")
files >"$there.before"
# shellcheck disable=SC2046
apt install --no-install-recommends $(debs '')
say "all packages are installed, with a compiler and Qt's tools"

cp -r "$root/examples" "$root/packaging/palette" "$there/tmp/"
quietly inside cmake -S /tmp/examples -B /tmp/examples/build -G Ninja
quietly inside cmake --build /tmp/examples/build
here 'cd demo && ../examples/build/example_code' | tee "$there/tmp/said"
grep -q '^116 of 153 days' "$there/tmp/said" || fail "the program that was built with find_package(Nuvo) does not fit."
say "a foreign program is built with find_package(Nuvo), and runs"
# shellcheck disable=SC2016
quietly here 'g++ examples/Code.cpp -fPIC -o code $(pkg-config --cflags --libs nuvo)'
here 'cd demo && ../code' | cmp - "$there/tmp/said" || fail "the program that was built with pkg-config says something else."
say "a foreign program is built with pkg-config, and runs"

# Qt Designer asks a plugin of ours in the user's own folder what it shows. No variable says where plugins are.
quietly inside cmake -S /tmp/palette -B /tmp/palette/build -G Ninja
quietly inside cmake --build /tmp/palette/build
mkdir -p "$there/root/.designer/plugins"
cp "$there/tmp/palette/build/libpalette.so" "$there/root/.designer/plugins/"
here 'timeout 60 /usr/lib/qt6/bin/designer' >"$there/tmp/palette.txt" 2>"$there/tmp/designer.log" ||
    { cat "$there/tmp/designer.log" && fail "Qt Designer did not end by itself."; }
for component in TMLRTable TMLRQuery TOptimizeMLR TStepWiseMLR TBackElimMLR TFwdSelectMLR; do
    grep -qxF "Nuvo Statistics: $component" "$there/tmp/palette.txt" ||
        { cat "$there/tmp/palette.txt" "$there/tmp/designer.log" && fail "Qt Designer does not show $component."; }
done
say "Qt Designer shows the palette: $(grep -c '^Nuvo Statistics: ' "$there/tmp/palette.txt") components"

here nuvo-workbench --version
status=0
here 'timeout 5 nuvo-workbench demo/Cement.csv' >"$there.log" 2>&1 || status=$?
[ $status -eq 124 ] || { cat "$there.log" && fail "the workbench ended with status $status instead of waiting."; }
[ -n "$(find "$there/root/.local/share/Nuvo" -type f)" ] || fail "the workbench keeps no sitting."
say "the workbench opens a CSV file and waits"

# shellcheck disable=SC2086
quietly inside apt-get -q -y purge $ours
files >"$there.after"
diff "$there.before" "$there.after" >"$there.log" || { cat "$there.log" && fail "removal leaves or takes something."; }
rm -f "$there.before" "$there.after"
say "nothing is left when they are removed"

# The sources, as a part of another project.
mkdir "$there/sources"
(cd "$root" && git ls-files -z | tar -c --null -T -) | tar -x -C "$there/sources"
# shellcheck disable=SC2046
apt install --no-install-recommends $(awk '$1 == "build" { print $2 }' "$root/scripts/packages")
inside /sources/packaging/subdirectory.sh --link
say "foreign programs are built from the sources, and run"
