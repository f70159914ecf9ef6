#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program on the embedded
# database. The application folder is $VEX_HOME, else ~/VEX; beside its
# database it gets a sample USB medium (model 250, the last seven days) that
# the reception dialog ("데이터 수신", source "사각 USB(250)") finds as the
# drive. With a display the desktop program starts (log in with
# qemba/qemba); without one the headless job receives the sample medium,
# says what was stored, and writes yesterday's operation graph (PNG) and
# daily report (PDF), naming their paths.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=${VEX_BUILD_DIR:-$PWD/build}
APP=${VEX_HOME:-$HOME/VEX}

bash scripts/install-deps.sh
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)" --target vexcli vex vex-analyzer

VEXCLI="$BUILD/src/vexcli --app-dir $APP"
$VEXCLI init
MEDIUM="$APP/sample-medium"
if [ ! -f "$MEDIUM/Master00.dat" ]; then
  $VEXCLI sample usb --model 250 --out "$MEDIUM" --car 001234 --driver 005678 \
    --from "$(date -d '-7 days' +%y%m%d)" --days 7
fi
export VEX_USB_ROOTS="$MEDIUM"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$BUILD/src/vex" --app-dir "$APP"
fi
echo "run.sh: no display; the headless job instead"
echo
echo "== Receiving the sample medium (model 250, car 001234, driver 005678)"
$VEXCLI receive usb --model 250 --medium "$MEDIUM" | grep -v '^decoded ' ||
  echo "run.sh: the reception did not store everything; the lines above say why"

# Qt draws offscreen here; it wants a runtime folder of its own.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
  export XDG_RUNTIME_DIR="${TMPDIR:-/tmp}/runtime-$(id -u)"
  mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
fi
DAY=$(date -d '-1 days' +%y%m%d)
OUT="$APP/report"
mkdir -p "$OUT"
$VEXCLI graph day 001234 005678 "$DAY" --out "$OUT/sample-$DAY-graph.png" >/dev/null
$VEXCLI report drive-day 001234 005678 "$DAY" --out "$OUT/sample-$DAY-report.pdf" >/dev/null
echo
echo "== Yesterday ($DAY) of car 001234, driver 005678"
echo "operation graph: $OUT/sample-$DAY-graph.png"
echo "daily report:    $OUT/sample-$DAY-report.pdf"
echo "every stored figure of the day: $BUILD/src/vexcli --app-dir $APP day 001234 005678 $DAY"
