#!/usr/bin/env bash
# Installs every Debian 12 package that the build, the tests and the tools need.
# Idempotent: packages already present are left alone; apt-get update runs once
# per call and only when something is missing.
set -euo pipefail

PACKAGES=(
  # toolchain
  build-essential cmake ninja-build pkg-config clang libclang-rt-14-dev ccache
  # Qt 6 as Debian ships it
  qt6-base-dev qt6-base-dev-tools qt6-serialport-dev qt6-l10n-tools qt6-translations-l10n
  libqt6sql6-sqlite libqt6sql6-psql libqt6sql6-odbc libqt6svg6
  # further libraries
  libzip-dev libcurl4-openssl-dev libpugixml-dev mdbtools-dev unixodbc-dev
  # tests
  googletest libgtest-dev postgresql odbc-postgresql sqlite3 fonts-noto-cjk
  xvfb xauth poppler-utils python3-openpyxl python3-pyftpdlib python3-xlsxwriter
  libreoffice-calc-nogui
  # printing: a CUPS server and its PDF printer for the tests of the print path
  cups cups-client printer-driver-cups-pdf
  # the Debian package: CPack's dependency list (dpkg-shlibdeps), its checks
  dpkg-dev lintian
)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#PACKAGES[@]} packages present"
  exit 0
fi

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
echo "install-deps: installing ${missing[*]}"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
