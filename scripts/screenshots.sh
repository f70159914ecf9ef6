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
for lang in ko en; do
  QT_QPA_PLATFORM=offscreen VEX_LANG=$lang VEX_USB_ROOTS= \
    "$vex" --app-dir "$app" --screenshots "$out" --prefix "$lang" --sample-rows 2>/dev/null
done
ls "$out"/*.png
