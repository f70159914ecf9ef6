#!/bin/sh
# Renders the login, the main window and every window of the desktop program
# in Korean and in English to PNG files under build/screenshots/ (offscreen,
# no display needed), on a scratch application folder with a few sample rows.
#   scripts/screenshots.sh [BUILD_DIR]     (default: build)
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-"$root/build"}
vex="$build/src/vex"
[ -x "$vex" ] || { echo "screenshots: $vex not built" >&2; exit 1; }
out="$root/build/screenshots"
mkdir -p "$out"
app=$(mktemp -d)
trap 'rm -rf "$app"' EXIT
# Two days of a generated USB medium, received, for the views of a day.
vexcli="$build/src/vexcli"
if [ -x "$vexcli" ]; then
  "$vexcli" sample usb --model 250 --out "$app/medium" --car 12AB00 --driver 000123 --from 260105 --days 2 >/dev/null
  QT_QPA_PLATFORM=offscreen "$vexcli" --app-dir "$app" receive usb --model 250 --medium "$app/medium" >/dev/null
fi
for lang in ko en; do
  QT_QPA_PLATFORM=offscreen VEX_LANG=$lang VEX_USB_ROOTS= \
    "$vex" --app-dir "$app" --screenshots "$out" --prefix "$lang" --sample-rows 2>/dev/null
done
ls "$out"/*.png
