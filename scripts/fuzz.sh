#!/usr/bin/env bash
# Builds the FEN and move-text fuzzer with libFuzzer, AddressSanitizer and UBSan, and runs it.
# Usage: scripts/fuzz.sh [seconds, default 120] [extra libFuzzer flags...]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-120}
shift || true

out=build-fuzz
mkdir -p "$out/corpus"
sources=$(ls src/board/*.cpp src/search/search_clock.cpp src/search/move_selector.cpp src/diagnostics/perft.cpp)
clang++ -std=c++20 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -Isrc $sources tests/fuzz/fen_fuzz.cpp -o "$out/fen_fuzz"

# Seeds: positions that reach castling, en passant, promotions and checks.
seed() { printf '%s\n%s\n' "$2" "$3" > "$out/corpus/$1"; }
seed start 'rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1' 'e2e4 g1f3 e7e5 a1a1'
seed kiwipete 'r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1' 'e1g1 e1c1 d5e6'
seed enpassant 'rnbqkb1r/ppppp1pp/7n/4Pp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3' 'e5f6 E5F6'
seed promotion 'rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8' 'd7c8q d7c8n d7c8'
seed pins '8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -' 'e2e4 b4f4'

UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
  "$out/fen_fuzz" -max_total_time="$seconds" -max_len=256 -print_final_stats=1 -artifact_prefix="$out/" "$@" "$out/corpus"
