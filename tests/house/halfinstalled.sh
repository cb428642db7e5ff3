#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What is said where something is missing of an installation, or something else is there than it was built with. Usage:
# halfinstalled.sh STAGE LIBDIR BINDIR PLUGIN_FOLDER BUILD_FOLDER
set -u
stage=$1 lib=$2 bin=$3 plugins=$4 build=$5
work=$(mktemp -d "${TMPDIR:-/tmp}/nuvo-half-XXXXXX")
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8
failures=0

# told WHAT PATTERN COMMAND…: the command fails and says this.
told() {
    local what=$1 pattern=$2
    shift 2
    if "$@" >"$work/said" 2>&1; then
        echo "FAILED: $what: nothing is wrong with it"
        failures=$((failures + 1))
    elif ! tr -s '\n ' ' ' <"$work/said" | grep -qE -- "$pattern"; then
        echo "FAILED: $what; said:"
        sed 's/^/    /' "$work/said"
        failures=$((failures + 1))
    fi
}

# A project that looks for the package, and Qts of which no more is there than their version.
mkdir "$work/project"
cat >"$work/project/CMakeLists.txt" <<'CODE'
cmake_minimum_required(VERSION 3.25)
project(Foreign LANGUAGES NONE)
find_package(Nuvo REQUIRED)
CODE
qt() { # VERSION [CONFIG]
    mkdir -p "$work/qt $1/lib/cmake/Qt6"
    {
        echo "set(PACKAGE_VERSION $1)"
        echo 'set(PACKAGE_VERSION_COMPATIBLE TRUE)'
        echo 'if(PACKAGE_VERSION VERSION_LESS PACKAGE_FIND_VERSION)'
        echo '    set(PACKAGE_VERSION_COMPATIBLE FALSE)'
        echo 'endif()'
    } >"$work/qt $1/lib/cmake/Qt6/Qt6ConfigVersion.cmake"
    echo "${2-}" >"$work/qt $1/lib/cmake/Qt6/Qt6Config.cmake"
}
configure() { # QT PREFIX
    cmake -G Ninja -S "$work/project" -B "$work/build" --fresh -DQt6_DIR="$work/qt $1/lib/cmake/Qt6" -DCMAKE_PREFIX_PATH="$2"
}

qt 6.2.4
ln -s "$work/qt 6.2.4" "$work/again"
told 'an older Qt' 'was built with Qt 6\.[0-9]+ and needs that or a newer one; here is Qt 6\.2\.4 \([^,;]*/qt 6\.2\.4/[^,;]*\)\.' \
    configure 6.2.4 "$stage;$work/again"
# shellcheck disable=SC2016
libraries='foreach(part Core Gui Widgets Sql PrintSupport Svg)
    add_library(Qt6::${part} INTERFACE IMPORTED)
endforeach()
set(Qt6_VERSION 6.99.1)'
qt 6.99.1 "$libraries"
if ! configure 6.99.1 "$stage" >"$work/said" 2>&1; then
    echo 'FAILED: a newer Qt is refused:'
    cat "$work/said"
    failures=$((failures + 1))
fi
qt 6.99.2 'set(Qt6_FOUND FALSE)
set(Qt6_NOT_FOUND_MESSAGE "Qt6Sql was not found.")'
told 'a Qt without its databases' 'something is missing: Qt6Sql was not found\.' configure 6.99.2 "$stage"

# Parts of an installation.
half=$work/half
cp -a "$stage" "$half"
rm "$half/$lib/libNuvoStatistics.so".*
told 'what CMake asks for, without the library' 'Nuvo::Statistics" references the file ".*/libNuvoStatistics\.so\.' \
    configure 6.99.1 "$half"
told 'a program without the library' 'libNuvoStatistics\.so\.1: cannot open shared object file' "$half/$bin/nuvostat" --version
if [ -d "$half/$plugins" ]; then
    told 'the plugin without the library' 'libNuvoStatistics\.so\.1: cannot open shared object file' \
        python3 -c 'import ctypes, sys; ctypes.CDLL(sys.argv[1])' "$half/$plugins/libnuvo_designer.so"
fi

# Where nothing can be written: below a file, which stops the superuser, too.
: >"$work/file"
told 'a prefix that cannot be written' "cannot (make|create) directory.*$work/file/prefix" \
    cmake --install "$build" --prefix "$work/file/prefix"
told 'samples where they cannot be written' "nuvostat: .*$work/file/samples" "$stage/$bin/nuvostat" samples "$work/file/samples"
NUVO_BUILD_DIR=$work/file/build
export NUVO_BUILD_DIR
told 'a build folder that cannot be written' "^scripts/build: .*\"$work/file/build\"" \
    "$(dirname "$0")/../../scripts/build" run all
exit $((failures > 0))
