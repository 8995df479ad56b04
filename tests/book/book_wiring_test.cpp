// The book inside the engine: asked on a clock before any search, never in analysis, switched
// by "book" and "nobook", moved by the bookFilePath option, and harmless when missing.
#include <gtest/gtest.h>

#include <algorithm>

#include "book/book_helpers.h"
#include "frontend/engine_process.h"

namespace torvy {
namespace {

// One move for the start position.
testing::Bytes startBook(const char* move) {
  return testing::encodeBook({{testing::StartKey, testing::bookMove(move), 1, 0}});
}

bool isThinkingLine(const std::string& line) { return !line.empty() && line[0] >= '0' && line[0] <= '9'; }

// The first "move " line, after no thinking line at all; empty if the engine thought first or
// never moved.
std::string bookMoveOf(const testing::EngineOutput& run) {
  for (const std::string& line : run.lines) {
    if (isThinkingLine(line)) return "";
    if (line.rfind("move ", 0) == 0) return line.substr(5);
  }
  return "";
}

bool thought(const testing::EngineOutput& run) { return std::any_of(run.lines.begin(), run.lines.end(), isThinkingLine); }

std::vector<std::string> movesOf(const testing::EngineOutput& run) {
  std::vector<std::string> moves;
  for (const std::string& line : run.lines)
    if (line.rfind("move ", 0) == 0) moves.push_back(line.substr(5));
  return moves;
}

// The engine's folder holds a book that opens with e2e4.
class BookWiring : public ::testing::Test {
 protected:
  void SetUp() override { folder.write("book.bin", startBook("e2e4")); }
  testing::EngineOutput play(const std::string& commands, const std::vector<std::string>& args = {}) {
    auto run = testing::runEngine("xboard\n" + commands, args, std::chrono::seconds(60), folder.path());
    EXPECT_FALSE(run.timedOut);
    EXPECT_EQ(run.exitCode, 0);
    return run;
  }
  testing::ScratchFolder folder;
};

TEST_F(BookWiring, ABookMoveComesAtOnceBeforeAnySearch) {
  EXPECT_EQ(bookMoveOf(play("new\ngo\n")), "e2e4");
  // With helpers too: they are stopped before the move is made.
  EXPECT_EQ(bookMoveOf(play("new\ngo\n", {"-cores", "2"})), "e2e4");
}

// The real book of the fixtures, if it was fetched, as the engine's book.bin.
TEST_F(BookWiring, TheRealBookOpensTheGameWithoutThinking) {
  const std::filesystem::path path = testing::realBookPath();
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "no real book at " << path;
  std::filesystem::copy_file(path, folder.file("book.bin"), std::filesystem::copy_options::overwrite_existing);
  const std::string first = bookMoveOf(play("new\nlevel 40 5 0\ngo\n"));
  EXPECT_EQ(first.size(), 4u) << "the engine thought before it moved";
}

TEST_F(BookWiring, NobookAndAFixedDepthSearchStillThinkOnAClock) {
  const auto run = play("new\nnobook\nsd 1\ngo\n");
  EXPECT_TRUE(thought(run));
  EXPECT_EQ(bookMoveOf(play("new\nnobook\nbook\nsd 1\ngo\n")), "e2e4");
}

TEST_F(BookWiring, AnalysisNeverAsksTheBook) {
  const auto run = testing::runEngineScripted({{"xboard\nanalyze\n", 0, "1 "}, {"exit\n"}}, {}, std::chrono::seconds(60),
                                              folder.path());
  EXPECT_TRUE(thought(run));
  EXPECT_TRUE(movesOf(run).empty());
}

TEST_F(BookWiring, ThePathOptionMovesTheBookBeforeAndAfterItsFirstUse) {
  folder.write("other.bin", startBook("d2d4"));
  EXPECT_EQ(bookMoveOf(play("option bookFilePath=other.bin\nnew\ngo\n")), "d2d4");
  // The first move must land before "new" would stop its job.
  const auto run = testing::runEngineScripted({{"xboard\nnew\ngo\n", 0, "move "}, {"new\noption bookFilePath=other.bin\ngo\n"}},
                                              {}, std::chrono::seconds(60), folder.path());
  EXPECT_EQ(movesOf(run), (std::vector<std::string>{"e2e4", "d2d4"}));
  EXPECT_FALSE(thought(run));
}

TEST_F(BookWiring, AMissingOrDamagedBookLeavesTheGameToTheSearch) {
  std::filesystem::remove(folder.file("book.bin"));
  const auto missing = play("sd 1\ngo\n");
  EXPECT_TRUE(thought(missing));
  EXPECT_EQ(movesOf(missing).size(), 1u);
  folder.write("book.bin", "not a book");
  EXPECT_TRUE(thought(play("sd 1\ngo\n")));
  folder.write("book.bin", startBook("e2e5"));  // no such move
  EXPECT_TRUE(thought(play("sd 1\ngo\n")));
}

// A random move wins over the book and needs no clock.
TEST_F(BookWiring, RandgamePlaysWithoutBookOrSearch) {
  const auto run = play("randgame\nsd 1\ngo\n");
  EXPECT_FALSE(thought(run));
  const std::string move = bookMoveOf(run);
  EXPECT_FALSE(move.empty());
  // rand runs from its fixed start-up seed here, as the book is never opened, and that
  // sequence does not begin with the book's move.
  EXPECT_NE(move, "e2e4");
}

}  // namespace
}  // namespace torvy
