// The perft and divide drivers: their reports, the clock and table they use, and the board
// they must leave as they found it.
#include <gtest/gtest.h>

#include <regex>

#include "../board/board_helpers.h"

namespace torvy::testing {
namespace {

constexpr const char* Kiwipete = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

class PerftDriver : public ::testing::Test {
 protected:
  template <class Driver>
  std::vector<std::string> run(Driver driver, Board_0x88& board, int depth) {
    std::ostringstream out;
    driver(board, table, 1, clock, depth, out);
    return linesOf(out.str());
  }

  PerftTable table;
  SearchClock clock;
};

// The last five lines of a report; the perft driver puts "# " before the first four.
void expectReportTail(const std::vector<std::string>& lines, const std::string& prefix, std::uint64_t leaves,
                      std::uint64_t nodes) {
  ASSERT_GE(lines.size(), 5u);
  const std::vector<std::string> tail(lines.end() - 5, lines.end());
  EXPECT_EQ(tail[0], prefix + "Total leaves: " + std::to_string(leaves));
  EXPECT_EQ(tail[1], prefix + "Total nodes:  " + std::to_string(nodes));
  EXPECT_TRUE(std::regex_match(tail[2], std::regex(prefix + "Time elapsed: \\d+\\.\\d\\d s"))) << tail[2];
  EXPECT_TRUE(std::regex_match(tail[3], std::regex(prefix + "Nodes/second: \\d+"))) << tail[3];
  EXPECT_TRUE(std::regex_match(tail[4], std::regex("# perftHashFull%:  (100|\\d\\d?)(\\.\\d+)?"))) << tail[4];
}

TEST_F(PerftDriver, PerftReportsCreatesTheTableOnceAndCountsTheSameEachRun) {
  auto board = boardFrom(StartFen);
  clock.accumulated = 123456;
  clock.running = true;
  auto first = run(runPerft, *board, 1);
  ASSERT_EQ(first.size(), 6u);
  EXPECT_EQ(first[0], "# new size of Perft hash: 1 MB");
  expectReportTail(first, "# ", 20, 1);
  EXPECT_EQ(first[5], "# perftHashFull%:  0") << "depth 1 neither reads nor writes the table";
  EXPECT_FALSE(clock.running) << "perft stops the clock and replaces the game time";
  EXPECT_LT(clock.accumulated, 123456);
  EXPECT_EQ(clock.searchStart, 0);

  // 1 root, 20 nodes at depth 2 and 400 at depth 1: every call counts, and no position repeats.
  auto second = run(runPerft, *board, 3);
  ASSERT_EQ(second.size(), 5u) << "the table is made only once";
  expectReportTail(second, "# ", 8902, 421);
  EXPECT_NE(second[4], "# perftHashFull%:  0");

  // A table left full would cut the node count of a second run.
  auto kiwipete = boardFrom(Kiwipete);
  const auto once = run(runPerft, *kiwipete, 3);
  const auto again = run(runPerft, *kiwipete, 3);
  EXPECT_EQ(std::vector(once.begin(), once.begin() + 2), std::vector(again.begin(), again.begin() + 2));
}

TEST_F(PerftDriver, DividePrintsEachRootMoveWithThePerftOfItsChildThenTheReport) {
  auto mated = boardFrom("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
  auto none = run(runDivide, *mated, 2);
  EXPECT_EQ(none.size(), 6u) << "no moves: only the table line and the report";
  expectReportTail(none, "", 0, 1);

  auto board = boardFrom(Kiwipete);
  const auto lines = run(runDivide, *board, 3);
  const auto moves = legalMoveTexts(*board);
  ASSERT_EQ(lines.size(), moves.size() + 5);
  for (std::size_t i = 0; i < moves.size(); ++i) {
    auto child = boardFrom(Kiwipete);
    play(*child, {moves[i].c_str()});
    EXPECT_EQ(lines[i], moves[i] + " " + std::to_string(perftOf(*child, 2))) << "in generation order";
  }
  expectReportTail(lines, "", 97862, 1 + 48 + 2039);
}

// En passant, castling and promotions all get made and unmade below these roots, which were
// reached by play and then had their keys spoilt: the drivers rebuild the keys from the pieces.
TEST_F(PerftDriver, BothLeaveTheBoardAsTheyFoundItAndRebuildStaleKeys) {
  for (const char* fen : {Kiwipete, "rnbqkb1r/ppppp1pp/7n/4Pp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
                          "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8"}) {
    auto board = boardFrom(fen);
    play(*board, {"a2a3", "h8g8"});
    auto before = std::make_unique<Board_0x88>();
    *before = *board;
    before->lightKeys[before->lightIndex] = before->key();
    board->history[board->historyIndex].key ^= 0x5555;
    board->history[board->historyIndex].pawnKey ^= 0x5555;
    board->lightKeys[board->lightIndex] = 0;
    for (auto driver : {runPerft, runDivide}) {
      run(driver, *board, 3);
      expectSamePosition(*board, *before);
    }
  }
}

TEST(PerftTable, StaysExactWhenEveryPositionFightsForOneCluster) {
  // A size of 0 MB leaves a single cluster of four, so nearly every store replaces something.
  auto board = boardFrom(Kiwipete);
  PerftTable table;
  std::ostringstream ignored;
  preparePerftHash(table, 0, ignored);
  ASSERT_EQ(table.entryCount, 4u);
  std::uint64_t nodes = 0;
  EXPECT_EQ(perftFromRoot(nodes, *board, table, 4), 4085603u);
}

}  // namespace
}  // namespace torvy::testing
