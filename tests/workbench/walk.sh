#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A walk through the workbench on a real display (Xvfb), with the mouse and the keyboard alone: from a CSV file in
# another window to a printed report. It leaves report.pdf, the actions (a line each: a drag, a click, keys) and pictures.
# Needs the packages xvfb, xdotool and imagemagick. Usage: walk.sh BUILD_FOLDER FILE.csv FOLDER
# SCALE=2 takes the pictures for dense screens, PAGES=1 further ones of the other pages. There is no window manager: windows
# have no frames, and the keys go where the program itself puts the focus.
set -euo pipefail
build=$(readlink -f "$1")
csv=$(readlink -f "$2")
rm -rf "$3"
mkdir -p "$3/home/Documents"
folder=$(readlink -f "$3")
mkdir -m 700 "$folder/runtime"
scale=${SCALE:-1}
cp "$csv" "$folder/home/"
cd "$folder"
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home XDG_DATA_HOME=$folder/home XDG_RUNTIME_DIR=$folder/runtime
export LC_ALL=C.UTF-8 LANGUAGE= QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=$scale NO_AT_BRIDGE=1

exec 3<>display
Xvfb -displayfd 3 -screen 0 $((1540 * scale))x$((840 * scale))x24 -nolisten tcp >xvfb.log 2>&1 &
started=$!
trap 'kill $started 2>/dev/null || true; wait 2>/dev/null || true' EXIT
for _ in $(seq 100); do [ -s display ] && break; sleep 0.1; done
DISPLAY=:$(tr -d '\n' <display)
export DISPLAY

places=$folder/places
QT_PLUGIN_PATH=$build/tests/workbench/plugins QT_QPA_GENERIC_PLUGINS=nuvoplaces NUVO_PLACES=$places \
    "$build/bin/nuvo-workbench" >workbench.log 2>&1 &
started+=" $!"
"$build/bin/filesource" "home/$(basename "$csv")" 1380 360 >source.log 2>&1 &
started+=" $!"

fail() { echo "walk: $*" >&2; import -window root "$folder/failed.png" || true; cat workbench.log >&2; exit 1; }
# Where something is, as soon as it is there and stays in its place.
where() {
    local before='' now
    for _ in $(seq 150); do
        now=$(grep -m1 -F -- "$1 " "$places" 2>/dev/null | grep -m1 "^$1 " | cut -d' ' -f2,3) || now=''
        if [ -n "$now" ] && [ "$now" = "$before" ]; then
            awk -v s="$scale" '{ printf "%d %d\n", $1 * s, $2 * s }' <<<"$now"
            return
        fi
        before=$now
        sleep 0.2
    done
    fail "nothing is called $1"
}
until_there() { where "$1" >/dev/null; }
count=0
act() { count=$((count + 1)); printf '%d. %s\n' $count "$*" >>actions; }
# A picture of the window, or of a dialog in front of it.
take() {
    sleep 0.4
    read -r x y width height < <(awk -v name="${2:-Workbench}" -v s="$scale" \
        '$1 == name { print int(($2 - $4 / 2 + 1) * s), int(($3 - $5 / 2 + 1) * s), $4 * s, $5 * s; exit }' "$places")
    import -window root -crop "${width}x$height+$x+$y" +repage "$1.png"
}
# Whether something is there within so many seconds.
appears() {
    for _ in $(seq $(($2 * 5))); do
        awk -v name="$1" '$1 == name { found = 1 } END { exit !found }' "$places" && return
        sleep 0.2
    done
    return 1
}
# Drags from one place to another until that has led to something. A busy machine can be too slow to tell the dragging
# program in time that the other one takes it; a person tries again then, too.
drag() {
    for wait in 0.3 1 3; do
        xdotool mousemove $1 $2 sleep 0.1 mousedown 1 sleep 0.2 mousemove_relative 8 4 sleep 0.1 mousemove_relative 8 4 sleep 0.1
        xdotool mousemove $(($3 - 6)) $(($4 - 3)) sleep 0.2 mousemove $3 $4 sleep $wait mouseup 1
        if appears "$5" 8; then return; fi
    done
    fail "the drag has led to no $5"
}

until_there Welcome
take welcome

act "Drag the file onto the window."
read -r x y < <(where Welcome)
drag $((1450 * scale)) $((405 * scale)) "$x" "$y" CsvPreview
until_there CsvPreview
take preview CsvPreview

act "Enter: read it."
xdotool key Return
until_there FieldsView/Employed
take fields

act "Drag the field Employed to Y."
read -r fx fy < <(where FieldsView/Employed)
read -r x y < <(where FieldY)
drag "$fx" "$fy" "$x" "$y" TermY/Employed
take response

act "Click the field GNP.deflator."
read -r x y < <(where FieldsView/GNP.deflator)
xdotool mousemove "$x" "$y" click 1 sleep 1
act "Click the field Year with the shift key."
read -r x y < <(where FieldsView/Year)
xdotool mousemove "$x" "$y" keydown shift click 1 keyup shift sleep 0.2
take marked
act "Enter: add them."
xdotool key Return
until_there Models/Employed_on_GNP.deflator,_GNP,_Unemployed,_Armed.Forces,_Population,_Year
take summary

# For pictures of the other pages, which are no part of the walk.
if [ -n "${PAGES-}" ]; then
    for page in 3:diagnostics 4:observations 5:figures 7:predict 2:summary; do
        xdotool key "alt+${page%%:*}" sleep 0.5
        take "${page#*:}"
    done
fi

act "Ctrl+P: print."
xdotool key ctrl+p
until_there PrintDialog
take print PrintDialog
act "Enter: into the file that is proposed."
xdotool key Return
printed=home/Documents/longley-report.pdf
for _ in $(seq 300); do tail -c 10 "$printed" 2>/dev/null | grep -q '%%EOF' && break; sleep 0.2; done
take printed
mv "$printed" report.pdf
