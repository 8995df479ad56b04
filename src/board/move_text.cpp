#include "board/move_text.h"

#include <cctype>
#include <cstring>

#include "board/movegen.h"

namespace torvy {

void moveToText(Move m, char (&buffer)[MoveTextSize]) {
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  buffer[0] = char('a' + fileOf(from));
  buffer[1] = char('1' + rankOf(from));
  buffer[2] = char('a' + fileOf(to));
  buffer[3] = char('1' + rankOf(to));
  buffer[4] = moveKind(m) == PromotionMove ? PieceLetters[promotionPiece(m)] : '\0';
  buffer[5] = '\0';
}

std::string moveToText(Move m) {
  char buffer[MoveTextSize];
  moveToText(m, buffer);
  return buffer;
}

bool parseCoordinateMove(Board_0x88& board, const char* text, Move& out) {
  if (std::strlen(text) < 4) return false;
  char lower[5];
  for (int i = 0; i < 5; ++i) lower[i] = char(std::tolower(static_cast<unsigned char>(text[i])));
  if (lower[0] < 'a' || lower[0] > 'h' || lower[2] < 'a' || lower[2] > 'h') return false;
  if (lower[1] < '1' || lower[1] > '8' || lower[3] < '1' || lower[3] > '8') return false;

  PieceType promoted = NoPiece;
  if (lower[4] != '\0') {
    const char* letter = std::strchr("nbrq", lower[4]);
    if (letter == nullptr) return false;
    promoted = PieceType(Knight + (letter - "nbrq"));
  }
  const Square88 from = makeSquare(lower[0] - 'a', lower[1] - '1');
  const Square88 to = makeSquare(lower[2] - 'a', lower[3] - '1');

  MoveList list;
  generateLegalMoves(board, list);
  for (std::uint32_t i = 0; i < list.count; ++i) {
    const Move m = list[i];
    const PieceType movePromotes = moveKind(m) == PromotionMove ? promotionPiece(m) : NoPiece;
    if (fromSquare(m) == from && toSquare(m) == to && movePromotes == promoted) {
      out = m;
      return true;
    }
  }
  return false;
}

}  // namespace torvy
