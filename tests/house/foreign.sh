#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Programs that are compiled with what pkg-config says and with what CMake finds, from a prefix with blanks and umlauts. Usage:
# foreign.sh STAGE LIBDIR BINDIR VERSION COMPILER [FLAGS]
set -euo pipefail
work=$(mktemp -d "${TMPDIR:-/tmp}/nuvo prüfen.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix="$work/eine Stätte"
cp -a "$1" "$prefix"
for program in nuvostat nuvo-workbench; do
    [ "$("$prefix/$3/$program" --version)" = "$program $4" ]
done

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

cat >"$work/CMakeLists.txt" <<'CODE'
cmake_minimum_required(VERSION 3.25)
project(Foreign LANGUAGES CXX)
find_package(Nuvo REQUIRED)
add_executable(foreign foreign.cpp)
target_link_libraries(foreign PRIVATE Nuvo::Statistics)
CODE
{
    cmake -S "$work" -B "$work/ein Bau" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$5" -DCMAKE_CXX_FLAGS="${*:6}"
    cmake --build "$work/ein Bau"
} >"$work/log" 2>&1 || { cat "$work/log" && exit 1; }
[ "$("$work/ein Bau/foreign")" = "$4 $4" ]
