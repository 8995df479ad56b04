// The numbering of the positions in a Gaviota table: board symmetries, like men counted once,
// and one index function per endgame shape. The numbering is part of the file format.
#pragma once

#include <array>
#include <cstdint>

#include "tablebase/endgame_table.h"

namespace torvy {

// Square numbers here run a1 = 0, b1 = 1 ... h8 = 63.
using TableSquare = std::uint32_t;

constexpr int KingPairCount = 462;
constexpr int PairCount = 2016;
constexpr int TripleCount = 41664;
constexpr int PawnPairCount = 576;
constexpr int PawnPair48Count = 1128;
constexpr int PawnTripleCount = 8648;
constexpr std::int16_t Unset = -1;

constexpr int FlipFiles = 1;
constexpr int FlipRanks = 2;
constexpr int FlipDiagonal = 4;

struct IndexTables {
  std::array<std::array<std::int16_t, 64>, 64> kingPairIndex;  // [black king][white king]
  std::array<std::uint8_t, KingPairCount> blackKingOf;
  std::array<std::uint8_t, KingPairCount> whiteKingOf;
  std::array<std::array<std::uint8_t, 64>, 64> flipTable;  // [black king][white king]
  std::array<std::array<std::int16_t, 64>, 64> pairIndex;
  std::array<std::uint32_t, 64> tripleBase;                    // z over 3
  std::array<std::array<std::int16_t, 48>, 24> pawnPairIndex;  // [p24 of anchor][p48 of loose pawn]
  std::array<std::array<std::int16_t, 48>, 48> pawnPair48;
  std::array<std::array<std::array<std::int16_t, 48>, 48>, 48> pawnTriple48;
};

// Built at compile time, so they are there before any table is opened.
const IndexTables& indexTables();

// The men of a position in the order of its endgame's name, kings first and pawns last, one
// list per colour. Returns false when there is no such position in the table's numbering.
bool positionToIndex(EndgameShape shape, const TableSquare* white, const TableSquare* black, std::uint32_t& index);

// Applies flip bits to a square: files, then ranks, then the diagonal.
constexpr TableSquare flipSquare(TableSquare square, int flips) {
  if (flips & FlipFiles) square ^= 7;
  if (flips & FlipRanks) square ^= 56;
  if (flips & FlipDiagonal) square = (square >> 3) | ((square & 7) << 3);
  return square;
}

}  // namespace torvy
