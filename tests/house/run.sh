#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/run from another folder, without a terminal, a display or a home folder, on a build that is there. Usage:
# run.sh SOURCE_ROOT BUILD_FOLDER ARGUMENT…
cd / || exit
root=$1
export NUVO_BUILD_DIR=$2 HOME=/nonexistent
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
exec setsid -w "$root/scripts/run" "${@:3}" </dev/null
