#include "board/board_helpers.h"
#include "book/book_key.h"

namespace torvy {
namespace {

// The test positions published with the Polyglot book format, the first being the start key,
// then two worked out by hand from the random table: the two kings (kinds 11 and 10) with Black
// to move, and with rooks and single rights. The en passant fields of the second and third
// published positions are not counted, since no pawn stands ready to capture; those of the fifth
// and eighth are. Positions reached by play have the fields of their FEN (see the board tests).
TEST(PolyglotKey, PublishedAndHandDerivedKeys) {
  const std::pair<const char*, Key> keys[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 0x463B96181691FC9C},
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", 0x823C9B50FD114196},
      {"rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2", 0x0756B94461C50FB0},
      {"rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 2", 0x662FAFB965DB29D4},
      {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", 0x22A48B5A8E47FF78},
      {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3", 0x652A607CA3F242C1},
      {"rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4", 0x00FDD303C946BDD9},
      {"rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3", 0x3C8123EA7B067637},
      {"rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4", 0x5C3F9B829B279560},
      {"4k3/8/8/8/8/8/8/4K3 b - - 0 1", 0xA6536BD038CC91CF},
      {"r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1", 0xA9B9EF726B8F1263},
  };
  for (const auto& [fen, key] : keys) EXPECT_EQ(polyglotKey(*testing::boardFrom(fen)), key) << fen;
}

}  // namespace
}  // namespace torvy
