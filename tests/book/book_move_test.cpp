#include "book/book_move.h"

#include "board/board_helpers.h"
#include "book_helpers.h"

namespace torvy {
namespace {

// A book move stores king-takes-rook castling, "a7a8" with a promotion field 1 (knight) to 4
// (queen); it must come out as our move of the position, or as none.
TEST(BookMove, DecodesToTheMoveOfThePosition) {
  constexpr const char* Castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
  constexpr const char* Promotion = "1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1";
  struct Case {
    const char* fen;
    const char* stored;
    unsigned promotion;
    const char* expected;  // our move text, "-" for the plain move of the stored squares, "" for none
  };
  const Case cases[] = {
      {Castling, "e1h1", 0, "e1g1"},
      {Castling, "e1g1", 0, "e1g1"},
      {Castling, "e1a1", 0, "e1c1"},
      {Castling, "e1c1", 0, "e1c1"},
      {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8h8", 0, "e8g8"},
      {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8a8", 0, "e8c8"},
      // No rook, a king that is not on e1, or an enemy rook in the corner: no castling.
      {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "e1g1", 0, "-"},
      {"3k4/8/8/8/8/8/8/4RK1R w - - 0 1", "e1h1", 0, "-"},
      {"4k3/8/8/8/8/8/8/4K2r w - - 0 1", "e1h1", 0, "-"},
      {StartFen, "e2e4", 0, "e2e4"},
      {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", "e5f6", 0, "e5f6"},
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1", "d7d5", 0, "d7d5"},
      {Promotion, "a7a8", 1, "a7a8n"},
      {Promotion, "a7a8", 2, "a7a8b"},
      {Promotion, "a7a8", 3, "a7a8r"},
      {Promotion, "a7a8", 4, "a7a8q"},
      {Promotion, "a7b8", 4, "a7b8q"},
      {Promotion, "a7a8", 5, ""},
      {Promotion, "a7a8", 7, ""},
  };
  for (const Case& c : cases) {
    auto board = testing::boardFrom(c.fen);
    const Move decoded = decodeBookMove(*board, testing::bookMove(c.stored, c.promotion));
    const std::string text = c.expected;
    const Move expected = text.empty() ? NoMove
                          : text == "-" ? makeNormalMove(makeSquare(c.stored[0] - 'a', c.stored[1] - '1'),
                                                         makeSquare(c.stored[2] - 'a', c.stored[3] - '1'))
                                        : testing::legalMove(*board, c.expected);
    EXPECT_EQ(decoded, expected) << c.stored << " field " << c.promotion << " in " << c.fen;
  }
}

}  // namespace
}  // namespace torvy
