#!/usr/bin/env bash
# The package unpacked under a temporary root, its programs run from there
# as two users of one machine with fresh home folders: each gets a folder of
# his own, made from the unpacked share folder, and a sample USB medium is
# received and its day shown. The environment is emptied, so nothing points
# the programs anywhere but their own folder.
#   unpacked.sh PACKAGE_DIR
set -euo pipefail
deb=$(echo "$1"/vex_*.deb)
fail() { echo "FAIL: $*" >&2; exit 1; }
trap 'echo "FAIL: line $LINENO: $BASH_COMMAND" >&2' ERR

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
dpkg-deb -x "$deb" "$work/root"
bin=$work/root/usr/bin
share=$work/root/usr/share/vex
# A line only this unpacked copy of the INI template has.
printf '; unpacked under %s\n' "$work" >>"$share/MORIX.INI"

# run HOME [VEX_HOME] -- PROGRAM ARGS...: output in $out, status in $rc.
run() {
  local home=$1 vex_home=
  shift
  if [ "$1" != -- ]; then vex_home=$1; shift; fi
  shift
  mkdir -p "$home"
  rc=0
  out=$(env -i PATH=/usr/bin:/bin LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen HOME="$home" \
        ${vex_home:+VEX_HOME="$vex_home"} "$@" 2>&1) || rc=$?
}

run "$work/a" -- "$bin/vexcli" --help
[ "$rc" = 0 ] || fail "vexcli --help: $rc $out"
grep -q '^  receive pack|usb|inbox' <<<"$out" || fail "vexcli --help lists no commands: $out"

# First user: the default folder ~/VEX.
run "$work/a" -- "$bin/vexcli" init
[ "$rc" = 0 ] || fail "init: $rc $out"
grep -qx "application folder: $work/a/VEX" <<<"$out" || fail "init used another folder: $out"
grep -qx "resources:          $share" <<<"$out" || fail "resources not from the unpacked share folder: $out"
app=$work/a/VEX
cmp -s "$share/MORIX.INI" "$app/MORIX.INI" || fail "MORIX.INI is not the unpacked template"
cmp -s "$share/db_temp/morix.mdb" "$app/db_temp/morix.mdb" || fail "db_temp/morix.mdb is not the delivered one"
cmp -s "$share/Exp/exp.mdb" "$app/Exp/exp.mdb" || fail "Exp/exp.mdb is not the delivered one"
[ "$(ls "$app/Excel" | wc -l)" = "$(ls "$share/Excel" | wc -l)" ] || fail "spreadsheet templates missing"
cmp -s "$share/Help/VEX.html" "$app/Help/VEX.html" || fail "help pages missing"
[ -w "$app/db/morix.mdb" ] || fail "the live database is not writable"

run "$work/a" -- "$bin/vexcli" sample usb --model 250 --out "$work/medium" --car 001234 --driver 005678 \
    --from 261001 --days 2
[ "$rc" = 0 ] || fail "sample usb: $rc $out"
run "$work/a" -- "$bin/vexcli" receive usb --model 250 --medium "$work/medium"
[ "$rc" = 0 ] || fail "receive usb: $rc $out"
grep -q '^수신완료$' <<<"$out" || fail "receive usb: $out"
run "$work/a" -- "$bin/vexcli" day 001234 005678 261002
[ "$rc" = 0 ] || fail "day: $rc $out"
grep -q '^D_D1 ' <<<"$out" || fail "no stored day: $out"
grep -Eq '^day file: [0-9]+ bytes' <<<"$out" || fail "no day file: $out"

# Second user, with VEX_HOME: his own folder, which holds none of the first
# user's days.
run "$work/b" "$work/b/site" -- "$bin/vexcli" day 001234 005678 261002
grep -q '^D_D1 ' <<<"$out" && fail "the second user sees the first user's day: $out"
[ -f "$work/b/site/db/morix.mdb" ] || fail "no folder for the second user"
[ ! -e "$work/b/VEX" ] || fail "VEX_HOME was passed over"

# The desktop program and the emulator start from the unpacked root.
run "$work/a" -- "$bin/vex" --help
[ "$rc" = 0 ] || fail "vex --help: $rc $out"
run "$work/a" -- "$bin/vex-analyzer"
[ "$rc" = 2 ] && grep -q '^usage: vex-analyzer' <<<"$out" || fail "vex-analyzer: $rc $out"
echo "unpacked package: ok"
