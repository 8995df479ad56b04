#!/usr/bin/env bash
# Builds the release engine with profile-guided optimisation into build-pgo/torvy: an
# instrumented engine runs the bench and the self-test, and the second build uses its profile.
# The search is the same; only the layout of the code changes.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=build-pgo
rm -rf "$dir/pgo-profile"
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTORVY_TESTS=OFF -DTORVY_BENCH=OFF -DTORVY_PGO=generate "$@"
cmake --build "$dir" --target torvy
"$dir/torvy" bench > /dev/null
printf 'selftest\nquit\n' | "$dir/torvy" > /dev/null
cmake -S . -B "$dir" -DTORVY_PGO=use
cmake --build "$dir" --target torvy
"$dir/torvy" bench | tail -n 2
