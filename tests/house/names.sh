#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/abi --names tells of a name that programs use and the library has no more, and of no other. Usage: names.sh SOURCE_ROOT
# LIBRARY
set -u
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$1/packaging/abi/libNuvoStatistics.so.1.names" "$work/names"
echo _ZN11TRegression11NeverWasSetEi >>"$work/names"
"$1/scripts/abi" --names "$2" "$work/names" >"$work/said" 2>&1
status=$?
[ $status -eq 1 ] && [ "$(wc -l <"$work/said")" -eq 2 ] && grep -qF 'TRegression::NeverWasSet(int)' "$work/said" && exit
echo "status $status; said:"
cat "$work/said"
exit 1
