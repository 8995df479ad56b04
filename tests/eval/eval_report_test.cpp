#include "eval/eval_report.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "board/board_helpers.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

const std::string Rule(78, '=');

class EvalReportTest : public EvalFixture {
 protected:
  std::vector<std::string> reportLines(const char* fen) {
    setUp(fen);
    std::ostringstream out;
    evaluationReport(board, pawnHash, out);
    return testing::linesOf(out.str());
  }
  // The numbers of a row, found by its label; the framing test shows the columns they stand in.
  static std::string row(const std::vector<std::string>& lines, const std::string& label) {
    for (const std::string& line : lines)
      if (line.compare(0, label.size(), label) == 0 && line[label.size()] == ' ')
        return line.substr(line.find_first_not_of(' ', label.size()));
    return "";
  }
};

TEST_F(EvalReportTest, FramingAndStartPosition) {
  const auto lines = reportLines("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
  ASSERT_EQ(lines.size(), 21u);
  EXPECT_EQ(lines[0], Rule);
  EXPECT_EQ(lines[1], "Evaluation part                    w-MG w-EG (wTot)   b-MG b-EG (bTot)   Total");
  EXPECT_EQ(lines[2], Rule);
  EXPECT_EQ(lines[3].substr(0, 8), "Material");
  EXPECT_EQ(lines[17], "Side to move                         24    0 (  24)      0    0 (   0)     24");
  EXPECT_EQ(lines[18], Rule);
  EXPECT_EQ(lines[19], "Phase =  24          Scaling factor = 1.00          Total evaluation =     24");
  EXPECT_EQ(lines[20], Rule);
  // Both colours stand on their mirrored squares.
  EXPECT_EQ(row(lines, "PST"), "364  148 ( 364)    364  148 ( 364)      0");
}

// The first report finds the pawns' terms by itself; the second takes the pawn hash's sum.
TEST_F(EvalReportTest, SecondCallReadsThePawnHash) {
  const char* fen = "7k/8/5p2/3P4/4P3/8/8/K7 b - - 0 1";
  const auto first = reportLines(fen);
  const auto second = reportLines(fen);
  EXPECT_EQ(row(first, "Weak pawns"), "-24  -13 ( -13)    -31  -13 ( -13)      0");
  EXPECT_EQ(row(first, "Pawn structure"), "0    0 (   0)      0    0 (   0)      0");
  EXPECT_EQ(row(second, "Weak pawns"), "0    0 (   0)      0    0 (   0)      0");
  EXPECT_EQ(row(second, "Pawn structure"), "7    0 (   0)      0    0 (   0)      0");
  EXPECT_EQ(first[19], second[19]);
}

TEST_F(EvalReportTest, ScaleAndPhaseLinesAndPawnlessRows) {
  const std::pair<const char*, const char*> cases[] = {
      {"8/5k2/8/8/3R4/2K5/5b2/8 w - - 0 1",
       "Phase =   3          Scaling factor = 0.25          Total evaluation =    201"},
      {"4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 b - - 50 1",
       "Phase =   0          Scaling factor = 0.75          Total evaluation =      0"},
      {"8/8/8/4k3/8/8/8/4K3 w - - 0 1",
       "Phase =   0          Scaling factor = 1.00          Total evaluation =      0"},
      // Black to move and behind: the total is turned to White's point of view.
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 1",
       "Phase =  24          Scaling factor = 1.00          Total evaluation =    127"},
  };
  for (const auto& [fen, summary] : cases) EXPECT_EQ(reportLines(fen)[19], summary) << fen;

  // Without pawns only the weak king's term is booked, in the columns of the side to move.
  const auto pawnless = reportLines(cases[0].first);
  EXPECT_EQ(row(pawnless, "PST"), "0    0 (   0)      0    0 (   0)      0");
  EXPECT_EQ(row(pawnless, "M: King edge dist"), "64   64 (  64)      0    0 (   0)     64");
}

}  // namespace
}  // namespace torvy
