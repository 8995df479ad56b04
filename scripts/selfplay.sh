#!/usr/bin/env bash
# Builds the release engine and the referee, then plays the engine against itself.
#   scripts/selfplay.sh [referee options...]
# e.g. scripts/selfplay.sh --games 200 --time 5 --inc 0.05 --concurrency 2
# Defaults: one game per opening and colour at 5 s + 0.05 s, two games at a time. Games with a
# fault or a time overrun leave their transcript in the folder named by --transcripts.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${TORVY_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release > /dev/null
cmake --build "$build" --target torvy referee
# The engines run in an empty folder, so no torvy.ini or book nearby changes them.
workdir=$(mktemp -d /tmp/torvy-selfplay-XXXXXX)
exec "$build/tools/referee" --engine "$PWD/$build/torvy" --openings tools/openings.txt --dir "$workdir" \
  --transcripts "$workdir/transcripts" --time 5 --inc 0.05 --concurrency 2 "$@"
