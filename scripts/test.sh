#!/usr/bin/env bash
# Installs what is missing, then builds and runs every test twice: in the release build and
# under AddressSanitizer with UndefinedBehaviorSanitizer; then the tests that run threads once
# more under ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --tests
# The real-book tests skip when the fixture cannot be had.
scripts/fetch-book-fixture.sh fixtures || echo "book fixture not available"

echo "== formatting"
scripts/check-format.sh

jobs=$(nproc)
run_suite() {
  local dir=$1 filter=$2; shift 2
  cmake -S . -B "$dir" -G Ninja "$@" > /dev/null
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" -R "$filter"
}

# Every test that starts the engine or runs threads of its own.
threaded='^(Protocol|BookWiring|WBEngineTest|RandomGames|SearchTest|InstalledTableProbeTest)'

echo "== release build"
run_suite build . -DCMAKE_BUILD_TYPE=Release
echo "== AddressSanitizer + UndefinedBehaviorSanitizer build"
UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
  run_suite build-asan . -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTORVY_SANITIZE=address,undefined -DTORVY_BENCH=OFF
echo "== ThreadSanitizer build, threaded tests"
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  run_suite build-tsan "$threaded" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTORVY_SANITIZE=thread -DTORVY_BENCH=OFF
