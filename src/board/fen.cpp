#include "board/fen.h"

#include <cstdlib>
#include <cstring>

#include "board/attacks.h"

namespace torvy {

namespace {

constexpr const char* FenPieceLetters = "PNBRQKpnbrqk";

bool readPlacement(Board_0x88& board, const char*& p) {
  int rank = 7;
  int file = 0;
  if (*p == ' ') return false;
  for (;; ++p) {
    const char c = *p;
    if (c == ' ') {
      ++p;
      return rank == 0 && file == 8;
    }
    if (c >= '1' && c <= '8') {
      file += c - '0';
      if (file > 8) return false;
    } else if (c == '/') {
      if (file != 8 || rank == 0) return false;
      --rank;
      file = 0;
    } else {
      const char* letter = c == '\0' ? nullptr : std::strchr(FenPieceLetters, c);
      if (letter == nullptr || file >= 8) return false;
      const int index = int(letter - FenPieceLetters);
      if (!board.addPiece(makeSquare(file, rank), PieceType(index % 6 + 1), index < 6 ? White : Black)) return false;
      ++file;
    }
  }
}

bool readSide(Board_0x88& board, const char*& p) {
  if ((p[0] != 'w' && p[0] != 'b') || p[1] != ' ') return false;
  board.sideToMove = p[0] == 'w' ? White : Black;
  if (board.sideToMove == Black) board.history[0].key ^= keys.sideKey;
  p += 2;
  return true;
}

// A right counts only where its king and rook stand at home: generation and make trust the
// rights, and a right without its pieces would move whatever stands on the squares.
bool rightIsBorneOut(const Board_0x88& board, CastlingRights right) {
  const Color c = right <= WhiteQueenSide ? White : Black;
  const Square88 king = c == White ? sq::e1 : sq::e8;
  const Square88 rook = right == WhiteKingSide    ? sq::h1
                        : right == WhiteQueenSide ? sq::a1
                        : right == BlackKingSide  ? sq::h8
                                                  : sq::a8;
  return detail::holds(board, king, c, King) && detail::holds(board, rook, c, Rook);
}

bool readCastling(Board_0x88& board, const char*& p) {
  if (*p == ' ') {
    ++p;
    return true;
  }
  if (*p == '-') {
    if (p[1] != ' ') return false;
    p += 2;
    return true;
  }
  CastlingRights seen = NoCastlingRights;
  for (; *p != ' '; ++p) {
    CastlingRights right = NoCastlingRights;
    CastlingRights mustBeUnseen = NoCastlingRights;
    switch (*p) {
      case 'K': right = WhiteKingSide, mustBeUnseen = AllCastlingRights; break;
      case 'Q': right = WhiteQueenSide, mustBeUnseen = WhiteQueenSide | BlackKingSide | BlackQueenSide; break;
      case 'k': right = BlackKingSide, mustBeUnseen = BlackKingSide | BlackQueenSide; break;
      case 'q': right = BlackQueenSide, mustBeUnseen = BlackQueenSide; break;
      default: return false;
    }
    if (seen & mustBeUnseen) return false;
    seen |= right;
    if (rightIsBorneOut(board, right)) {
      board.castlingRights |= right;
      board.history[0].key ^= keys.castlingKeys[right];
    }
  }
  ++p;
  return true;
}

enum class FieldEnd { Failed, EndOfText, Blank };

FieldEnd readEnPassant(Board_0x88& board, const char*& p) {
  if (*p != '-') {
    if (p[0] < 'a' || p[0] > 'h' || p[1] < '1' || p[1] > '8') return FieldEnd::Failed;
    const Color us = board.sideToMove;
    const Square88 target = makeSquare(p[0] - 'a', p[1] - '1');
    if (rankOf(target) != (us == White ? 5 : 2)) return FieldEnd::Failed;
    const Square88 pawn = target - pawnForward[us];
    if (!detail::holds(board, pawn, opposite(us), Pawn)) return FieldEnd::Failed;
    const bool capturable = (fileOf(target) != 0 && detail::holds(board, pawn - 1, us, Pawn)) ||
                            (fileOf(target) != 7 && detail::holds(board, pawn + 1, us, Pawn));
    if (capturable) {
      board.epSquare = target;
      board.history[0].key ^= keys.enPassantKeys[fileOf(target)];
    }
    ++p;
  }
  ++p;
  if (*p == '\0') return FieldEnd::EndOfText;
  if (*p != ' ') return FieldEnd::Failed;
  ++p;
  return FieldEnd::Blank;
}

bool readCounters(Board_0x88& board, const char* rest) {
  const char* blank = std::strchr(rest, ' ');
  if (blank == nullptr) return std::atoi(rest) >= 1;
  if (blank - rest > 4) return false;
  const int halfmoves = std::atoi(rest);
  if (halfmoves < 0) return false;
  board.halfmoveClock = std::uint8_t(halfmoves);
  return std::atoi(blank + 1) >= 1;
}

}  // namespace

bool setFromFen(Board_0x88& board, const char* text) {
  initKeys();
  board.clear();
  const char* p = text;
  if (!readPlacement(board, p) || !readSide(board, p) || !readCastling(board, p)) return false;
  const FieldEnd end = readEnPassant(board, p);
  if (end == FieldEnd::Failed) return false;
  if (end == FieldEnd::Blank && !readCounters(board, p)) return false;
  board.lightKeys[board.lightIndex] = board.history[0].key;
  return true;
}

void setStartPosition(Board_0x88& board) { setFromFen(board, StartFen); }

void printBoard(const Board_0x88& board, std::ostream& out) {
  for (int rank = 7; rank >= 0; --rank) {
    char row[9] = {};
    for (int file = 0; file < 8; ++file) {
      const Square88 s = makeSquare(file, rank);
      const char letter = PieceLetters[board.pieceOn[s]];
      row[file] = board.colorOn[s] == White ? char(letter - 'a' + 'A') : letter;
    }
    out << "# " << row << '\n';
  }
  out << "#" << std::endl;
}

}  // namespace torvy
