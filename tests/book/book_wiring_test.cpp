// The book inside the engine: asked on a clock before any search, never in analysis, switched
// by "book" and "nobook", moved by the bookFilePath option, and harmless when missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "book/book_helpers.h"
#include "frontend/engine_folder.h"
#include "frontend/engine_process.h"

namespace torvy {
namespace {

using testing::bookMove;
using testing::encodeBook;
using testing::EngineFolder;

constexpr Key StartKey = 0x463B96181691FC9CULL;

// One move for the start position.
std::vector<unsigned char> startBook(const char* move) { return encodeBook({{StartKey, bookMove(move), 1, 0}}); }

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

class BookWiring : public ::testing::Test {
 protected:
  testing::EngineOutput play(const std::string& commands, const std::vector<std::string>& args = {}) {
    auto run = testing::runEngine("xboard\n" + commands, args, std::chrono::seconds(60), folder.path());
    EXPECT_FALSE(run.timedOut);
    EXPECT_EQ(run.exitCode, 0);
    return run;
  }
  EngineFolder folder;
};

TEST_F(BookWiring, ABookMoveComesAtOnceBeforeAnySearch) {
  folder.write("book.bin", startBook("e2e4"));
  EXPECT_EQ(bookMoveOf(play("new\ngo\n")), "e2e4");
  // With helpers too: they are stopped before the move is made.
  EXPECT_EQ(bookMoveOf(play("new\ngo\n", {"-cores", "2"})), "e2e4");
}

// The real book of the fixtures, if it was fetched, as the engine's book.bin.
TEST_F(BookWiring, TheRealBookOpensTheGameWithoutThinking) {
  const char* fixture = std::getenv("TORVY_BOOK_FIXTURE");
  const std::filesystem::path path =
      fixture ? std::filesystem::path(fixture)
              : std::filesystem::path(TORVY_TEST_DATA).parent_path().parent_path() / "fixtures" / "pychess_book.bin";
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "no real book at " << path;
  std::filesystem::copy_file(path, folder.file("book.bin"));
  const std::string first = bookMoveOf(play("new\nlevel 40 5 0\ngo\n"));
  EXPECT_EQ(first.size(), 4u) << "the engine thought before it moved";
}

TEST_F(BookWiring, NobookAndAFixedDepthSearchStillThinkOnAClock) {
  folder.write("book.bin", startBook("e2e4"));
  const auto run = play("new\nnobook\nsd 1\ngo\n");
  EXPECT_TRUE(thought(run));
  EXPECT_EQ(bookMoveOf(play("new\nnobook\nbook\nsd 1\ngo\n")), "e2e4");
}

TEST_F(BookWiring, AnalysisNeverAsksTheBook) {
  folder.write("book.bin", startBook("e2e4"));
  const auto run = testing::runEngineScripted({{"xboard\nanalyze\n", 0, "1 "}, {"exit\n"}}, {}, std::chrono::seconds(60),
                                              folder.path());
  EXPECT_TRUE(thought(run));
  EXPECT_TRUE(std::none_of(run.lines.begin(), run.lines.end(), [](const std::string& l) { return l.rfind("move ", 0) == 0; }));
}

TEST_F(BookWiring, ThePathOptionMovesTheBookBeforeAndAfterItsFirstUse) {
  folder.write("book.bin", startBook("e2e4"));
  folder.write("other.bin", startBook("d2d4"));
  EXPECT_EQ(bookMoveOf(play("option bookFilePath=other.bin\nnew\ngo\n")), "d2d4");
  // The first move must land before "new" would stop its job.
  const auto run = testing::runEngineScripted({{"xboard\nnew\ngo\n", 0, "move "}, {"new\noption bookFilePath=other.bin\ngo\n"}},
                                              {}, std::chrono::seconds(60), folder.path());
  std::vector<std::string> moves;
  for (const std::string& line : run.lines)
    if (line.rfind("move ", 0) == 0) moves.push_back(line.substr(5));
  EXPECT_EQ(moves, (std::vector<std::string>{"e2e4", "d2d4"}));
  EXPECT_FALSE(thought(run));
}

TEST_F(BookWiring, AMissingOrDamagedBookLeavesTheGameToTheSearch) {
  const auto missing = play("sd 1\ngo\n");
  EXPECT_TRUE(thought(missing));
  EXPECT_TRUE(std::any_of(missing.lines.begin(), missing.lines.end(), [](const std::string& l) { return l.rfind("move ", 0) == 0; }));
  folder.write("book.bin", std::string("not a book"));
  EXPECT_TRUE(thought(play("sd 1\ngo\n")));
  folder.write("book.bin", startBook("e2e5"));  // no such move
  EXPECT_TRUE(thought(play("sd 1\ngo\n")));
}

// A random move wins over the book and needs no clock.
TEST_F(BookWiring, RandgamePlaysWithoutBookOrSearch) {
  folder.write("book.bin", startBook("e2e4"));
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
