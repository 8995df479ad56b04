// Leaf counts of published positions, each also from the other side's point of view: a fault
// in one colour's form of generation or make/unmake shows up as a difference between the two.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "board_helpers.h"

namespace torvy::testing {
namespace {

struct PublishedPerft {
  const char* name;
  const char* fen;
  std::vector<std::uint64_t> leavesByDepth;  // depth 1 first
};

void PrintTo(const PublishedPerft& p, std::ostream* os) { *os << p.name; }

const PublishedPerft publishedPositions[] = {
    {"RookEndingWithEnPassantPins", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", {14, 191, 2812, 43238, 674624}},
    {"PromotionsAndCastlingRights",
     "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
     {6, 264, 9467, 422333}},
    {"UnderpromotionWithKnightCheck",
     "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
     {44, 1486, 62379, 2103487}},
    {"SymmetricMiddleGame",
     "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
     {46, 2079, 89890}},
    {"EnPassantBaresKingOnRank", "3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1", {0, 0, 0, 0, 0, 1134888}},
    {"EnPassantBaresKingOnDiagonal", "8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1", {0, 0, 0, 0, 0, 1015133}},
    {"EnPassantCaptureGivesCheck", "8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1", {0, 0, 0, 0, 0, 1440467}},
    {"ShortCastlingGivesCheck", "5k2/8/8/8/8/8/8/4K2R w K - 0 1", {0, 0, 0, 0, 0, 661072}},
    {"LongCastlingGivesCheck", "3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", {0, 0, 0, 0, 0, 803711}},
    {"CastlingRightsLostByCaptures", "r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1", {0, 0, 0, 1274206}},
    {"CastlingThroughAndOutOfCheck", "r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq - 0 1", {0, 0, 0, 1720476}},
    {"PromotionOutOfCheck", "2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1", {0, 0, 0, 0, 0, 3821001}},
    {"DiscoveredChecks", "8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1", {0, 0, 0, 0, 1004658}},
    {"PromotionGivesCheck", "4k3/1P6/8/8/8/8/K7/8 w - - 0 1", {0, 0, 0, 0, 0, 217342}},
    {"UnderpromotionGivesCheck", "8/P1k5/K7/8/8/8/8/8 w - - 0 1", {0, 0, 0, 0, 0, 92683}},
    {"SelfStalemate", "K1k5/8/P7/8/8/8/8/8 w - - 0 1", {0, 0, 0, 0, 0, 2217}},
    {"StalemateAndCheckmateByPawn", "8/k1P5/8/1K6/8/8/8/8 w - - 0 1", {0, 0, 0, 0, 0, 0, 567584}},
    {"StalemateAndCheckmateByPieces", "8/8/2k5/5q2/5n2/8/5K2/8 b - - 0 1", {0, 0, 0, 23527}},
    {"TwoHundredEighteenMoves", "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1", {218}},
};

class PublishedPerftTest : public ::testing::TestWithParam<PublishedPerft> {};

// A zero stands for a depth whose count the sources do not give.
TEST_P(PublishedPerftTest, LeafCountsMatchForBothColours) {
  const PublishedPerft& p = GetParam();
  for (const std::string& fen : {std::string(p.fen), flippedFen(p.fen)}) {
    Board_0x88 board;
    ASSERT_TRUE(setFromFen(board, fen.c_str())) << fen;
    for (std::size_t i = 0; i < p.leavesByDepth.size(); ++i) {
      if (p.leavesByDepth[i] == 0) continue;
      EXPECT_EQ(perftOf(board, int(i + 1)), p.leavesByDepth[i]) << fen << " depth " << i + 1;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Board, PublishedPerftTest, ::testing::ValuesIn(publishedPositions),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace torvy::testing
