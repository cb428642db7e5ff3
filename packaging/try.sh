#!/usr/bin/env bash
# try.sh PACKAGES [SUITE [MIRROR]]: installs the packages of this folder with apt in an empty Debian and tries them there.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
packages=$(readlink -f "$1")
suite=${2:-bookworm}
mirror=${3:-$(awk '$1 == "deb" { for (i = 2; i <= NF; ++i) if ($i ~ /^https?:/) { print $i; exit } }
                   $1 == "URIs:" { print $2; exit }' /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null | head -n 1)}

fail() {
    echo "packaging/try.sh: $*" >&2
    exit 1
}
[ "$(id -u)" -eq 0 ] || fail "an empty Debian is made with debootstrap, which takes root's rights."
command -v debootstrap >/dev/null || fail "debootstrap is missing; scripts/install package installs it."

there=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-try-XXXXXX")
chmod 755 "$there"
trap 'umount "$there/proc" 2>/dev/null || true; rm -rf "$there"' EXIT
started=$SECONDS
say() { echo "$((SECONDS - started)) s: $*"; }
inside() { chroot "$there" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp "$@"; }

debootstrap --variant=minbase "$suite" "$there" "$mirror" >"$there.log" 2>&1 || { tail -n 20 "$there.log" >&2 && fail "debootstrap failed."; }
rm -f "$there.log"
mount -t proc proc "$there/proc"
# The certificates and settings with which this machine reaches its packages.
cp -a /etc/apt/apt.conf.d/. "$there/etc/apt/apt.conf.d/" 2>/dev/null || true
for file in /etc/apt/sources.list /etc/apt/sources.list.d; do
    [ ! -e "$file" ] || cp -a "$file" "$there/etc/apt/"
done
[ ! -d /etc/ssl/certs ] || { mkdir -p "$there/etc/ssl" && cp -aL /etc/ssl/certs "$there/etc/ssl/"; }
say "an empty $suite is there"

mkdir "$there/packages"
cp "$packages"/*.deb "$there/packages/"
files() { (cd "$there" && find bin etc lib opt sbin usr var/lib -xdev \( -type f -o -type l \) ! -path 'var/lib/dpkg/*' ! -path 'var/lib/apt/*' 2>/dev/null | sort); }
apt() { inside apt-get -q -y "$@" >"$there/apt.log" 2>&1 || { tail -n 20 "$there/apt.log" >&2 && fail "apt-get $* failed."; }; }

apt update
# Their dependencies first, so that what is ours shows when it is removed.
inside sh -c 'dpkg-deb -f /packages/nuvostat_*.deb Version' >/dev/null
apt install --no-install-recommends /packages/libnuvostatistics1_*.deb /packages/nuvostat_*.deb
say "the program is installed"
inside nuvostat --version
printf 'y,a\n1,1\n2.1,2\n2.9,3\n4.2,4\n' >"$there/tmp/data.csv"
inside nuvostat import /tmp/data.csv --database /tmp/data.db --table data
inside nuvostat fit --database /tmp/data.db --table data --response y --control a | tee "$there/tmp/page.txt" | head -n 12
grep -q 'R2' "$there/tmp/page.txt" || fail "nuvostat fit printed no page."
[ -e "$there/usr/share/man/man1/nuvostat.1.gz" ] || fail "there is no manual page."
say "a page is printed"

apt install --no-install-recommends g++ cmake ninja-build pkg-config designer-qt6 qt6-tools-dev libqt6opengl6-dev \
    /packages/libnuvostatistics-dev_*.deb /packages/nuvo-designer-plugin_*.deb
say "the development packages are installed"
cp -r "$root/examples" "$there/tmp/examples"
inside cmake -S /tmp/examples -B /tmp/examples/build -G Ninja >/dev/null
inside cmake --build /tmp/examples/build >/dev/null
say "foreign programs are built with find_package(Nuvo)"
# shellcheck disable=SC2016
inside sh -c 'g++ -std=c++20 -fPIC /tmp/examples/Code.cpp -o /tmp/code $(pkg-config --cflags --libs nuvo)'
say "a foreign program is built with pkg-config"
inside sh -c 'cd /tmp && ldd /tmp/code | grep -q "libNuvoStatistics.so.1 => /usr/lib"' || fail "the program does not find the library."
# Qt Designer loads its plugins and names those that failed; it runs until it is ended.
inside sh -c 'QT_DEBUG_PLUGINS=1 timeout 10 /usr/lib/qt6/bin/designer 2>&1 || true' >"$there/tmp/designer.log"
grep -q 'loaded library.*libnuvo_designer.so\|libnuvo_designer.so.*loaded library' "$there/tmp/designer.log" ||
    { grep -i nuvo "$there/tmp/designer.log" >&2 || true; fail "Qt Designer did not load the plugin."; }
say "Qt Designer loads the plugin without a variable"

inside apt-get -q -y purge libnuvostatistics1 >"$there/apt.log" 2>&1
left=$(files | grep -i nuvo || true)
[ -z "$left" ] || fail "removal leaves: $left"
say "nothing is left when they are removed"
