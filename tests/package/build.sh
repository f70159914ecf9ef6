#!/usr/bin/env bash
# Makes the Debian package of this build folder, alone in OUT.
#   build.sh CPACK CPACK_CONFIG OUT
set -euo pipefail
cpack=$1 config=$2 out=$3
rm -rf "$out"
"$cpack" -G DEB --config "$config" -B "$out"
ls "$out"/vex_*.deb
