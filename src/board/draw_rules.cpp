#include "board/draw_rules.h"

namespace torvy {

namespace {

bool hasMajorOrPawn(const Board_0x88& board, Color c) {
  return board.pieceCount[c][Pawn] + board.pieceCount[c][Rook] + board.pieceCount[c][Queen] > 0;
}

// King against king, or king and one minor piece against a bare king, in either colour.
bool isInsufficientMaterial(const Board_0x88& board) {
  if (hasMajorOrPawn(board, White) || hasMajorOrPawn(board, Black)) return false;
  const int white = board.totalCount(White);
  const int black = board.totalCount(Black);
  return white <= 2 && (black == 1 || (white == 1 && black <= 2));
}

}  // namespace

bool drawStatus(Board_0x88& board, DrawCode& code) {
  if (board.halfmoveClock > 99) {
    code = FiftyMoveDraw;
    return true;
  }
  if (isInsufficientMaterial(board)) {
    code = InsufficientMaterialDraw;
    return true;
  }
  if (board.halfmoveClock > 3) {
    const int i = int(board.historyIndex);
    const int lowest = i - board.halfmoveClock > 0 ? i - board.halfmoveClock : 0;
    HistoryRecord& current = board.history[i];
    for (int j = i - 4; j >= lowest; j -= 2) {
      if (board.history[j].key != current.key) continue;
      current.repetitionCount = std::uint16_t(board.history[j].repetitionCount + 1);
      code = current.repetitionCount >= 2 ? RepetitionDraw : NoDrawCode;
      return true;
    }
  }
  code = NoDrawCode;
  return false;
}

bool isQuietMove(const Board_0x88& board, Move m) {
  const MoveKind kind = moveKind(m);
  return board.pieceOn[toSquare(m)] == NoPiece && (kind == NormalMove || kind == CastlingMove);
}

bool isPawnToSeventh(const Board_0x88& board, Move m) {
  return board.pieceOn[fromSquare(m)] == Pawn && relativeRank(board.sideToMove, toSquare(m)) == 6;
}

void updateKillers(Board_0x88& board, Move m) {
  if (!isQuietMove(board, m)) return;
  HistoryRecord& record = board.history[board.historyIndex];
  record.killer2 = record.killer1;
  record.killer1 = m;
}

}  // namespace torvy
