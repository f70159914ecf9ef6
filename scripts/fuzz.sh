#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for SECONDS (default
# 60), or only the targets named after it:
#
#   scripts/fuzz.sh [SECONDS [TARGET...]]
#
# The quick build (coverage only: no sanitizer, no tracing of comparisons)
# is the default; a deep run, several times slower:
#
#   VEX_FUZZ_SANITIZERS=address,undefined VEX_FUZZ_TRACE_CMP=ON scripts/fuzz.sh 600
#
# Each target starts from its committed seeds (fuzz/corpus/<target>, made by
# scripts/fuzz-seeds.sh) with its dictionary (fuzz/<target>.dict) and keeps
# what it finds under build-fuzz/corpus/<target>; copy an input from there
# into fuzz/corpus/<target> to have the test run replay it. The targets work
# in sandboxes on /dev/shm, removed afterwards. Exits non-zero when a target
# finds a fault; the reproducer is left in build-fuzz/ as crash-*.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$PWD
SECONDS_EACH=${1:-60}
shift || true
BUILD=${VEX_FUZZ_DIR:-$ROOT/build-fuzz}

bash scripts/install-deps.sh
CXX=clang++ CC=clang cmake -S . -B "$BUILD" -G Ninja -DVEX_FUZZ=ON -DVEX_BUILD_TESTS=OFF \
    -DVEX_FUZZ_SANITIZERS="${VEX_FUZZ_SANITIZERS:-}" -DVEX_FUZZ_TRACE_CMP="${VEX_FUZZ_TRACE_CMP:-OFF}" >/dev/null
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzz_pack_file fuzz_pack_filing fuzz_sys_file fuzz_usb_130 fuzz_usb_250 fuzz_ntd
                                      fuzz_inbox_names fuzz_package fuzz_remote_names fuzz_xlsx_template fuzz_recount)
cmake --build "$BUILD" -j"$(nproc)" --target "${targets[@]}"

shm=/dev/shm
[ -w "$shm" ] || shm=${TMPDIR:-/tmp}
VEX_FUZZ_SANDBOXES=$(mktemp -d "$shm/vex-fuzz-run-XXXXXX")
export VEX_FUZZ_SANDBOXES
# Allocation stacks cost a quarter of the speed; run a reproducer by hand
# for a report with them.
export ASAN_OPTIONS=${ASAN_OPTIONS:-malloc_context_size=0}
trap 'rm -rf "$VEX_FUZZ_SANDBOXES"' EXIT

failed=0
for name in "${targets[@]}"; do
  corpus=$BUILD/corpus/$name
  mkdir -p "$corpus"
  echo "== $name, ${SECONDS_EACH}s"
  # New inputs go into the first folder; the seeds are only read. Paths are
  # absolute: the application moves into its folder when it starts.
  if ! "$BUILD/fuzz/$name" -max_total_time="$SECONDS_EACH" -rss_limit_mb=4096 -max_len=16384 \
      -dict="$ROOT/fuzz/$name.dict" -artifact_prefix="$BUILD/" -print_final_stats=1 \
      "$corpus" "$ROOT/fuzz/corpus/$name" >"$BUILD/$name.log" 2>&1; then
    failed=1
    grep -E 'vex fuzz fault|ERROR|SUMMARY' "$BUILD/$name.log" | head -n 5
  fi
  grep -E '^#[0-9]+.*(pulse|DONE)|stat::number_of_executed_units|stat::average_exec_per_sec' "$BUILD/$name.log" |
    tail -n 3
done
exit $failed
