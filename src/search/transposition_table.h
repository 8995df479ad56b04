// Probe and store of the transposition table, with mate scores kept relative to the node.
#pragma once

#include "board/board.h"
#include "search/search_types.h"
#include "search/tt_entry.h"

namespace torvy {

// The fields of an entry's data word.
struct TTData {
  Move move = NoMove;
  std::int16_t score = 0;
  std::uint16_t bound = NoBound;
  std::uint8_t depth = 0;
  std::uint8_t age = 0;

  static TTData unpack(std::uint64_t word) {
    return TTData{Move(word), std::int16_t(word >> 16), std::uint16_t((word >> 32) & 0xFFFF), std::uint8_t(word >> 48),
                  std::uint8_t(word >> 56)};
  }
  std::uint64_t pack() const {
    return std::uint64_t(move) | std::uint64_t(std::uint16_t(score)) << 16 | std::uint64_t(bound) << 32 |
           std::uint64_t(depth) << 48 | std::uint64_t(age) << 56;
  }
};

// True when the entry cuts the node off; the entry's move, if any, reaches move either way.
bool probeTT(const Board_0x88& board, TranspositionTable& table, int alpha, int beta, int ply, int depth, int& score,
             Move& move, bool& found);

void storeTT(const Board_0x88& board, TranspositionTable& table, int lower, int upper, int alpha, int beta, int ply,
             int depth, int score, Move move);

}  // namespace torvy
