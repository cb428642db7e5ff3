#!/usr/bin/env bash
# A program that is compiled with what pkg-config says, from a prefix with blanks and umlauts. Usage: foreign.sh STAGE LIBDIR BINDIR
# VERSION COMPILER [FLAGS]
set -euo pipefail
work=$(mktemp -d "${TMPDIR:-/tmp}/nuvo prüfen.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix="$work/eine Stätte"
cp -a "$1" "$prefix"
[ "$("$prefix/$3/nuvostat" --version)" = "nuvostat $4" ]

cat >"$work/foreign.cpp" <<'CODE'
#include <platform/Version.h>
#include <cstdio>
int main()
{
    std::printf("%s %s\n", NUVO_VERSION_TEXT, nuvo::libraryVersion());
}
CODE
export PKG_CONFIG_PATH="$prefix/$2/pkgconfig"
[ "$(pkg-config --modversion nuvo)" = "$4" ]
eval "flags=($(pkg-config --cflags --libs nuvo))"
"$5" -fPIC "${@:6}" "$work/foreign.cpp" -o "$work/foreign" "${flags[@]}"
[ "$(LD_LIBRARY_PATH="$prefix/$2" "$work/foreign")" = "$4 $4" ]
