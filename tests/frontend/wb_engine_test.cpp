// The clock commands, the full record, the engine move and the draw offers, driven in-process.
#include "frontend/wb_engine.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <tuple>

#include "board/board_helpers.h"

namespace torvy {
namespace {

class WBEngineTest : public ::testing::Test {
 protected:
  // Set-ups instead of "new" keep the large hash tables out of most tests.
  void setUp(const std::string& fen) {
    ASSERT_TRUE(engine->dispatch("setboard " + fen));
    out.str("");
  }
  Move parse(const char* text) { return testing::legalMove(engine->player.board, text); }
  // Each move is followed by the game-end test, as in the command loop; its draw test is
  // what counts the occurrences of a position.
  void play(std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      ASSERT_TRUE(engine->dispatch(std::string("usermove ") + text));
      EXPECT_FALSE(engine->player.checkGameEnd());
    }
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
  play({"e2e4", "e8d8", "e1d1", "d8e8"});
  EXPECT_TRUE(engine->dispatch("time 5000"));  // full move 3 opens the second session
  EXPECT_EQ(engine->clock.accumulated, 12000 + 300 - 5000);
}

// A set-up starts a record of its own; the clock's ply count goes on.
TEST_F(WBEngineTest, FullRecordRefusesMovesUntilASetUp) {
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  engine->player.gamePly = MaxGameMoves;
  EXPECT_FALSE(engine->dispatch("usermove e2e4"));
  EXPECT_FALSE(engine->dispatch("go"));
  EXPECT_EQ(out.str(), std::string(RecordFullError) + ": e2e4\n" + RecordFullError + "\n");
  EXPECT_EQ(engine->player.board.pieceOn[sq::e2], Pawn);
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  EXPECT_TRUE(engine->dispatch("usermove e2e4"));
  EXPECT_EQ(engine->player.gamePly, MaxGameMoves + 1);
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

TEST_F(WBEngineTest, DrawIsOfferedForTheThirdOccurrenceOnly) {
  ChessPlayer& player = engine->player;
  setUp(StartFen);
  play({"g1f3", "g8f6", "f3g1"});
  EXPECT_FALSE(player.shouldOfferDraw(parse("f6g8")));  // the start position's second occurrence
  play({"f6g8", "g1f3", "g8f6", "f3g1"});
  const Key before = player.board.key();
  const std::uint32_t historyIndex = player.board.historyIndex;
  EXPECT_TRUE(player.shouldOfferDraw(parse("f6g8")));
  EXPECT_FALSE(player.shouldOfferDraw(parse("e7e5")));
  EXPECT_EQ(player.board.key(), before);
  EXPECT_EQ(player.board.historyIndex, historyIndex);
  EXPECT_EQ(player.gamePly, 7u);
}

// A capture resets the count, and a draw by material is no reason to offer; a move that mates
// needs no offer, even on the hundredth half-move.
TEST_F(WBEngineTest, DrawIsOfferedWhenTheMoveReachesTheFiftyMoveRule) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"k7/8/8/8/8/8/8/KR6 w - - 99 80", "b1b2", true},
      {"k7/8/8/8/8/8/1n6/K7 w - - 99 80", "a1b2", false},
      {"k7/8/1K6/8/8/8/8/7R w - - 99 80", "h1h8", false},
  };
  for (const auto& [fen, move, offered] : cases) {
    setUp(fen);
    EXPECT_EQ(engine->player.shouldOfferDraw(parse(move)), offered) << fen;
  }
}

}  // namespace
}  // namespace torvy
