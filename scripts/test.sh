#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test, with a
# throwaway PostgreSQL server on loopback for the store tests and a private
# CUPS server with a cups-pdf printer for the printed reports.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$PWD
BUILD=${VEX_BUILD_DIR:-$ROOT/build}

bash scripts/install-deps.sh
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)"

# shellcheck source=scripts/pg-server.sh
source scripts/pg-server.sh
# shellcheck source=scripts/cups-server.sh
source scripts/cups-server.sh
pg_start
trap 'pg_stop; cups_stop' EXIT
cups_start

export VEX_TEST_PG_URI="$PG_URI" VEX_REQUIRE_PG=1 QT_QPA_PLATFORM=offscreen
ctest --test-dir "$BUILD" --output-on-failure -j"$(nproc)" --timeout 600
