#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs Qt Designer without a display, with a plugin that works in it and writes seen.json and saved.ui. Settings are its
# own. NUVO_FORM is a form to open instead of an empty one. Usage: session.sh DESIGNER FOLDER SAMPLES_DB PLUGINS… (folders that hold a folder "designer")
set -euo pipefail
designer=$1 folder=$2 samples=$3
shift 3

rm -rf "$folder"
mkdir -p "$folder/home"
mkdir -m 700 "$folder/runtime"
cp "$samples" "$folder/samples.db"
cat >"$folder/form.ui" <<'FORM'
<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Form</class>
 <widget class="QWidget" name="Form">
  <property name="geometry">
   <rect>
    <x>0</x>
    <y>0</y>
    <width>400</width>
    <height>300</height>
   </rect>
  </property>
  <property name="windowTitle">
   <string>Form</string>
  </property>
 </widget>
 <resources/>
 <connections/>
</ui>
FORM
cp "$folder/form.ui" "$folder/empty.ui" # the walks save form.ui
[ -z "${NUVO_FORM-}" ] || cp "$NUVO_FORM" "$folder/form.ui"

# Qt's own screen of 800 x 800 is too small for Designer's windows.
cat >"$folder/screen.json" <<'SCREEN'
{"screens": [{"name": "screen", "x": 0, "y": 0, "width": 1600, "height": 1200,
              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
SCREEN

plugins=$(IFS=:; echo "$*")
cd "$folder"
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home XDG_RUNTIME_DIR=$folder/runtime
export QT_QPA_PLATFORM=${NUVO_PLATFORM:-offscreen:configfile=screen.json} QT_PLUGIN_PATH=$plugins LC_ALL=C.UTF-8
status=0
timeout ${NUVO_TIMEOUT:-280} env ${NUVO_PRELOAD:+LD_PRELOAD="$NUVO_PRELOAD"} "$designer" form.ui >designer.log 2>&1 || status=$?
if [ "$status" -ne 0 ] || [ ! -s seen.json ]; then
    echo "Qt Designer ended with status $status; it said:"
    cat designer.log
    exit 1
fi
