#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for SECONDS (default
# 60), keeping each corpus under build-fuzz/corpus. Exits non-zero when a
# target finds a crash; the reproducer is left in build-fuzz/.
set -euo pipefail
cd "$(dirname "$0")/.."
SECONDS_EACH=${1:-60}
BUILD=${VEX_FUZZ_DIR:-$PWD/build-fuzz}

bash scripts/install-deps.sh
CXX=clang++ CC=clang cmake -S . -B "$BUILD" -G Ninja -DVEX_FUZZ=ON -DVEX_BUILD_TESTS=OFF >/dev/null
cmake --build "$BUILD" -j"$(nproc)"

for target in "$BUILD"/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus="$BUILD/corpus/$name"
  mkdir -p "$corpus"
  echo "== $name, ${SECONDS_EACH}s"
  (cd "$BUILD" && "$target" -max_total_time="$SECONDS_EACH" -rss_limit_mb=4096 -max_len=16384 "$corpus" 2>&1 | tail -n 3)
done
