#include "tablebase/position_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <vector>

#include "tablebase/block_decoder.h"
#include "tablebase/table_fixtures.h"
#include "tablebase/tablebase_files.h"

namespace torvy {
namespace {

constexpr TableSquare A1 = 0, C1 = 2, E1 = 4, C3 = 18, A5 = 32;

// How many distinct numbers a table of int16 holds, and the largest.
template <class Table>
int distinctSetValues(const Table& table, int& largest) {
  const auto* first = reinterpret_cast<const std::int16_t*>(&table);
  std::set<int> values(first, first + sizeof(Table) / sizeof(std::int16_t));
  values.erase(Unset);
  largest = values.empty() ? -1 : *values.rbegin();
  return int(values.size());
}

TEST(IndexTablesTest, HaveTheirSizesAndFirstEntries) {
  const IndexTables& t = indexTables();
  int largest = 0;
  EXPECT_EQ(distinctSetValues(t.kingPairIndex, largest), KingPairCount);
  EXPECT_EQ(largest, KingPairCount - 1);
  EXPECT_EQ(t.blackKingOf[0], A1);
  EXPECT_EQ(t.whiteKingOf[0], C1);
  EXPECT_EQ(distinctSetValues(t.pairIndex, largest), PairCount);
  EXPECT_EQ(t.pairIndex[5][5], Unset);
  EXPECT_EQ(t.tripleBase[63] + 62 * 61 / 2 + 61, std::uint32_t(TripleCount - 1));
  EXPECT_EQ(distinctSetValues(t.pawnPairIndex, largest), PawnPairCount);
  EXPECT_EQ(largest, PawnPairCount - 1);
  EXPECT_EQ(distinctSetValues(t.pawnPair48, largest), PawnPair48Count);
  EXPECT_EQ(distinctSetValues(t.pawnTriple48, largest), PawnTripleCount);
  EXPECT_EQ(largest, PawnTripleCount - 1);
}

TEST(IndexTablesTest, BlackKingOnTheDiagonalLetsTheWhiteKingDecide) {
  const IndexTables& t = indexTables();
  EXPECT_EQ(t.flipTable[C3][A5], FlipDiagonal);
  EXPECT_EQ(t.flipTable[C3][E1], 0);
  EXPECT_EQ(t.flipTable[63 - C3][63 - A5], FlipFiles | FlipRanks | FlipDiagonal);
  for (int n = 0; n < KingPairCount; ++n)
    EXPECT_EQ(t.flipTable[t.blackKingOf[n]][t.whiteKingOf[n]], 0) << "canonical pairs stay put, pair " << n;
}

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

// Symmetric positions share an index: the mirror for pawn endgames, all eight symmetries without
// pawns, except where the numbering itself is not canonical.
TEST(PositionIndexTest, StaysBelowMaxIndexAndRespectsSymmetry) {
  std::mt19937 random(20261123);
  for (const Endgame& endgame : Endgames) {
    const bool pawns = endgame.name.find('p') != std::string_view::npos;
    for (int trial = 0; trial < 300; ++trial) {
      const Placement p = randomPlacement(endgame.name, random);
      bool exists = false;
      const std::uint32_t index = p.index(endgame.shape, exists);
      ASSERT_TRUE(exists) << endgame.name;
      ASSERT_LT(index, endgame.maxIndex) << endgame.name;

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

// In the real tables, a position with White to move is forbidden exactly when White's man gives
// check, so a wrong numbering shows at once.
class InstalledTableIndexTest : public test::InstalledTablesTest {
 protected:
  static std::vector<std::uint8_t> whiteToMoveValues(int id) {
    TablebaseFiles files;
    files.open({test::installedTableFolder(4).string()}, CompressionScheme::Lzma, 8, false);
    const std::uint32_t maxIndex = Endgames[id].maxIndex;
    std::vector<std::uint8_t> values;
    std::array<std::uint8_t, BlockBufferSize> compressed, decoded;
    for (std::uint32_t b = 0; b < blocksPerSide(maxIndex); ++b) {
      std::size_t size = 0;
      const std::uint32_t count = valuesInBlock(b * ValuesPerBlock, maxIndex);
      EXPECT_TRUE(files.readBlock(id, b, compressed, size));
      EXPECT_TRUE(decodeBlock(CompressionScheme::Lzma, BlockInput(compressed.data() + 1, size - 1), count, decoded));
      values.insert(values.end(), decoded.begin(), decoded.begin() + count);
    }
    return values;
  }
};

bool givesCheck(char piece, int from, int king, int blocker) {
  const int df = king % 8 - from % 8, dr = king / 8 - from / 8;
  if (piece == 'n') return (std::abs(df) == 1 && std::abs(dr) == 2) || (std::abs(df) == 2 && std::abs(dr) == 1);
  if (piece == 'p') return dr == 1 && std::abs(df) == 1;
  const bool diagonal = std::abs(df) == std::abs(dr), straight = df == 0 || dr == 0;
  if (!((diagonal && piece != 'r') || (straight && piece != 'b'))) return false;
  const int step = (df > 0) - (df < 0) + 8 * ((dr > 0) - (dr < 0));
  for (int s = from + step; s != king; s += step)
    if (s == blocker) return false;
  return true;
}

TEST_F(InstalledTableIndexTest, ForbiddenExactlyWhereTheSideNotToMoveIsInCheck) {
  constexpr std::uint8_t Forbidden = 3;
  for (const char* name : {"kqk", "krk", "kbk", "knk", "kpk"}) {
    const int id = findEndgame(name);
    const std::vector<std::uint8_t> values = whiteToMoveValues(id);
    ASSERT_EQ(values.size(), Endgames[id].maxIndex);
    int mismatches = 0;
    for (TableSquare wk = 0; wk < 64; ++wk)
      for (TableSquare bk = 0; bk < 64; ++bk)
        for (TableSquare man = 0; man < 64; ++man) {
          const int files = int(wk % 8) - int(bk % 8), ranks = int(wk / 8) - int(bk / 8);
          if (man == wk || man == bk || (std::abs(files) <= 1 && std::abs(ranks) <= 1)) continue;
          if (name[1] == 'p' && (man < 8 || man >= 56)) continue;
          const TableSquare white[] = {wk, man}, black[] = {bk};
          std::uint32_t index = 0;
          ASSERT_TRUE(positionToIndex(Endgames[id].shape, white, black, index));
          if ((values[index] == Forbidden) != givesCheck(name[1], int(man), int(bk), int(wk))) ++mismatches;
        }
    EXPECT_EQ(mismatches, 0) << name;
  }
}

}  // namespace
}  // namespace torvy
