// The perft and divide drivers: the clock and table they use, and the board they must leave as
// they found it.
#include <gtest/gtest.h>

#include "../board/board_helpers.h"

namespace torvy::testing {
namespace {

constexpr const char* Kiwipete = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

class PerftDriver : public ::testing::Test {
 protected:
  template <class Driver>
  void run(Driver driver, Board_0x88& board, int depth) {
    std::ostringstream ignored;
    driver(board, table, 1, clock, depth, ignored);
  }

  PerftTable table;
  SearchClock clock;
};

// The reports and the table's reuse are in the perft_and_divide transcript.
TEST_F(PerftDriver, PerftStopsTheClockAndReplacesTheGameTime) {
  auto board = boardFrom(StartFen);
  clock.accumulated = 123456;
  clock.running = true;
  run(runPerft, *board, 1);
  EXPECT_FALSE(clock.running);
  EXPECT_LT(clock.accumulated, 123456);
  EXPECT_EQ(clock.searchStart, 0);
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
