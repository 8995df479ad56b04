#!/usr/bin/env bash
# Installs what is missing, builds the release engine and starts it on this terminal.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DTORVY_TESTS=OFF -DTORVY_BENCH=OFF > /dev/null
cmake --build build --target torvy
exec build/torvy "$@"
