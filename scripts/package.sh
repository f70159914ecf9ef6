#!/usr/bin/env bash
# Builds the Debian package from a Release build in build-pkg (no tests, no
# benchmarks) and prints its path: install it with "apt install ./vex_*.deb".
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=$PWD/build-pkg

bash scripts/install-deps.sh
# Debian's hardening flags (fortified functions, stack protector, read-only
# relocations bound at start); the optimisation stays Release's, and no
# debug information is made only to be stripped.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_MAINT_STRIP="-g -O2"
hardened_cxxflags="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
hardened_ldflags=$(dpkg-buildflags --get LDFLAGS)
# The install step takes what the build below made, without building "all"
# (which would add the benchmarks).
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVEX_BUILD_TESTS=OFF \
  -DCMAKE_SKIP_INSTALL_ALL_DEPENDENCY=ON "-DCMAKE_CXX_FLAGS=$hardened_cxxflags" \
  "-DCMAKE_EXE_LINKER_FLAGS=$hardened_ldflags"
nice -n 10 cmake --build "$BUILD" -j2 --target vex vexcli vex-analyzer vex_delivered_databases vex_package_documents
rm -f "$BUILD"/vex_*.deb
(cd "$BUILD" && cpack -G DEB)
ls "$BUILD"/vex_*.deb
