#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "board/fen.h"
#include "board/move_text.h"
#include "data_table.h"
#include "eval/evaluate.h"
#include "search/searcher.h"

namespace torvy {
namespace {

// Stands in for the player: the clock never runs out, and lines are kept for inspection.
class RecordingPlayer : public SearchInterface {
 public:
  bool checkTimeout() override { return false; }
  void printAnalysisLine(unsigned depth, int score, const PvLine& line) override {
    std::ostringstream text;
    text << depth << ' ' << score;
    for (std::uint16_t i = 0; i < line.count; ++i) text << ' ' << moveToText(line.moves[i]);
    lines.push_back(text.str());
  }
  void printSearchStats() override {}
  void printSearchNote(std::string_view line) override { notes.append(line).append("\n"); }

  std::vector<std::string> lines;
  std::string notes;
};

struct SearchResult {
  Move best = NoMove;
  Move ponder = NoMove;
  std::string output;
  std::vector<std::string> analysis;
};

class SearchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    initEvaluation();
    std::ostringstream sink;
    ttHash.resize(4, "TT hash", sink);
    pawnHash.resize(1, "Pawn hash", sink);
    clock.maxTime = 1000000;
  }

  SearchResult search(const char* fen, unsigned depth, bool timeLimited = true) {
    clock.depthLimited = true;
    clock.maxDepth = depth;
    clock.timeLimited = timeLimited;
    auto game = std::make_unique<Board_0x88>();
    EXPECT_TRUE(setFromFen(*game, fen)) << fen;
    auto searcher = std::make_unique<Searcher>(0, Searcher::Tables{&ttHash, &pawnHash, &tablebases, &clock, &player});
    if (stopBeforeStart) searcher->requestStop(true);
    SearchResult result;
    searcher->runSearch(*game, result.best, result.ponder);
    result.output = std::exchange(player.notes, "");
    result.analysis = player.lines;
    player.lines.clear();
    return result;
  }

  TranspositionTable ttHash;
  PawnHashTable pawnHash;
  TablebaseState tablebases;
  SearchClock clock;
  RecordingPlayer player;
  bool stopBeforeStart = false;  // a stop raised before the search begins, as a stop mid-search
};

// Mates and a single legal move end the search at once, with a comment that names the move: rows
// of data/announced_moves.txt.
TEST_F(SearchTest, MatesAndForcedMovesAreAnnounced) {
  for (const testing::DataRow& row : testing::dataTable("announced_moves.txt")) {
    const SearchResult result = search(row[0].c_str(), 10);
    EXPECT_NE(result.output.find(row[1] + " " + moveToText(result.best) + "\n"), std::string::npos) << result.output;
    if (row[2] != "-") {
      EXPECT_EQ(moveToText(result.best), row[2]) << row[0];
    }
  }
}

TEST_F(SearchTest, AnalysisAndStoppedSearchesGiveNoMove) {
  const SearchResult analysis = search(StartFen, 3, false);
  EXPECT_EQ(analysis.best, NoMove);
  EXPECT_FALSE(analysis.analysis.empty());

  stopBeforeStart = true;
  EXPECT_EQ(search(StartFen, 3).best, NoMove);
}

TEST_F(SearchTest, RootWithoutMovesReportsDepthZero) {
  const SearchResult mate = search("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", 5);
  EXPECT_EQ(mate.best, NoMove);
  ASSERT_EQ(mate.analysis.size(), 1u);
  EXPECT_EQ(mate.analysis[0], "0 -32000");
}

}  // namespace
}  // namespace torvy
