#!/bin/sh
# Renders the login, the main window and every window of the desktop program
# in Korean and in English to PNG files under build/screenshots/ (offscreen,
# no display needed), on a scratch application folder with a few sample rows,
# and every page of the printed reports of the received days (report_*.png).
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
# The printed reports of the received days, each page as a picture.
if [ -x "$vexcli" ] && command -v pdftoppm >/dev/null; then
  pdfs="$app/reports"
  mkdir -p "$pdfs"
  report() {
    name=$1
    shift
    # A report of nothing stored (the quick-brake buffers of a USB day) is
    # its frame alone, and is rendered as well.
    VEX_LANG=ko QT_QPA_PLATFORM=offscreen "$vexcli" --app-dir "$app" report "$@" --out "$pdfs/$name.pdf" \
      >/dev/null 2>&1 || true
    if [ -f "$pdfs/$name.pdf" ]; then pdftoppm -r 100 -png "$pdfs/$name.pdf" "$out/report_$name"; fi
  }
  report drive-day drive-day 12AB00 000123 260105
  report inspection-day inspection-day 12AB00 000123 260105
  report sections sections 12AB00 000123 260106
  report operation operation 12AB00 000123 260105
  report operation-360 operation-360 12AB00 000123 260105 08
  report quick-brake quick-brake 12AB00
  report avg-day avg-day --from 260101 --to 260110
  report day-avg day-avg --car 12AB00 --driver 000123 --from 260101 --to 260110
fi
ls "$out"/*.png
