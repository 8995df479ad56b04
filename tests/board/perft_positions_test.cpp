// Leaf counts of published positions, each also from the other side's point of view: a fault
// in one colour's form of generation or make/unmake shows up as a difference between the two.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "board_helpers.h"
#include "data_table.h"

namespace torvy::testing {
namespace {

// A row of data/perft.txt: a name, a FEN and the leaf counts from depth 1.
class PublishedPerftTest : public ::testing::TestWithParam<DataRow> {};

TEST_P(PublishedPerftTest, LeafCountsMatchForBothColours) {
  const std::string& fen = GetParam()[1];
  const std::vector<std::string> counts = split(GetParam()[2], ' ');
  for (const std::string& position : {fen, flippedFen(fen)}) {
    Board_0x88 board;
    ASSERT_TRUE(setFromFen(board, position.c_str())) << position;
    for (std::size_t depth = 1; depth <= counts.size(); ++depth) {
      if (counts[depth - 1] == "-") continue;
      EXPECT_EQ(perftOf(board, int(depth)), std::stoull(counts[depth - 1])) << position << " depth " << depth;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Board, PublishedPerftTest, ::testing::ValuesIn(dataTable("perft.txt")),
                         [](const auto& info) { return info.param[0]; });

}  // namespace
}  // namespace torvy::testing
