#include "board_helpers.h"
#include "data_table.h"

namespace torvy {
namespace {

TEST(Fen, AcceptsAndRefuses) {
  Board_0x88 board;
  for (const testing::DataRow& row : testing::dataTable("fen.txt"))
    EXPECT_EQ(setFromFen(board, row[0].c_str()), row[1] == "accepted") << row[0];
  // What a row of data/fen.txt cannot hold: a leading blank, and a clock of 5000 digits.
  EXPECT_FALSE(setFromFen(board, " 4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
  EXPECT_TRUE(setFromFen(board, ("4k3/8/8/8/8/8/8/4K3 w - - 12 " + std::string(5000, '0') + "1").c_str()));
}

TEST(Fen, SetsClockRightsAndEnPassantSquare) {
  auto board = testing::boardFrom("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 12 30");
  EXPECT_EQ(board->halfmoveClock, 12);
  EXPECT_EQ(board->lightKeys[board->lightIndex], board->key()) << "the light pair starts from the full key";
  board = testing::boardFrom("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 1");
  EXPECT_EQ(board->halfmoveClock, 0) << "a lone counter is the move number";
  board = testing::boardFrom("r3k3/8/8/8/8/8/8/4K2R w KQkq - 0 1");
  EXPECT_EQ(board->castlingRights, WhiteKingSide | BlackQueenSide) << "rights without their rook are dropped";
  EXPECT_EQ(board->key(), board->computeKey());
  // A square no pawn can take on is dropped, and the key is that of "-".
  auto noCapturer = testing::boardFrom("rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 2");
  EXPECT_EQ(noCapturer->epSquare, NoSquare);
  EXPECT_EQ(noCapturer->key(), testing::boardFrom("rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 2")->key());
  auto capturer = testing::boardFrom("rnbqkbnr/pppp1ppp/8/3Pp3/8/8/PPP1PPPP/RNBQKBNR w KQkq e6 0 3");
  EXPECT_EQ(capturer->epSquare, sq::e6);
  EXPECT_EQ(capturer->key(), capturer->computeKey());
}

TEST(MoveText, ReadingAndWriting) {
  auto board = testing::boardFrom("r3k2r/1P6/8/8/8/8/8/R3K2R w KQkq - 0 1");
  // A promotion needs its letter, in either case; castling is the king's two steps.
  for (const char* refused : {"b7b8", "b7b8k", "e1e3", "i1e3", "e1", "a1a1"}) {
    Move m = NoMove;
    EXPECT_FALSE(parseCoordinateMove(*board, refused, m)) << refused;
  }
  EXPECT_EQ(moveToText(testing::legalMove(*board, "B7B8Q")), "b7b8q");
  EXPECT_EQ(promotionPiece(testing::legalMove(*board, "b7b8N")), Knight);
  EXPECT_EQ(testing::legalMove(*board, "e1g1"), WhiteCastleKingSide);
  EXPECT_EQ(moveToText(NoMove), "a1a1");
  EXPECT_EQ(moveToText(BlackCastleQueenSide), "e8c8");
}

}  // namespace
}  // namespace torvy
