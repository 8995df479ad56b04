#include "board_helpers.h"

namespace torvy {
namespace {

TEST(Fen, AcceptsAndRefuses) {
  const std::string cut = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
  const std::string castling = "r3k2r/8/8/8/8/8/8/R3K2R w ";
  const std::string afterE5 = "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq ";
  const std::pair<std::string, bool> cases[] = {
      // Counters: both, the clock alone, or neither; the move number at least 1.
      {cut, true},
      {cut + " 1", true},
      {cut + " 0", false},
      {cut + " 12 0", false},
      {cut + " -1 5", false},
      {cut + " 12345 5", false},
      {cut + " 12 " + std::string(5000, '0') + "1", true},
      // Placement: eight ranks of eight squares; kings are not required.
      {"8/8/8/8/8/8/8/8 w - - 0 1", true},
      {"8/8/8/8/8/8/8 w - - 0 1", false},
      {"8/8/8/8/8/8/8/8/8 w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4K2 w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4K4 w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4KR3 w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4K2X w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4K03 w - - 0 1", false},
      {" 4k3/8/8/8/8/8/8/4K3 w - - 0 1", false},
      {"4k3/8/8/8/8/8/8/4K3", false},
      {"4k3/8/8/8/8/8/8/4K3 x - - 0 1", false},
      // No slot for a second king or a ninth pawn; the side not to move may be in check.
      {"4k3/8/8/8/8/8/8/3KK3 w - - 0 1", false},
      {"4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1", false},
      {"4k2R/8/8/8/8/8/8/4K3 w - - 0 1", true},
      // Castling rights in the order KQkq, each once; an empty field means none.
      {castling + "qk - 0 1", false},
      {castling + "KK - 0 1", false},
      {castling + "K- - 0 1", false},
      {castling + "-K - 0 1", false},
      {castling + "Kq - 0 1", true},
      {castling + " - 0 1", true},
      // En passant: a square behind a pawn that just moved two, for the right side.
      {afterE5 + "e3 0 2", false},
      {afterE5 + "e6x 0 2", false},
      {afterE5 + "e6 0 2", true},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 2", false},
  };
  for (const auto& [fen, accepted] : cases) {
    Board_0x88 board;
    EXPECT_EQ(setFromFen(board, fen.c_str()), accepted) << fen;
  }
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
