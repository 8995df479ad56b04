#include <sstream>

#include "board_helpers.h"

namespace torvy {
namespace {

bool accepts(const std::string& fen) {
  Board_0x88 board;
  return setFromFen(board, fen.c_str());
}

TEST(Fen, StartPositionSetsUpEverything) {
  Board_0x88 board;
  setStartPosition(board);
  EXPECT_EQ(board.totalCount(White), 16);
  EXPECT_EQ(board.totalCount(Black), 16);
  EXPECT_EQ(board.castlingRights, 15);
  EXPECT_EQ(board.epSquare, NoSquare);
  EXPECT_EQ(board.sideToMove, White);
  EXPECT_EQ(board.key(), board.computeKey());
  EXPECT_EQ(board.lightKeys[board.lightIndex], board.key());
}

TEST(Fen, CountersAndFieldCounts) {
  const std::string cut = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
  EXPECT_TRUE(accepts(cut));
  EXPECT_FALSE(accepts(cut + " 0"));
  EXPECT_TRUE(accepts(cut + " 1"));
  EXPECT_FALSE(accepts(cut + " 12 0"));
  EXPECT_FALSE(accepts(cut + " -1 5"));
  EXPECT_FALSE(accepts(cut + " 12345 5"));
  EXPECT_TRUE(accepts(cut + " 12 " + std::string(5000, '0') + "1"));
  Board_0x88 board;
  ASSERT_TRUE(setFromFen(board, (cut + " 12 30").c_str()));
  EXPECT_EQ(board.halfmoveClock, 12);
  ASSERT_TRUE(setFromFen(board, (cut + " 1").c_str()));
  EXPECT_EQ(board.halfmoveClock, 0);
}

TEST(Fen, PlacementRules) {
  EXPECT_TRUE(accepts("8/8/8/8/8/8/8/8 w - - 0 1")) << "kings are not required";
  EXPECT_FALSE(accepts("8/8/8/8/8/8/8 w - - 0 1"));
  EXPECT_FALSE(accepts("8/8/8/8/8/8/8/8/8 w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K2 w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K4 w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4KR3 w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K2X w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K03 w - - 0 1"));
  EXPECT_FALSE(accepts(" 4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K3"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/4K3 x - - 0 1"));
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/8/3KK3 w - - 0 1")) << "a second king has no slot";
  EXPECT_FALSE(accepts("4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1")) << "a ninth pawn has no slot";
  EXPECT_FALSE(accepts("4k2R/8/8/8/8/8/8/4K3 w - - 0 1")) << "the side not to move is in check";
}

TEST(Fen, CastlingFieldOrderAndPieces) {
  EXPECT_FALSE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w qk - 0 1"));
  EXPECT_FALSE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w KK - 0 1"));
  EXPECT_FALSE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w K- - 0 1"));
  EXPECT_FALSE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w -K - 0 1"));
  EXPECT_TRUE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1"));
  EXPECT_TRUE(accepts("r3k2r/8/8/8/8/8/8/R3K2R w  - 0 1")) << "an empty field means no rights";
  Board_0x88 board;
  ASSERT_TRUE(setFromFen(board, "r3k3/8/8/8/8/8/8/4K2R w KQkq - 0 1"));
  EXPECT_EQ(board.castlingRights, WhiteKingSide | BlackQueenSide) << "rights without their rook are dropped";
  EXPECT_EQ(board.key(), board.computeKey());
}

TEST(Fen, EnPassantField) {
  EXPECT_FALSE(accepts("rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e3 0 2"));
  EXPECT_FALSE(accepts("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 2")) << "no pawn on e5";
  EXPECT_FALSE(accepts("rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e6x 0 2"));
  Board_0x88 noCapturer;
  ASSERT_TRUE(setFromFen(noCapturer, "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 2"));
  Board_0x88 dash;
  ASSERT_TRUE(setFromFen(dash, "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 2"));
  EXPECT_EQ(noCapturer.epSquare, NoSquare);
  EXPECT_EQ(noCapturer.key(), dash.key());
  Board_0x88 capturer;
  ASSERT_TRUE(setFromFen(capturer, "rnbqkbnr/pppp1ppp/8/3Pp3/8/8/PPP1PPPP/RNBQKBNR w KQkq e6 0 3"));
  EXPECT_EQ(capturer.epSquare, 0x54);
  EXPECT_EQ(capturer.key(), capturer.computeKey());
}

TEST(Fen, BoardPicture) {
  Board_0x88 board;
  setStartPosition(board);
  std::ostringstream out;
  printBoard(board, out);
  EXPECT_EQ(out.str(),
            "# rnbqkbnr\n# pppppppp\n# ........\n# ........\n# ........\n# ........\n# PPPPPPPP\n# RNBQKBNR\n#\n");
}

TEST(MoveText, ReadingAndWriting) {
  auto board = testing::boardFrom("r3k2r/1P6/8/8/8/8/8/R3K2R w KQkq - 0 1");
  Move m = NoMove;
  EXPECT_FALSE(parseCoordinateMove(*board, "b7b8", m)) << "a promotion needs its letter";
  ASSERT_TRUE(parseCoordinateMove(*board, "B7B8Q", m));
  EXPECT_EQ(moveToText(m), "b7b8q");
  ASSERT_TRUE(parseCoordinateMove(*board, "b7b8N", m));
  EXPECT_EQ(promotionPiece(m), Knight);
  EXPECT_FALSE(parseCoordinateMove(*board, "b7b8k", m));
  EXPECT_FALSE(parseCoordinateMove(*board, "e1e3", m));
  EXPECT_FALSE(parseCoordinateMove(*board, "i1e3", m));
  EXPECT_FALSE(parseCoordinateMove(*board, "e1", m));
  ASSERT_TRUE(parseCoordinateMove(*board, "e1g1", m));
  EXPECT_EQ(m, WhiteCastleKingSide);
  EXPECT_FALSE(parseCoordinateMove(*board, "a1a1", m));
  EXPECT_EQ(moveToText(NoMove), "a1a1");
  EXPECT_EQ(moveToText(BlackCastleQueenSide), "e8c8");
}

}  // namespace
}  // namespace torvy
