#include "search/chess_player.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "board/fen.h"
#include "board/move_text.h"

namespace torvy {
namespace {

class ChessPlayerTest : public ::testing::Test {
 protected:
  // No newGame: the tests need positions, not the large hash tables.
  void setUp(const char* fen) { ASSERT_TRUE(player->setPosition(fen)) << fen; }

  Move parse(const char* text) {
    Move m = NoMove;
    EXPECT_TRUE(parseCoordinateMove(player->board, text, m)) << text;
    return m;
  }
  // Each move is followed by the game-end test, as in the command loop; its draw test is
  // what counts the occurrences of a position.
  void play(std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      player->commitMove(parse(text));
      EXPECT_FALSE(player->checkGameEnd());
    }
  }

  SearchClock clock;
  std::ostringstream out;
  std::unique_ptr<ChessPlayer> player = std::make_unique<ChessPlayer>(clock, out);
};

TEST_F(ChessPlayerTest, TakeBackRestoresTheBoardAndRefusesTooMany) {
  setUp(StartFen);
  const Key start = player->board.key();
  play({"e2e4", "e7e5", "g1f3"});
  const Key afterTwo = [&] {
    Board_0x88 copy = player->board;
    return copy.history[copy.historyIndex - 1].key;
  }();
  EXPECT_FALSE(player->takeBack(4));
  EXPECT_EQ(player->gamePly, 3u);
  ASSERT_TRUE(player->takeBack(1));
  EXPECT_EQ(player->board.key(), afterTwo);
  ASSERT_TRUE(player->takeBack(2));
  EXPECT_EQ(player->gamePly, 0u);
  EXPECT_EQ(player->board.key(), start);
  EXPECT_EQ(player->board.sideToMove, White);
  EXPECT_FALSE(player->takeBack(1));
}

TEST_F(ChessPlayerTest, SetUpPositionIsTheLimitOfTakeBacks) {
  setUp(StartFen);
  play({"e2e4", "e7e5"});
  setUp("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  EXPECT_EQ(player->gamePly, 2u);  // the count runs on across a set-up
  EXPECT_FALSE(player->takeBack(1));
  play({"e2e4"});
  EXPECT_FALSE(player->takeBack(2));
  EXPECT_TRUE(player->takeBack(1));
  EXPECT_EQ(player->board.pieceOn[0x14], Pawn);  // e2
}

TEST_F(ChessPlayerTest, FailedSetUpKeepsTheGame) {
  setUp(StartFen);
  play({"d2d4"});
  const Key before = player->board.key();
  EXPECT_FALSE(player->setPosition("rnbqkbnr/pppppppp/8/8 w KQkq - 0 1"));
  EXPECT_FALSE(player->setPosition(""));
  EXPECT_EQ(player->board.key(), before);
  EXPECT_EQ(player->gamePly, 1u);
  EXPECT_TRUE(player->takeBack(1));  // the move before the failed set-up still goes back
  EXPECT_EQ(player->board.sideToMove, White);
}

TEST_F(ChessPlayerTest, GameEndLines) {
  struct Case {
    const char* fen;
    bool ended;
    const char* line;
  };
  const Case cases[] = {
      {"k7/1Q6/1K6/8/8/8/8/8 b - - 0 1", true, "1-0 {White wins by checkmate}\n"},
      {"k7/8/8/8/8/8/8/KN6 b - - 0 1", true, "1/2-1/2 {Draw by insufficient material}\n"},
      // The fifty-move rule and repetitions are for draw offers; the game goes on.
      {"k7/8/8/8/8/8/8/KR6 b - - 100 80", false, ""},
      {StartFen, false, ""},
  };
  for (const Case& c : cases) {
    setUp(c.fen);
    out.str("");
    EXPECT_EQ(player->checkGameEnd(), c.ended) << c.fen;
    EXPECT_EQ(out.str(), c.line) << c.fen;
  }
}

TEST_F(ChessPlayerTest, DrawIsOfferedForTheThirdOccurrenceOnly) {
  setUp(StartFen);
  play({"g1f3", "g8f6", "f3g1"});
  EXPECT_FALSE(player->shouldOfferDraw(parse("f6g8")));  // the start position's second occurrence
  play({"f6g8", "g1f3", "g8f6", "f3g1"});
  const Key before = player->board.key();
  const std::uint32_t historyIndex = player->board.historyIndex;
  EXPECT_TRUE(player->shouldOfferDraw(parse("f6g8")));
  EXPECT_FALSE(player->shouldOfferDraw(parse("e7e5")));
  EXPECT_EQ(player->board.key(), before);
  EXPECT_EQ(player->board.historyIndex, historyIndex);
  EXPECT_EQ(player->gamePly, 7u);
}

TEST_F(ChessPlayerTest, DrawIsOfferedWhenTheMoveReachesTheFiftyMoveRule) {
  setUp("k7/8/8/8/8/8/8/KR6 w - - 99 80");
  EXPECT_TRUE(player->shouldOfferDraw(parse("b1b2")));
  // A capture resets the count, and a draw by material is no reason to offer.
  setUp("k7/8/8/8/8/8/1n6/K7 w - - 99 80");
  EXPECT_FALSE(player->shouldOfferDraw(parse("a1b2")));
  // A move that mates needs no offer, even on the hundredth half-move.
  setUp("k7/8/1K6/8/8/8/8/7R w - - 99 80");
  EXPECT_FALSE(player->shouldOfferDraw(parse("h1h8")));
}

TEST_F(ChessPlayerTest, CoresAreClampedToTheHardware) {
  player->maxCores = 4;
  player->setCores(9);
  EXPECT_EQ(player->cores, 4u);
  EXPECT_EQ(out.str(), "# will now use 4 cores (requested=9, current=0, max=4)\n");
  player->setCores(2);
  EXPECT_EQ(player->cores, 2u);
}

}  // namespace
}  // namespace torvy
