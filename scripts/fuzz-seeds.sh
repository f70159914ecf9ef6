#!/usr/bin/env bash
# Makes the seed corpora of the fuzz targets, fuzz/corpus/<target>/, from the
# sample generators: memory packs received from the analyzer emulator, USB
# media of both models with each kind of damage, saved days. Large files are
# cut down to the records the decoders read (a few hour blocks, events and
# minute records of a "130", a few records of a "250", ten minutes of a
# saved day), laid out as each target's input form wants them
# (fuzz/targets/*.cpp). Seeds are made anew; the inputs a fuzz run added to
# a corpus folder (named by their SHA-1) stay. Uses vexcli and vex-analyzer
# of $VEX_BUILD_DIR (else build/), built when missing.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$PWD
BUILD=${VEX_BUILD_DIR:-$ROOT/build}
CORPUS=$ROOT/fuzz/corpus

[ -f "$BUILD/build.ninja" ] || cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" --target vexcli vex-analyzer >/dev/null
VEXCLI=$BUILD/src/vexcli
ANALYZER=$BUILD/tools/analyzer/vex-analyzer

WORK=$(mktemp -d)
EMULATOR=
cleanup() {
  if [ -n "$EMULATOR" ]; then kill "$EMULATOR" 2>/dev/null || true; fi
  rm -rf "$WORK"
}
trap cleanup EXIT

# ---- Cutting binary files ------------------------------------------------------

# bytes FILE OFFSET COUNT: COUNT bytes of FILE from OFFSET on.
bytes() { dd if="$1" bs=64K iflag=skip_bytes,count_bytes skip="$2" count="$3" status=none; }

# byte VALUE...: the bytes of the given values (0 to 255), as octal escapes
# of printf's format.
# shellcheck disable=SC2059
byte() { for v in "$@"; do printf "\\$(printf '%03o' "$v")"; done; }

# records FILE OFFSET SIZE COUNT: a line a record, its index and its bytes in hex.
records() { bytes "$1" "$2" $(($3 * $4)) | od -An -v -tx1 -w"$3" | awk '{print NR-1, $0}'; }

# pick KIND STAMP STAMPBYTES SPEED STEP SPEEDS: the indices, in order, of
# the records worth a seed among the lines of `records`: the first three
# with a good stamp and speed, two of the next date, every odd one (a kind
# that isn't data, a stamp of letters, month 13, day 32, a stamp earlier
# than one before it, samples of FF), up to five, and the last three that
# aren't erased. Fields are numbered as awk sees the line: the index is 1,
# the record's first byte 2. KIND 0: the record has no kind byte.
pick() {
  awk -v kind="$1" -v st="$2" -v sn="$3" -v sp="$4" -v ss="$5" -v sc="$6" '
    function digits(x) { return x ~ /^[0-9][0-9]$/ }
    {
      erased = kind ? $kind == "ff" : $st == "ff"
      if (erased) next
      key = ""; good = !kind || $kind == "f0"
      for (i = 0; i < sn; i++) { key = key $(st + i); good = good && digits($(st + i)) }
      good = good && $(st + 1) + 0 >= 1 && $(st + 1) + 0 <= 12 && $(st + 2) + 0 >= 1 && $(st + 2) + 0 <= 31
      moving = sc == 0
      for (i = 0; i < sc; i++) {
        v = $(sp + ss * i)
        if (v == "ff") good = 0
        if (v != "00") moving = 1
      }
      odd = !good || key < top
      if (good && key > top) top = key
      day = substr(key, 1, 6)
      if (odd && nodd < 5) { take[$1] = 1; nodd++ }
      else if (good && moving && nfirst < 3) { take[$1] = 1; nfirst++; if (first == "") first = day }
      else if (good && moving && first != "" && day != first && nnext < 2) { take[$1] = 1; nnext++ }
      last[n++ % 3] = $1
    }
    END {
      for (i = 0; i < 3 && i < n; i++) take[last[i]] = 1
      for (k in take) print k
    }' | sort -n
}

# cut FILE OFFSET SIZE INDEX...: the records of those indices, one after another.
cut_records() {
  local file=$1 offset=$2 size=$3
  shift 3
  for i in "$@"; do bytes "$file" $((offset + i * size)) "$size"; done
}

# count WORDS...: the number of words.
count() { echo $#; }

# ---- Memory packs ---------------------------------------------------------------

# receive IMAGE APPDIR [ARGS...]: a reception of the image through the emulator.
receive() {
  local image=$1 app=$2 tty
  shift 2
  coproc EMU { exec "$ANALYZER" --image "$image"; }
  EMULATOR=$EMU_PID
  read -r tty <&"${EMU[0]}"
  VEX_SERIAL_PORTS=$tty "$VEXCLI" --app-dir "$app" receive pack "$@" >/dev/null 2>&1 || true
  kill "$EMULATOR"
  wait "$EMULATOR" 2>/dev/null || true
  EMULATOR=
}

pack_seeds() {
  local out=$CORPUS/fuzz_pack_file filing=$CORPUS/fuzz_pack_filing sys=$CORPUS/fuzz_sys_file
  mkdir -p "$out" "$filing" "$sys"
  # Twelve days, each kind of day damage on a day of its own.
  local damage=(erased-page bad-date bad-check garbage-speed noisy-speed bad-distance-start bad-time
                bad-distance bad-counts bad-brake-records)
  local args=() d
  for d in "${damage[@]}"; do args+=(--damage "$d"); done
  "$VEXCLI" sample pack --out "$WORK/pack.img" --car 0001 --driver 0002 --from 251001 --days 12 \
      --last-read 2509301800 "${args[@]}" >"$WORK/pack.txt"
  receive "$WORK/pack.img" "$WORK/pack"
  # "251005  07:53-18:13   174.9 km  brakes 2  accelerations 3  damage bad-check"
  while read -r day _ _ _ _ _ _ _ word kind; do
    [ "$word" = damage ] || kind=plain
    local file=$WORK/pack/mpack/0001/00010002$day.Vex
    [ -f "$file" ] || continue
    cp "$file" "$out/$day-$kind.Vex"
    case $kind in plain | erased-page | bad-date | bad-check | bad-time) cp "$file" "$filing/$day-$kind.Vex" ;; esac
  done <"$WORK/pack.txt"
  cp "$WORK/pack/Dat/SysRead.Vex" "$sys/read-before.Vex"
  # A pack never read, with stamps a recorder can't have written.
  "$VEXCLI" sample pack --out "$WORK/stamps.img" --car 0001 --driver 0002 --from 251001 --days 2 \
      --damage bad-stamps >/dev/null
  receive "$WORK/stamps.img" "$WORK/stamps" --from 251001 --to 251002
  cp "$WORK/stamps/Dat/SysRead.Vex" "$sys/bad-stamps.Vex"
  # A short page: the reply of an analyzer cut off.
  head -c 60 "$WORK/stamps/Dat/SysRead.Vex" >"$sys/cut.Vex"
}

# ---- USB media ----------------------------------------------------------------------

usb_seeds() {
  local out130=$CORPUS/fuzz_usb_130 out250=$CORPUS/fuzz_usb_250 kind
  mkdir -p "$out130" "$out250"
  for kind in plain free-records bad-stamps ff-samples second-recording; do
    local damage=()
    [ "$kind" = plain ] || damage=(--damage "$kind")

    # "250": the picked records, whole, in the order of the log.
    local medium=$WORK/usb250-$kind log
    "$VEXCLI" sample usb --model 250 --out "$medium" --car 12AB00 --driver 000123 --from 261001 --days 2 \
        "${damage[@]}" >/dev/null
    log=$medium/SPDR0403.dat
    # shellcheck disable=SC2046
    cut_records "$log" 0 512 $(records "$log" 0 512 $(($(stat -c %s "$log") / 512)) | pick 2 3 5 18 8 60) \
        >"$out250/$kind.dat"

    # "130": the compact form of fuzz_usb_130 (first byte 0, then the
    # counts of hour blocks, event records and first-region minute records,
    # then those and the second region's minute records).
    medium=$WORK/usb130-$kind
    "$VEXCLI" sample usb --model 130 --out "$medium" --car 12AB00 --driver 000123 --from 261001 --days 2 \
        "${damage[@]}" >/dev/null
    log=$medium/SPDR0403.dat
    local hours events minutesA minutesB
    hours=$(records "$log" 0 256 5376 | pick 2 3 4 7 4 60)
    events=$(records "$log" $((0x150000)) 10 8192 | pick 0 2 6 0 0 0)
    minutesA=$(records "$log" $((0x170000)) 125 523 | pick 0 2 5 7 2 60)
    minutesB=$(records "$log" $((0x180000)) 125 525 | pick 0 2 5 7 2 60 | head -n 2)
    # shellcheck disable=SC2086
    {
      byte 0 "$(count $hours)" "$(count $events)" "$(count $minutesA)"
      cut_records "$log" 0 256 $hours
      cut_records "$log" $((0x150000)) 10 $events
      cut_records "$log" $((0x170000)) 125 $minutesA
      cut_records "$log" $((0x180000)) 125 $minutesB
    } >"$out130/$kind.bin"
    # The same for a reception of the first day only (bit 1 of the first byte).
    if [ "$kind" = plain ]; then
      { byte 2; tail -c +2 "$out130/$kind.bin"; } >"$out130/plain-one-day.bin"
      # The bytes as they are (bit 0): the log cut short after its first
      # blocks, and the plain picks at their places in a log otherwise
      # erased, cut after the second region's first records.
      { byte 1; bytes "$log" 0 $((8 * 256)); } >"$out130/raw-cut.bin"
      local raw=$WORK/raw130 i
      head -c $((0x180000 + 2 * 125)) /dev/zero | tr '\0' '\377' >"$raw"
      for i in $hours; do bytes "$log" $((i * 256)) 256 | dd of="$raw" bs=256 seek="$i" conv=notrunc status=none; done
      for i in $events; do
        bytes "$log" $((0x150000 + i * 10)) 10 | dd of="$raw" bs=1 seek=$((0x150000 + i * 10)) conv=notrunc status=none
      done
      for i in $minutesA; do
        bytes "$log" $((0x170000 + i * 125)) 125 | dd of="$raw" bs=1 seek=$((0x170000 + i * 125)) conv=notrunc status=none
      done
      for i in 0 1; do
        bytes "$log" $((0x180000 + i * 125)) 125 | dd of="$raw" bs=1 seek=$((0x180000 + i * 125)) conv=notrunc status=none
      done
      { byte 1; cat "$raw"; } >"$out130/raw-regions.bin"
    fi
  done
}

# ---- Saved days -------------------------------------------------------------------

# A saved day: car, driver and day (three bytes each), then speed at 9,
# engine at 86,409 and the minute distance at 172,809 (minute m of 1 to
# 1,440 at 2m - 1 and 2m), each array one byte early over the one before.
ntd_seeds() {
  local out=$CORPUS/fuzz_ntd saved=$WORK/day.NTD
  mkdir -p "$out"
  "$VEXCLI" sample ntd --out "$saved" --car 12AB00 --driver 000123 --day 261001 >/dev/null
  # The minute before the first speed, and the minute of the highest speed.
  local minutes start top
  minutes=$(bytes "$saved" 9 86400 | od -An -v -tu1 -w60 | awk '
    { m = NR - 1; for (i = 1; i <= NF; i++) { if ($i > 0 && first == "") first = m; if ($i > max) { max = $i; top = m } } }
    END { print (first > 0 ? first - 1 : 0), (top > 4 ? top - 4 : 0) }')
  read -r start top <<<"$minutes"
  # window FORM HEADER MINUTE: the compact day of fuzz_ntd, ten minutes from MINUTE.
  window() {
    local form=$1 header=$2 minute=$3 m
    byte "$form"
    cat "$header"
    byte $((minute >> 8)) $((minute & 255))
    for ((m = minute; m < minute + 10 && m < 1440; m++)); do
      bytes "$saved" $((9 + 60 * m)) 60
      bytes "$saved" $((86409 + 60 * m)) 60
      bytes "$saved" $((172809 + 2 * m + 1)) 2
    done
  }
  bytes "$saved" 0 9 >"$WORK/saved-header"
  # The "250" road's day file names driver, car, day.
  { bytes "$saved" 3 3; bytes "$saved" 0 3; bytes "$saved" 6 3; } >"$WORK/road-header"
  window 1 "$WORK/saved-header" "$start" >"$out/saved-plain.bin"
  window 1 "$WORK/saved-header" "$top" >"$out/saved-plain-fastest.bin"
  window 2 "$WORK/road-header" "$start" >"$out/road-plain.bin"
  # A saved day a byte short and a byte long (high half of the first byte).
  { byte $((0xF1)); tail -c +2 "$out/saved-plain.bin"; } >"$out/saved-short.bin"
  { byte $((0x11)); tail -c +2 "$out/saved-plain.bin"; } >"$out/saved-long.bin"
  # The bytes as they are: a copy cut short.
  { byte 0; bytes "$saved" 0 4096; } >"$out/raw-cut.bin"
}

# ---- Names of the inbox ----------------------------------------------------------

# name, zero, root folder, zero, filing note.
names_seeds() {
  local out=$CORPUS/fuzz_inbox_names
  mkdir -p "$out"
  local note=$'car=12AB00\ndriver=000123\nfrom=261001\nto=261031\n'
  printf '%s\0%s\0%s' 12AB00261101.dat /home/fleet/VEX "$note" >"$out/good.bin"
  printf '%s\0%s\0%s' 12ab00261101.DAT VEX "${note//$'\n'/$'\r\n'}" >"$out/small-letters-crlf.bin"
  printf '%s\0%s\0%s' '\..\..261101.dat' /home/fleet/VEX $'car=..\\..\ndriver=000123\nfrom=261001\nto=261031\n' \
      >"$out/climbing.bin"
  printf '%s\0%s\0%s' 12AB00261301.dat ./VEX $'car=12AB00\ndriver=000123\nfrom=261031\nto=261001\n' \
      >"$out/month-13-dates-reversed.bin"
  printf '%s\0%s\0%s' 12AB00261101.dat.id /home/fleet/VEX/../VEX $'car=12AB00\nfrom=261001\nto=261031\n' \
      >"$out/note-name-no-driver.bin"
}

# ---- Recounts -------------------------------------------------------------------

# Five standards, the day file's size form, the first second (two bytes, in
# steps of two seconds), then speed and engine bytes in turn (fuzz/targets/Recount_Target.cpp).
recount_seeds() {
  python3 - "$CORPUS/fuzz_recount" <<'PY'
import math, os, sys
out = sys.argv[1]
os.makedirs(out, exist_ok=True)
def day(standards, form, first, seconds):
    b = bytearray(standards + [form, first // 2 >> 8, first // 2 & 0xFF])
    for s in range(seconds):
        v = 0 if s == 1000 or 1500 < s < 1900 else int(60 + 35 * math.sin(s / 50.0))
        b += bytes([max(0, min(254, v)), 40])
    return b
seeds = {
    # an hour of driving from 07:00 with a stop and a sudden halt
    "plain-hour-of-driving": day([80, 9, 8, 3, 5], 0, 25200, 3600),
    # a file of three arrays, overspeed and idling into the day's last second
    "plain-overspeed-to-the-end-of-the-day": day([50, 9, 8, 0, 5], 1, 86000, 401),
    "short-day-file": bytes([80, 9, 8, 3, 5, 7, 0, 0, 10, 20, 30, 40]),
    "odd-standards": bytes([255, 0x80, 0, 15, 0, 0, 0, 5] + [7, 1] * 64),
}
for name, data in seeds.items():
    with open(os.path.join(out, name), "wb") as f:
        f.write(data)
PY
}

# Only the corpora made here are made anew.
for target in fuzz_pack_file fuzz_pack_filing fuzz_sys_file fuzz_usb_130 fuzz_usb_250 fuzz_ntd fuzz_inbox_names \
              fuzz_recount; do
  find "$CORPUS/$target" -type f ! -regex '.*/[0-9a-f]\{40\}' -delete 2>/dev/null || true
done
pack_seeds
usb_seeds
ntd_seeds
names_seeds
recount_seeds
du -sh "$CORPUS"/*
