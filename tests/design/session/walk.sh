#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A walk through Qt Designer on a real display (Xvfb), with the mouse and the keyboard alone: drags two components onto a
# form, binds and defines, saves. It leaves pictures and form.ui to look at, and takes half a minute; nothing runs it by itself.
# Needs the packages xvfb, xdotool, openbox and imagemagick. Usage: walk.sh BUILD_FOLDER FOLDER [DESIGNER]
set -euo pipefail
build=$(readlink -f "$1")
folder=$2
designer=${3:-$(sed -n 's/^NUVO_QT_DESIGNER:[A-Z]*=//p' "$build/CMakeCache.txt")}

rm -rf "$folder"
mkdir -p "$folder/home"
folder=$(readlink -f "$folder")
mkdir -m 700 "$folder/runtime"
cp "$build/samples.db" "$folder/"
cat >"$folder/form.ui" <<'FORM'
<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">
<property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect></property>
</widget></ui>
FORM
cd "$folder"
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home XDG_RUNTIME_DIR=$folder/runtime LC_ALL=C.UTF-8
export QT_QPA_PLATFORM=xcb QT_PLUGIN_PATH=$build/lib

exec 3<>display
Xvfb -displayfd 3 -screen 0 1400x900x24 >xvfb.log 2>&1 &
started=$!
trap 'kill $started 2>/dev/null' EXIT
for _ in $(seq 50); do [ -s display ] && break; sleep 0.1; done
DISPLAY=:$(tr -d '\n' <display)
export DISPLAY
openbox >openbox.log 2>&1 &
started+=" $!"
"$designer" form.ui >designer.log 2>&1 &
started+=" $!"

take() { import -window root "$1.png"; }
click() { xdotool mousemove "$1" "$2" sleep 0.2 click "${3:-1}" sleep 0.5; }
double() { xdotool mousemove "$1" "$2" sleep 0.2 click --repeat 2 --delay 80 1 sleep 1; }
drag() {
    xdotool mousemove "$1" "$2" sleep 0.2 mousedown 1 sleep 0.3
    xdotool mousemove_relative 15 5 sleep 0.2 mousemove $(($3 - 20)) "$4" sleep 0.3 mousemove "$3" "$4" sleep 0.5 mouseup 1 sleep 1
}
# Places are those of a screen of 1400 x 900 with Designer's first arrangement of its windows.
main=$(xdotool search --sync --onlyvisible --name 'Qt Designer' | tail -1)
sleep 3
xdotool windowmove "$main" 0 0 windowsize "$main" 1400 870 sleep 1
take start

click 127 111
xdotool type --delay 30 MLR
sleep 1
take palette

drag 71 155 330 150
drag 76 275 470 150
take dropped
click 335 150
take selected
click 1150 507
xdotool type --delay 30 samples.db
xdotool key Return sleep 0.5
click 1150 525
take row
click 1384 525
take tables
xdotool key Down Down Down Return sleep 0.5
double 355 158
take response
click 720 421
xdotool key End Return sleep 0.5
click 602 547
double 355 158
take control
click 547 365
click 720 454
xdotool key Home Down Return sleep 0.5
take logarithm
click 602 547
click 355 158 3
take menu
xdotool key Escape sleep 0.3
click 510 158
click 1150 489
click 1384 489
take datasets
xdotool key Down Return sleep 0.5
take bound
xdotool key ctrl+s sleep 1
take end
grep -A4 -E 'ResponseVarY|ControlVar01|"Dataset"' form.ui
