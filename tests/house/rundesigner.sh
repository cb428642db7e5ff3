#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/run --designer, with a stand-in for Qt Designer that looks for what a person would need. Usage:
# rundesigner.sh SOURCE_ROOT BUILD_FOLDER
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat >"$work/designer" <<'STANDIN'
#!/bin/sh
[ -f samples.db ] || { echo "no samples.db in $PWD"; exit 1; }
[ -f "${QT_PLUGIN_PATH%%:*}/designer/libnuvo_designer.so" ] || { echo "no plugin below $QT_PLUGIN_PATH"; exit 1; }
[ -z "$1" ] || [ -f "$1" ] || { echo "no form $1 seen from $PWD"; exit 1; }
echo "started with: $*"
STANDIN
chmod +x "$work/designer"
touch "$work/a form.ui"
cd "$work"
export NUVO_BUILD_DIR=$2 NUVO_DESIGNER=$work/designer
said=$("$1/scripts/run" --designer "a form.ui" 2>&1) || { echo "$said"; exit 1; }
[ "${said##*$'\n'}" = "started with: $(readlink -f "a form.ui")" ] || { echo "$said"; exit 1; }
said=$("$1/scripts/run" --designer 2>&1) || { echo "$said"; exit 1; }
[ "${said##*$'\n'}" = "started with: " ] || { echo "$said"; exit 1; }
if "$1/scripts/run" --designer one.ui two.ui >/dev/null 2>&1; then
    echo "two forms are taken"
    exit 1
fi
