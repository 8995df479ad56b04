#include "tablebase/position_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <set>
#include <string>

#include "data_table.h"

namespace torvy {
namespace {

TEST(EndgameTableTest, HoldsEachEndgameOnceInOneColourArrangement) {
  std::array<int, 6> byMen{};
  for (const Endgame& endgame : Endgames) {
    ++byMen[endgame.name.size()];
    EXPECT_EQ(findEndgame(endgame.name), &endgame - Endgames.data()) << endgame.name << " listed twice";
    const std::size_t blackKing = endgame.name.find('k', 1);
    const std::string swapped =
        std::string(endgame.name.substr(blackKing)) + std::string(endgame.name.substr(0, blackKing));
    EXPECT_TRUE(swapped == endgame.name || findEndgame(swapped) == -1) << endgame.name << " and " << swapped;
  }
  EXPECT_EQ(byMen, (std::array<int, 6>{0, 0, 0, 5, 30, 110}));
  for (const char* unknown : {"kqqqkq", "", "kk"}) EXPECT_EQ(findEndgame(unknown), -1) << unknown;
}

// Rows of data/endgame_shapes.txt: an endgame and the pattern of its shape.
TEST(EndgameTableTest, ShapesFollowTheMen) {
  for (const testing::DataRow& row : testing::dataTable("endgame_shapes.txt")) {
    const int id = findEndgame(row[0]);
    ASSERT_GE(id, 0) << row[0];
    EXPECT_EQ(Shapes[std::size_t(Endgames[id].shape)].pattern, row[1]) << row[0];
  }
}

// A placement of an endgame's men in the order of its name.
struct Placement {
  std::array<TableSquare, 5> white{};
  std::array<TableSquare, 5> black{};
  int whiteCount = 0;
  int blackCount = 0;

  std::optional<std::uint32_t> index(EndgameShape shape) const {
    std::uint32_t result = 0;
    if (!positionToIndex(shape, white.data(), black.data(), result)) return std::nullopt;
    return result;
  }

  Placement transformed(int flips) const {
    Placement copy = *this;
    for (int i = 0; i < whiteCount; ++i) copy.white[i] = flipSquare(white[i], flips);
    for (int i = 0; i < blackCount; ++i) copy.black[i] = flipSquare(black[i], flips);
    return copy;
  }

  bool uses(TableSquare square) const {
    return std::count(white.begin(), white.begin() + whiteCount, square) ||
           std::count(black.begin(), black.begin() + blackCount, square);
  }
};

// A free square for a man: pawns stand on ranks 2 to 7.
TableSquare freeSquare(const Placement& p, char man, std::mt19937& random) {
  TableSquare square;
  do square = TableSquare(random() % 64);
  while (p.uses(square) || (man == 'p' && (square < 8 || square >= 56)));
  return square;
}

// A random placement with the kings apart.
Placement randomPlacement(std::string_view name, std::mt19937& random) {
  for (;;) {
    Placement p;
    const std::size_t blackKing = name.find('k', 1);
    for (std::size_t i = 0; i < name.size(); ++i) {
      const TableSquare square = freeSquare(p, name[i], random);
      (i < blackKing ? p.white[p.whiteCount++] : p.black[p.blackCount++]) = square;
    }
    const int files = int(p.white[0] % 8) - int(p.black[0] % 8);
    const int ranks = int(p.white[0] / 8) - int(p.black[0] / 8);
    if (std::abs(files) > 1 || std::abs(ranks) > 1) return p;
  }
}

constexpr bool onLongDiagonal(TableSquare s) { return s % 8 == s / 8; }

// Two like pawns that mirror each other: the anchor is then the queen-side pawn whichever way
// the board is turned, so the mirrored kings give the position a second number.
bool pawnsMirrorEachOther(std::string_view name, const Placement& p) {
  const std::size_t first = name.find('p');
  if (first == std::string_view::npos || name[first + 1] != 'p' || first + 1 >= name.find('k', 1)) return false;
  return (p.white[first] ^ 7) == p.white[first + 1];
}

// Moving the last man gives another index, unless a symmetry that leaves both kings in place
// could turn the one placement into the other.
void expectMovedManChangesTheIndex(const Endgame& endgame, Placement p, std::uint32_t index, std::mt19937& random) {
  for (int symmetry = 1; symmetry < 8; ++symmetry)
    if (flipSquare(p.white[0], symmetry) == p.white[0] && flipSquare(p.black[0], symmetry) == p.black[0]) return;
  TableSquare& man = p.blackCount > 1 ? p.black[p.blackCount - 1] : p.white[p.whiteCount - 1];
  const char letter = p.blackCount > 1 ? endgame.name.back() : endgame.name[std::size_t(p.whiteCount - 1)];
  man = freeSquare(p, letter, random);
  EXPECT_NE(p.index(endgame.shape), index) << endgame.name << " man moved to " << man;
}

// Symmetric positions share an index: the mirror for pawn endgames, all eight symmetries without
// pawns, except where the numbering itself is not canonical.
TEST(PositionIndexTest, StaysBelowMaxIndexRespectsSymmetryAndTellsPositionsApart) {
  std::mt19937 random(20261123);
  for (const Endgame& endgame : Endgames) {
    const bool pawns = endgame.name.find('p') != std::string_view::npos;
    for (int trial = 0; trial < 300; ++trial) {
      const Placement p = randomPlacement(endgame.name, random);
      const std::optional<std::uint32_t> index = p.index(endgame.shape);
      ASSERT_TRUE(index) << endgame.name;
      ASSERT_LT(*index, endgame.maxIndex) << endgame.name;
      expectMovedManChangesTheIndex(endgame, p, *index, random);

      const int flips = indexTables().flipTable[p.black[0]][p.white[0]];
      if (!pawns && onLongDiagonal(flipSquare(p.black[0], flips)) && onLongDiagonal(flipSquare(p.white[0], flips)))
        continue;
      if (pawnsMirrorEachOther(endgame.name, p)) continue;
      for (int symmetry = 1; symmetry < (pawns ? 2 : 8); ++symmetry)
        EXPECT_EQ(p.transformed(symmetry).index(endgame.shape), index) << endgame.name << " symmetry " << symmetry;
    }
  }
}

TEST(PositionIndexTest, LikeMenAreInterchangeableAndMenStandOnlyWhereTheyCan) {
  std::mt19937 random(7);
  for (const char* name : {"kqqk", "kqqqk", "kqrrk", "kppk", "kqppk", "kpppk", "kppkq", "kppkp", "kbbkp"}) {
    const Endgame& endgame = Endgames[findEndgame(name)];
    std::size_t first = 1;  // the first of White's two like men
    while (name[first] != name[first + 1]) ++first;
    for (int trial = 0; trial < 200; ++trial) {
      Placement p = randomPlacement(name, random);
      const std::optional<std::uint32_t> index = p.index(endgame.shape);
      std::swap(p.white[first], p.white[first + 1]);
      EXPECT_EQ(p.index(endgame.shape), index) << name;
      p.white[first] = p.white[first + 1];
      EXPECT_FALSE(p.index(endgame.shape)) << name << " with two men on one square";
    }
  }
  const TableSquare white[] = {4, 60}, black[] = {32};  // a pawn on e8
  std::uint32_t index = 0;
  EXPECT_FALSE(positionToIndex(EndgameShape::Kpk, white, black, index));
}

}  // namespace
}  // namespace torvy
