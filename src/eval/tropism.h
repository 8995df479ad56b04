// Tropism: what a man earns for bearing on the ring of squares round the enemy king, looked up
// by the plain 0x88 difference of the two squares, which is unique up to its sign.
#pragma once

#include <array>
#include <cstdint>

#include "board/bitboards.h"
#include "board/types.h"
#include "eval/packed_score.h"

namespace torvy {

namespace detail {

inline constexpr ScorePair tropismWeight[7] = {{0, 0}, {10, -4}, {13, -5}, {9, -3}, {15, -11}, {5, 41}, {18, 14}};

// The table's values, as runs of 0x88 differences between a man and the enemy king.
struct TropismRun {
  PieceType type;
  std::uint8_t first, last, value;
};
// clang-format off
inline constexpr TropismRun tropismRuns[] = {
    {Pawn, 1, 2, 1}, {Pawn, 14, 14, 1}, {Pawn, 16, 16, 2}, {Pawn, 18, 18, 1}, {Pawn, 30, 31, 1},
    {Pawn, 32, 32, 2}, {Pawn, 33, 34, 1}, {Pawn, 94, 95, 1}, {Pawn, 96, 96, 2}, {Pawn, 97, 98, 1},
    {Pawn, 110, 110, 1}, {Pawn, 112, 112, 1}, {Pawn, 114, 114, 1},
    {Knight, 1, 3, 2}, {Knight, 13, 14, 1}, {Knight, 15, 17, 2}, {Knight, 18, 19, 1}, {Knight, 29, 29, 1},
    {Knight, 30, 30, 2}, {Knight, 31, 31, 1}, {Knight, 32, 32, 2}, {Knight, 33, 33, 1}, {Knight, 34, 34, 2},
    {Knight, 35, 35, 1}, {Knight, 46, 47, 1}, {Knight, 48, 48, 2}, {Knight, 49, 50, 1},
    {Bishop, 1, 2, 3}, {Bishop, 13, 13, 1}, {Bishop, 14, 14, 2}, {Bishop, 15, 15, 1}, {Bishop, 16, 16, 3},
    {Bishop, 17, 17, 1}, {Bishop, 18, 18, 2}, {Bishop, 19, 19, 1}, {Bishop, 28, 29, 1}, {Bishop, 30, 31, 2},
    {Bishop, 32, 32, 3}, {Bishop, 33, 34, 2}, {Bishop, 35, 36, 1}, {Bishop, 43, 47, 1}, {Bishop, 49, 53, 1},
    {Bishop, 58, 62, 1}, {Bishop, 66, 70, 1}, {Bishop, 74, 77, 1}, {Bishop, 83, 86, 1}, {Bishop, 89, 92, 1},
    {Bishop, 100, 103, 1}, {Bishop, 105, 106, 1}, {Bishop, 118, 119, 1},
    {Rook, 1, 1, 3}, {Rook, 2, 2, 2}, {Rook, 3, 7, 1}, {Rook, 9, 13, 1}, {Rook, 14, 14, 2}, {Rook, 15, 17, 3},
    {Rook, 18, 18, 2}, {Rook, 19, 23, 1}, {Rook, 31, 33, 2}, {Rook, 47, 49, 1}, {Rook, 63, 65, 1},
    {Rook, 79, 81, 1}, {Rook, 95, 97, 1}, {Rook, 111, 113, 1},
    {Queen, 1, 1, 5}, {Queen, 2, 2, 4}, {Queen, 3, 7, 1}, {Queen, 9, 13, 1}, {Queen, 14, 15, 3},
    {Queen, 16, 16, 5}, {Queen, 17, 18, 3}, {Queen, 19, 23, 1}, {Queen, 28, 29, 1}, {Queen, 30, 30, 2},
    {Queen, 31, 31, 3}, {Queen, 32, 32, 4}, {Queen, 33, 33, 3}, {Queen, 34, 34, 2}, {Queen, 35, 36, 1},
    {Queen, 43, 53, 1}, {Queen, 58, 70, 1}, {Queen, 74, 77, 1}, {Queen, 79, 81, 1}, {Queen, 83, 86, 1},
    {Queen, 89, 92, 1}, {Queen, 95, 97, 1}, {Queen, 100, 103, 1}, {Queen, 105, 106, 1}, {Queen, 111, 113, 1},
    {Queen, 118, 119, 1},
    {King, 1, 1, 4}, {King, 2, 2, 3}, {King, 14, 15, 2}, {King, 16, 16, 4}, {King, 17, 18, 2},
    {King, 30, 30, 1}, {King, 31, 31, 2}, {King, 32, 32, 3}, {King, 33, 33, 2}, {King, 34, 34, 1},
};
// clang-format on

using TropismTable = std::array<std::array<std::uint8_t, 128>, 7>;

constexpr TropismTable makeTropismTable() {
  TropismTable table{};
  for (const TropismRun& run : tropismRuns)
    for (int d = run.first; d <= run.last; ++d) table[run.type][d] = run.value;
  return table;
}
inline constexpr TropismTable tropismTable = makeTropismTable();

// By type and the signed difference, offset by DifferenceOffset, in one flat array: with both
// signs in the table no absolute value needs taking, and a row pointer for the enemy king's
// square turns each man's lookup into one load.
constexpr int DifferenceOffset = 128;
constexpr int TropismRow = 2 * DifferenceOffset;
using TropismScores = std::array<PackedSum, 7 * TropismRow>;

constexpr TropismScores makeTropismScores() {
  TropismScores scores{};
  for (PieceType t = Pawn; t <= King; ++t)
    for (int d = 1 - DifferenceOffset; d < DifferenceOffset; ++d)
      scores[t * TropismRow + DifferenceOffset + d] =
          packedWeight(scaled(tropismWeight[t], tropismTable[t][d < 0 ? -d : d]));
  return scores;
}
inline constexpr TropismScores tropismScores = makeTropismScores();

// Where a pawn of the colour bears on the ring of a king on each Square64, with table value 1
// and 2. A pawn that has passed the king's rank bears on nothing.
struct PawnTropismMasks {
  Bitboard once;
  Bitboard twice;
};
using PawnTropismTable = std::array<std::array<PawnTropismMasks, 64>, 2>;

constexpr PawnTropismTable makePawnTropismTable() {
  PawnTropismTable table{};
  for (Color c : {White, Black})
    for (int king = 0; king < 64; ++king)
      for (int pawn = 8; pawn < 56; ++pawn) {
        const bool beyond = c == White ? pawn / 8 > king / 8 : pawn / 8 < king / 8;
        const int d = toSquare88(Square64(pawn)) - toSquare88(Square64(king));
        const int value = beyond ? 0 : tropismTable[Pawn][d < 0 ? -d : d];
        if (value == 1) table[c][king].once |= Bitboard(1) << pawn;
        if (value == 2) table[c][king].twice |= Bitboard(1) << pawn;
      }
  return table;
}
inline constexpr PawnTropismTable pawnTropismTable = makePawnTropismTable();

}  // namespace detail

// The tropism of the men of one colour against the enemy king.
class KingTropism {
 public:
  explicit KingTropism(Square88 enemyKing)
      : fromKing_(detail::tropismScores.data() + detail::DifferenceOffset - enemyKing) {}

  template <PieceType Type>
  PackedSum of(Square88 square) const {
    return fromKing_[Type * detail::TropismRow + square];
  }

 private:
  const PackedSum* fromKing_;  // the king's square already subtracted
};

// The tropism of all pawns of the colour at once.
inline ScorePair pawnTropism(Color c, Bitboard pawns, Square88 enemyKingSquare) {
  const detail::PawnTropismMasks& masks = detail::pawnTropismTable[c][toSquare64(enemyKingSquare)];
  const int value = countSquares(pawns & masks.once) + 2 * countSquares(pawns & masks.twice);
  return scaled(detail::tropismWeight[Pawn], value);
}

}  // namespace torvy
