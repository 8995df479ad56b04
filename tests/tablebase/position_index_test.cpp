#include "tablebase/position_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>

namespace torvy {
namespace {

constexpr TableSquare E1 = 4, A5 = 32;

// A random placement of an endgame's men on distinct squares, pawns on ranks 2 to 7 and kings
// apart, in the order of its name.
struct Placement {
  std::array<TableSquare, 5> white{};
  std::array<TableSquare, 5> black{};
  int whiteCount = 0;
  int blackCount = 0;

  std::uint32_t index(EndgameShape shape, bool& exists) const {
    std::uint32_t result = 0;
    exists = positionToIndex(shape, white.data(), black.data(), result);
    return result;
  }

  Placement transformed(int flips) const {
    Placement copy = *this;
    for (int i = 0; i < whiteCount; ++i) copy.white[i] = flipSquare(white[i], flips);
    for (int i = 0; i < blackCount; ++i) copy.black[i] = flipSquare(black[i], flips);
    return copy;
  }
};

Placement randomPlacement(std::string_view name, std::mt19937& random) {
  for (;;) {
    Placement p;
    std::set<TableSquare> used;
    bool white = true;
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (i > 0 && name[i] == 'k') white = false;
      TableSquare square;
      do square = TableSquare(random() % 64);
      while (used.count(square) || (name[i] == 'p' && (square < 8 || square >= 56)));
      used.insert(square);
      (white ? p.white[p.whiteCount++] : p.black[p.blackCount++]) = square;
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

// Moving one man gives another index, unless a symmetry that leaves both kings in place could
// turn the one placement into the other.
void expectMovedManChangesTheIndex(const Endgame& endgame, Placement p, std::uint32_t index, std::mt19937& random) {
  for (int symmetry = 1; symmetry < 8; ++symmetry)
    if (flipSquare(p.white[0], symmetry) == p.white[0] && flipSquare(p.black[0], symmetry) == p.black[0]) return;
  const bool blackMan = p.blackCount > 1;
  TableSquare& man = blackMan ? p.black[p.blackCount - 1] : p.white[p.whiteCount - 1];
  const bool pawn = (blackMan ? endgame.name.back() : endgame.name[std::size_t(p.whiteCount - 1)]) == 'p';
  const std::set<TableSquare> used(p.white.begin(), p.white.begin() + p.whiteCount);
  TableSquare to;
  do to = TableSquare(random() % 64);
  while (used.count(to) || std::count(p.black.begin(), p.black.begin() + p.blackCount, to) ||
         (pawn && (to < 8 || to >= 56)));
  man = to;
  bool exists = false;
  EXPECT_NE(p.index(endgame.shape, exists), index) << endgame.name << " man moved to " << to;
}

// Symmetric positions share an index: the mirror for pawn endgames, all eight symmetries without
// pawns, except where the numbering itself is not canonical.
TEST(PositionIndexTest, StaysBelowMaxIndexRespectsSymmetryAndTellsPositionsApart) {
  std::mt19937 random(20261123);
  for (const Endgame& endgame : Endgames) {
    const bool pawns = endgame.name.find('p') != std::string_view::npos;
    for (int trial = 0; trial < 300; ++trial) {
      const Placement p = randomPlacement(endgame.name, random);
      bool exists = false;
      const std::uint32_t index = p.index(endgame.shape, exists);
      ASSERT_TRUE(exists) << endgame.name;
      ASSERT_LT(index, endgame.maxIndex) << endgame.name;
      expectMovedManChangesTheIndex(endgame, p, index, random);

      const IndexTables& t = indexTables();
      const int flips = t.flipTable[p.black[0]][p.white[0]];
      if (!pawns && onLongDiagonal(flipSquare(p.black[0], flips)) && onLongDiagonal(flipSquare(p.white[0], flips)))
        continue;
      if (pawnsMirrorEachOther(endgame.name, p)) continue;
      for (int symmetry = 1; symmetry < (pawns ? 2 : 8); ++symmetry) {
        bool mirroredExists = false;
        EXPECT_EQ(p.transformed(symmetry).index(endgame.shape, mirroredExists), index)
            << endgame.name << " symmetry " << symmetry;
      }
    }
  }
}

TEST(PositionIndexTest, LikeMenAreInterchangeableAndMayNotShareASquare) {
  std::mt19937 random(7);
  for (const char* name : {"kqqk", "kqqqk", "kqrrk", "kppk", "kqppk", "kpppk", "kppkq", "kppkp", "kbbkp"}) {
    const Endgame& endgame = Endgames[findEndgame(name)];
    std::size_t first = 1;  // the first of White's two like men
    while (name[first] != name[first + 1]) ++first;
    for (int trial = 0; trial < 200; ++trial) {
      Placement p = randomPlacement(name, random);
      bool exists = false;
      const std::uint32_t index = p.index(endgame.shape, exists);
      std::swap(p.white[first], p.white[first + 1]);
      bool swappedExists = false;
      EXPECT_EQ(p.index(endgame.shape, swappedExists), index) << name;
      p.white[first] = p.white[first + 1];
      EXPECT_FALSE((p.index(endgame.shape, swappedExists), swappedExists)) << name << " with two men on one square";
    }
  }
}

TEST(PositionIndexTest, PawnOffItsRanksHasNoIndex) {
  const TableSquare white[] = {E1, 60}, black[] = {A5};
  std::uint32_t index = 0;
  EXPECT_FALSE(positionToIndex(EndgameShape::Kpk, white, black, index));
}

}  // namespace
}  // namespace torvy
