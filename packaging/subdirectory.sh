#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Foreign projects that take the sources instead of a package, with add_subdirectory and with FetchContent: each is configured, and
# its program compiled. --link builds the library too and runs the program.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
work=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-foreign-XXXXXX")
trap 'rm -rf "$work"' EXIT
version=$(sed -n 's/^project(NuvoStatistics VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

cat >"$work/Main.cpp" <<'CODE'
#include <engine/Mlrtable.h>
#include <platform/Version.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    TMLRTable table;
    std::printf("%s %d\n", nuvo::libraryVersion(), table.GetNumObs());
}
CODE
# Both build in one folder, so that the library, whose commands are the same, is compiled once.
for way in add_subdirectory FetchContent; do
    {
        echo 'cmake_minimum_required(VERSION 3.25)'
        echo 'project(Foreign LANGUAGES CXX)'
        if [ $way = add_subdirectory ]; then
            echo "add_subdirectory(\"$root\" nuvo EXCLUDE_FROM_ALL)"
        else
            echo 'include(FetchContent)'
            # shellcheck disable=SC2016
            echo "FetchContent_Declare(Nuvo SOURCE_DIR \"$root\" BINARY_DIR" '"${CMAKE_BINARY_DIR}/nuvo")'
            echo 'FetchContent_MakeAvailable(Nuvo)'
        fi
        echo 'add_executable(foreign Main.cpp)'
        echo 'target_link_libraries(foreign PRIVATE Nuvo::Statistics)'
    } >"$work/CMakeLists.txt"
    cmake -S "$work" -B "$work/build" -G Ninja >"$work/log" 2>&1 || { cat "$work/log" >&2 && exit 1; }
    rm -f "$work/build/foreign" "$work/build/CMakeFiles/foreign.dir/Main.cpp.o"
    target=CMakeFiles/foreign.dir/Main.cpp.o
    [ "${1-}" != --link ] || target=foreign
    ninja -C "$work/build" "$target" >"$work/log" 2>&1 || { tail -n 40 "$work/log" >&2 && exit 1; }
    if [ "${1-}" = --link ]; then
        said=$(QT_QPA_PLATFORM=offscreen "$work/build/foreign")
        [ "$said" = "$version 0" ] || { echo "packaging/subdirectory.sh: the program says \"$said\"." >&2 && exit 1; }
        echo "A foreign project takes the sources with $way; its program says \"$said\"."
    else
        echo "A foreign project takes the sources with $way."
    fi
done
