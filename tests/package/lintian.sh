#!/usr/bin/env bash
# Debian's own checks of the package: no error; what else it says is shown.
#   lintian.sh PACKAGE_DIR
set -euo pipefail
lintian --fail-on error --display-info "$(echo "$1"/vex_*.deb)"
