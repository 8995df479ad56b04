#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>

#include "eval/eval_report.h"
#include "eval/material.h"
#include "eval/packed_score.h"

#include "data_table.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

class EvaluateTest : public EvalFixture {};

TEST_F(EvaluateTest, ReferenceValuesWithFullWindow) {
  for (const testing::DataRow& row : testing::dataTable("evaluation.txt")) {
    // A cold and then a warm pawn hash must agree.
    EXPECT_EQ(score(row[0].c_str()), std::stoi(row[1])) << row[0];
    EXPECT_EQ(score(row[0].c_str()), std::stoi(row[1])) << row[0] << " (pawn hash hit)";
  }
}

// Terms that the evaluation books for White, by their names in the report.
TEST_F(EvaluateTest, TermsOfHandCheckedPositions) {
  const std::map<std::string, EvalTerm> names = {
      {"Rooks", EvalTerm::Rooks},          {"Knights", EvalTerm::Knights},
      {"Bishops", EvalTerm::Bishops},      {"King tropism", EvalTerm::KingTropism},
      {"Weak pawns", EvalTerm::WeakPawns}, {"Passed pawns", EvalTerm::PassedPawns}};
  for (const testing::DataRow& row : testing::dataTable("evaluation_terms.txt")) {
    const ScorePair term = terms(row[1].c_str()).term(names.at(row[0]), White);
    EXPECT_EQ(std::to_string(term.mg) + " " + std::to_string(term.eg), row[2]) << row[0] << ": " << row[1];
  }
}

// A knight behind against a pawn that runs keeps its negative score; the side that cannot win
// never scores above zero (rows of data/evaluation.txt).
TEST_F(EvaluateTest, SideThatCannotWinKeepsItsLosses) { EXPECT_LT(score("N7/8/8/8/8/8/p7/4K2k w - - 0 1"), 0); }

TEST_F(EvaluateTest, FiftyMoveScale) {
  const char* position = "r1bq1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R1BQ1RK1 w - - %d 1";
  char fen[100];
  auto atClock = [&](int clock, int alpha = -32000) {
    std::snprintf(fen, sizeof fen, position, clock);
    return score(fen, alpha);
  };
  EXPECT_EQ(atClock(0), 82);
  EXPECT_EQ(atClock(50), 82 * 75 / 100);
  EXPECT_EQ(atClock(99), 82 / 100);
  EXPECT_EQ(atClock(100), 0);
  EXPECT_EQ(atClock(120), 0);
  // Below a scale of 100 there is no lazy exit: a high alpha still gets the full value.
  EXPECT_EQ(atClock(50, 5000), 82 * 75 / 100);
}

TEST_F(EvaluateTest, LazyExitComparesWithTheBaseScore) {
  // Symmetric pawns and no pieces: phase 0 and a base score of 0.
  const char* fen = "4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1";
  EXPECT_EQ(score(fen, 200, 32000), 200);
  EXPECT_EQ(score(fen, -32000, -200), -200);
  EXPECT_EQ(pawnHash.cluster(board.pawnKey())->isEmpty(), true);
  EXPECT_EQ(score(fen, 199, 32000), 0);
  EXPECT_EQ(score(fen, -32000, -199), 0);
  EXPECT_EQ(pawnHash.cluster(board.pawnKey())->isEmpty(), false);
}

// Over random games: the colour-mirrored twin scores the same for its side to move, a narrow
// window gives a true bound or the exact value, and the report totals what evaluate returns.
TEST_F(EvaluateTest, MirroredTwinsWindowsAndReportAgree) {
  PawnHashTable otherHash;
  std::ostringstream sink;
  otherHash.resize(1, "Pawn hash", sink);
  Board_0x88 twin;
  std::mt19937 random(7);
  int positions = 0;
  playRandomGames(20, 1, [&](Board_0x88& b) {
    ++positions;
    const int full = evaluate(b, pawnHash, -32000, 32000);
    const MaterialInfo m = computeMaterial(b);
    // Without pawns a balance within 190 counts White as the weak side, so that is no mirror.
    const bool levelPawnless =
        m.pawns(White) + m.pawns(Black) == 0 && std::abs(taper(m.materialMg, m.materialEg, int(m.phase))) <= 190;
    setMirror(b, twin);
    if (!levelPawnless) {
      EXPECT_EQ(evaluate(twin, otherHash, -32000, 32000), full);
    }

    const int alpha = full - 250 + int(random() % 500);
    const int value = evaluate(b, pawnHash, alpha, alpha + 1);
    if (value <= alpha) {
      EXPECT_GE(value, full);
    } else {
      EXPECT_LE(value, full);
    }

    sink.str("");
    EXPECT_EQ(evaluationReport(b, pawnHash, sink), full);
  });
  EXPECT_GT(positions, 2000);
}

}  // namespace
}  // namespace torvy
