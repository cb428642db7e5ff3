#!/usr/bin/env bash
# Foreign projects that take the sources instead of a package, with add_subdirectory and with FetchContent: each is configured, and
# its program compiled. --link builds the library too and runs the program.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
work=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-foreign-XXXXXX")
trap 'rm -rf "$work"' EXIT

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
for way in add_subdirectory FetchContent; do
    mkdir "$work/$way"
    cp "$work/Main.cpp" "$work/$way/"
    {
        echo 'cmake_minimum_required(VERSION 3.25)'
        echo 'project(Foreign LANGUAGES CXX)'
        if [ $way = add_subdirectory ]; then
            echo "add_subdirectory(\"$root\" nuvo EXCLUDE_FROM_ALL)"
        else
            echo 'include(FetchContent)'
            echo "FetchContent_Declare(Nuvo SOURCE_DIR \"$root\")"
            echo 'FetchContent_MakeAvailable(Nuvo)'
        fi
        echo 'add_executable(foreign Main.cpp)'
        echo 'target_link_libraries(foreign PRIVATE Nuvo::Statistics)'
    } >"$work/$way/CMakeLists.txt"
    cmake -S "$work/$way" -B "$work/$way/build" -G Ninja >"$work/log" 2>&1 || { cat "$work/log" >&2 && exit 1; }
    target=CMakeFiles/foreign.dir/Main.cpp.o
    [ "${1-}" != --link ] || target=foreign
    ninja -C "$work/$way/build" "$target" >"$work/log" 2>&1 || { tail -n 40 "$work/log" >&2 && exit 1; }
    [ "${1-}" != --link ] || QT_QPA_PLATFORM=offscreen "$work/$way/build/foreign"
    echo "A foreign project takes the sources with $way."
done
