// The front end's state and clock commands, driven in-process through dispatch.
#include "frontend/wb_engine.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>

#include "board/move_text.h"

namespace torvy {
namespace {

class WBEngineTest : public ::testing::Test {
 protected:
  // Set-ups instead of "new" keep the large hash tables out of most tests.
  void setUp(const std::string& fen) {
    ASSERT_TRUE(engine->dispatch("setboard " + fen));
    out.str("");
  }
  Move parse(const char* text) {
    Move m = NoMove;
    EXPECT_TRUE(parseCoordinateMove(engine->player.board, text, m)) << text;
    return m;
  }

  std::ostringstream out;
  std::unique_ptr<WBEngine> engine = std::make_unique<WBEngine>(out, stdin);
};

TEST_F(WBEngineTest, LevelSetsTheTimeControl) {
  SearchClock& clock = engine->clock;
  EXPECT_TRUE(engine->dispatch("level 0 2:30 12"));
  EXPECT_EQ(clock.movesPerSession, 0u);
  EXPECT_EQ(clock.timePerSession, 15000u);
  EXPECT_EQ(clock.increment, 1200u);
  EXPECT_TRUE(engine->dispatch("level 40 5 0.5"));  // the increment's fraction is lost
  EXPECT_EQ(clock.movesPerSession, 40u);
  EXPECT_EQ(clock.timePerSession, 30000u);
  EXPECT_EQ(clock.increment, 0u);
  EXPECT_FALSE(engine->dispatch("level 20 1:2:3 7"));
  EXPECT_EQ(clock.movesPerSession, 40u);
  EXPECT_EQ(clock.increment, 0u);
  EXPECT_EQ(out.str(), "");
}

TEST_F(WBEngineTest, TimeCountsTheFullMovesOfTheRecord) {
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  EXPECT_TRUE(engine->dispatch("level 2 1 1"));
  EXPECT_TRUE(engine->dispatch("time 5000"));
  EXPECT_EQ(engine->clock.accumulated, 6000 + 100 - 5000);
  ASSERT_TRUE(engine->dispatch("usermove e2e4"));
  ASSERT_TRUE(engine->dispatch("usermove e8d8"));
  ASSERT_TRUE(engine->dispatch("usermove e1d1"));
  ASSERT_TRUE(engine->dispatch("usermove d8e8"));
  EXPECT_TRUE(engine->dispatch("time 5000"));  // full move 3 opens the second session
  EXPECT_EQ(engine->clock.accumulated, 12000 + 300 - 5000);
}

TEST_F(WBEngineTest, NewAndForceAndUserMovesHandTheSides) {
  ASSERT_TRUE(engine->dispatch("new"));
  EXPECT_EQ(engine->engineColor, Black);
  EXPECT_FALSE(engine->forceMode);
  engine->clock.startClock();
  ASSERT_TRUE(engine->dispatch("force"));
  EXPECT_EQ(engine->engineColor, NoColor);
  EXPECT_TRUE(engine->forceMode);
  EXPECT_FALSE(engine->clock.running);
  ASSERT_TRUE(engine->dispatch("usermove e2e4"));
  EXPECT_EQ(engine->engineColor, NoColor);  // force mode only records
  engine->forceMode = false;
  ASSERT_TRUE(engine->dispatch("usermove e7e5"));
  EXPECT_EQ(engine->engineColor, White);  // a user move hands the move to the engine

  engine->analyzeMode = true;
  ASSERT_TRUE(engine->dispatch("new"));
  EXPECT_EQ(engine->engineColor, White);
  EXPECT_FALSE(engine->clock.timeLimited);
  EXPECT_EQ(engine->player.gamePly, 0u);
}

TEST_F(WBEngineTest, SetBoardAndTakeBacksInAndOutOfAnalysis) {
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  EXPECT_EQ(engine->engineColor, NoColor);
  EXPECT_TRUE(engine->forceMode);
  engine->forceMode = false;
  engine->analyzeMode = true;
  ASSERT_TRUE(engine->dispatch("usermove e2e4"));
  EXPECT_EQ(engine->engineColor, Black);
  ASSERT_TRUE(engine->dispatch("undo"));
  EXPECT_EQ(engine->engineColor, White);  // analysis follows the side to move
  EXPECT_FALSE(engine->dispatch("setboard 4k3/8/8/8/8/8/4P3/4K3 x - - 0 1"));
  EXPECT_EQ(engine->engineColor, White);
  EXPECT_FALSE(engine->forceMode);  // analysis is not left for force mode
  EXPECT_TRUE(engine->boardChanged);
}

TEST_F(WBEngineTest, UserMoveIsRefusedWhenTheRecordIsFull) {
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  engine->player.gamePly = MaxGameMoves;
  EXPECT_FALSE(engine->dispatch("usermove e2e4"));
  EXPECT_EQ(out.str(), "Error (no room for another move in the game record): e2e4\n");
  EXPECT_EQ(engine->player.board.pieceOn[0x14], Pawn);
}

TEST_F(WBEngineTest, EngineMoveOffersTheDrawBeforeTheMove) {
  setUp("k7/8/8/8/8/8/8/KR6 w - - 99 80");
  engine->makeEngineMove(parse("b1b2"));
  const std::string expected =
      "offer draw\n"
      "# making engine move: b1b2\n"
      "move b1b2\n"
      "# k.......\n# ........\n# ........\n# ........\n# ........\n# ........\n# .R......\n# K.......\n#\n";
  EXPECT_EQ(out.str(), expected);
  EXPECT_FALSE(engine->gameOver);
}

TEST_F(WBEngineTest, EngineMoveThatEndsTheGame) {
  setUp("k7/8/1K6/8/8/8/8/7R w - - 0 1");
  engine->player.ponderMove = parse("h1h7");
  engine->autoMode = true;
  engine->makeEngineMove(parse("h1h8"));
  const std::string text = out.str();
  EXPECT_NE(text.find("move h1h8\n# ponder move: h1h7\n# k......R\n"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("#\n1-0 {White wins by checkmate}\n")) << text;
  EXPECT_TRUE(engine->gameOver);
  EXPECT_TRUE(engine->forceMode);
  EXPECT_EQ(engine->engineColor, Black);  // auto mode keeps following the side to move
}

}  // namespace
}  // namespace torvy
