#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on the embedded
# database: makes the application folder ready and shows what it holds.
# The folder is $VEX_HOME, else ~/VEX.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=${VEX_BUILD_DIR:-$PWD/build}

bash scripts/install-deps.sh
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)" --target vexcli vex

"$BUILD/src/vexcli" init
"$BUILD/src/vexcli" show
