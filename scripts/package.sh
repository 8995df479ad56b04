#!/usr/bin/env bash
# Builds the Debian package build-package/package/torvy_VERSION_amd64.deb from a release
# build of its own, without tests and benchmarks, and lints it where lintian is installed.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --package
cmake -S . -B build-package -G Ninja -DCMAKE_BUILD_TYPE=Release -DTORVY_TESTS=OFF -DTORVY_BENCH=OFF > /dev/null
cmake --build build-package --target package
for deb in build-package/package/torvy_*_amd64.deb; do
  if command -v lintian > /dev/null; then lintian "$deb"; fi
  echo "$deb"
done
