// The book inside the engine: asked on a clock before any search, never in analysis, switched
// by "book" and "nobook", moved by the bookFilePath option, and harmless when missing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "book/book_helpers.h"
#include "frontend/engine_process.h"

namespace torvy {
namespace {

// One move for the start position.
testing::Bytes startBook(const char* move) {
  return testing::encodeBook({{testing::StartKey, testing::bookMove(move), 1, 0}});
}

// What a run shows of the book: the moves played, and thinking lines before and after the first.
struct Play {
  std::vector<std::string> moves;
  bool thought = false;
  bool thoughtFirst = false;

  // The first move if no thinking line came before it: a book move.
  std::string bookMove() const { return moves.empty() || thoughtFirst ? "" : moves.front(); }
};

Play playOf(const testing::EngineOutput& run) {
  EXPECT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  Play play;
  for (const std::string& line : run.lines) {
    play.thought |= !line.empty() && line[0] >= '0' && line[0] <= '9';
    if (line.rfind("move ", 0) != 0) continue;
    if (play.moves.empty()) play.thoughtFirst = play.thought;
    play.moves.push_back(line.substr(5));
  }
  return play;
}

// The engine's folder holds a book that opens with e2e4.
class BookWiring : public ::testing::Test {
 protected:
  void SetUp() override { folder.write("book.bin", startBook("e2e4")); }
  Play play(const std::string& commands, const std::vector<std::string>& args = {}) {
    return playOf(testing::runEngine("xboard\n" + commands, args, std::chrono::seconds(60), folder.path()));
  }
  Play playScripted(const std::vector<testing::ScriptStep>& steps, const std::vector<std::string>& args = {}) {
    return playOf(testing::runEngineScripted(steps, args, std::chrono::seconds(60), folder.path()));
  }
  testing::ScratchFolder folder;
};

TEST_F(BookWiring, ABookMoveComesAtOnceBeforeAnySearch) {
  EXPECT_EQ(play("new\ngo\n").bookMove(), "e2e4");
  EXPECT_EQ(play("new\nnobook\nbook\nsd 1\ngo\n").bookMove(), "e2e4") << "a fixed depth is still on a clock";
}

// The helpers start beside thread 0's book and random moves and are stopped before the move is
// made; commands that don't stop a search arrive while one runs. The race-checking build runs it.
TEST_F(BookWiring, HelpersRunBesideBookAndRandomMovesAndCommandsDuringSearches) {
  const Play game = playScripted({{"xboard\nnew\nsd 3\ngo\n", 0, "move "},
                                  {"usermove e7e5\neval\nping 1\ntime 3000\nlevel 40 5 0\npost\neval\n", 0, "move "},
                                  {"new\nrandgame\ngo\n", 0, "move "}},
                                 {"-cores", "2"});
  EXPECT_EQ(game.bookMove(), "e2e4");
  EXPECT_EQ(game.moves.size(), 3u);
}

// Switched off, missing, damaged or without a legal move for the position, the book leaves the
// game to the search.
TEST_F(BookWiring, OtherwiseTheSearchPlays) {
  EXPECT_TRUE(play("new\nnobook\nsd 1\ngo\n").thoughtFirst);
  // Ten bytes hold no whole entry.
  for (const testing::Bytes& book : {testing::Bytes(10, 'x'), startBook("e2e5")}) {
    folder.write("book.bin", book);
    const Play game = play("sd 1\ngo\n");
    EXPECT_TRUE(game.thoughtFirst) << book.size() << " bytes";
    EXPECT_EQ(game.moves.size(), 1u);
  }
  std::filesystem::remove(folder.file("book.bin"));
  EXPECT_TRUE(play("sd 1\ngo\n").thoughtFirst);

  const Play analysis = playScripted({{"xboard\nanalyze\n", 0, "1 "}, {"exit\n"}});
  EXPECT_TRUE(analysis.thought) << "analysis never asks the book";
  EXPECT_TRUE(analysis.moves.empty());
}

TEST_F(BookWiring, ThePathOptionMovesTheBookBeforeAndAfterItsFirstUse) {
  folder.write("other.bin", startBook("d2d4"));
  EXPECT_EQ(play("option bookFilePath=other.bin\nnew\ngo\n").bookMove(), "d2d4");
  // The first move must land before "new" would stop its job.
  const Play games = playScripted({{"xboard\nnew\ngo\n", 0, "move "}, {"new\noption bookFilePath=other.bin\ngo\n"}});
  EXPECT_EQ(games.moves, (std::vector<std::string>{"e2e4", "d2d4"}));
  EXPECT_FALSE(games.thought);
}

// A random move wins over the book and needs no clock.
TEST_F(BookWiring, RandgamePlaysWithoutBookOrSearch) {
  const Play game = play("randgame\nsd 1\ngo\n");
  EXPECT_FALSE(game.thought);
  // rand runs from its fixed start-up seed here, as the book is never opened, and that
  // sequence does not begin with the book's move.
  EXPECT_NE(game.bookMove(), "");
  EXPECT_NE(game.bookMove(), "e2e4");
}

}  // namespace
}  // namespace torvy
