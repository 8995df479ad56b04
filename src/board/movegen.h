// Legal move generation in a fixed order: slots ascending, steps in table order.
// Every move passes the pin shortcut or a test make on its way into the list.
#pragma once

#include <cstddef>

#include "board/attacks.h"

namespace torvy {

// Each generator appends to the list, keeping what is there already.
// The en passant captures of Us.
template <Color Us>
void generateEnPassant(Board_0x88& board, MoveList& list);

// Every move of the pieces of Us but en passant and castling.
template <Color Us>
void generateAllMoves(Board_0x88& board, const PinInfo& pins, MoveList& list);

// The captures of Us and its promotions to a queen, en passant aside.
template <Color Us>
void generateCaptures(Board_0x88& board, const PinInfo& pins, MoveList& list);

// The castling moves of Us; none in check.
template <Color Us>
void generateCastling(Board_0x88& board, const PinInfo& pins, MoveList& list);

// All legal moves of Us: en passant, then the pieces, then castling.
template <Color Us>
void generateLegalMovesFor(Board_0x88& board, MoveList& list);

// The same for the side to move, into a cleared list.
void generateLegalMoves(Board_0x88& board, MoveList& list);

// Template bodies; callers need only the declarations above.
// ---------------------------------------------------------------------------

namespace detail {

// Where generation appends, the list's entries with a count of its own: a count of another
// type than the entries' words can't be overwritten by their stores, so it stays in a register
// instead of being reloaded for every move. Full, it drops further moves as the list does.
struct MoveSink {
  MoveEntry* entries;
  std::size_t count;

  void addMove(Move m) {
    if (count < MoveList::Capacity) entries[count++].word = m;
  }
};

// tested: the piece's moves need the test make (pieceNeedsLegalityTest).
template <Color Us>
inline void tryAdd(Board_0x88& board, bool tested, MoveSink& list, Move m) {
  if (!tested || isLegal<Us>(board, m)) list.addMove(m);
}

template <Color Us>
inline bool holdsEnemy(const Board_0x88& board, Square88 s) {
  return onBoard(s) && board.colorOn[s] == opposite(Us);
}

// Queen, knight, rook, bishop: the order the promotions are listed in.
constexpr PieceType promotionOrder[4] = {Queen, Knight, Rook, Bishop};

template <Color Us, bool CapturesOnly>
inline void addPromotions(Board_0x88& board, bool tested, MoveSink& list, Square88 from) {
  auto addAll = [&](Square88 to) {
    if constexpr (CapturesOnly) {
      tryAdd<Us>(board, tested, list, makePromotion(from, to, Queen));
    } else {
      for (PieceType p : promotionOrder) tryAdd<Us>(board, tested, list, makePromotion(from, to, p));
    }
  };
  for (int d : pawnCaptureDeltas[Us])
    if (holdsEnemy<Us>(board, from + d)) addAll(from + d);
  if (board.pieceOn[from + pawnForward[Us]] == NoPiece) addAll(from + pawnForward[Us]);
}

template <Color Us, bool CapturesOnly>
inline void addPawnMoves(Board_0x88& board, bool tested, MoveSink& list, Square88 from) {
  if (relativeRank(Us, from) == 6) return addPromotions<Us, CapturesOnly>(board, tested, list, from);
  for (int d : pawnCaptureDeltas[Us])
    if (holdsEnemy<Us>(board, from + d)) tryAdd<Us>(board, tested, list, makeNormalMove(from, from + d));
  if constexpr (!CapturesOnly) {
    const Square88 one = from + pawnForward[Us];
    if (!onBoard(one) || board.pieceOn[one] != NoPiece) return;
    tryAdd<Us>(board, tested, list, makeNormalMove(from, one));
    const Square88 two = one + pawnForward[Us];
    if (relativeRank(Us, from) == 1 && board.pieceOn[two] == NoPiece)
      tryAdd<Us>(board, tested, list, makeNormalMove(from, two, true));
  }
}

template <Color Us, bool CapturesOnly>
inline void addSteps(Board_0x88& board, bool tested, MoveSink& list, Square88 from, const int (&deltas)[8]) {
  for (int d : deltas) {
    const Square88 to = from + d;
    // A capture needs an enemy there: one colour test instead of two.
    if (CapturesOnly ? !holdsEnemy<Us>(board, to) : !onBoard(to) || board.colorOn[to] == Us) continue;
    tryAdd<Us>(board, tested, list, makeNormalMove(from, to));
  }
}

template <Color Us, bool CapturesOnly>
inline void addSlides(Board_0x88& board, bool tested, MoveSink& list, Square88 from, const int (&deltas)[4]) {
  for (int d : deltas) {
    Square88 to = from + d;
    for (; onBoard(to) && board.pieceOn[to] == NoPiece; to += d)
      if constexpr (!CapturesOnly) tryAdd<Us>(board, tested, list, makeNormalMove(from, to));
    if (onBoard(to) && board.colorOn[to] == opposite(Us)) tryAdd<Us>(board, tested, list, makeNormalMove(from, to));
  }
}

template <Color Us, bool CapturesOnly>
inline void generatePieceMoves(Board_0x88& board, const PinInfo& pins, MoveList& moves) {
  MoveSink list{moves.entries, moves.count};
  // pieceNeedsLegalityTest folded into one mask read per piece; the king's case sets it below.
  const std::uint64_t testedSquares =
      pins.check.checkers != 0 ? ~std::uint64_t(0) : pins.straightPinned | pins.diagonalPinned;
  for (Square88 from : board.pieceList[Us]) {
    if (!onBoard(from)) continue;
    const bool tested = ((testedSquares >> toSquare64(from)) & 1) != 0;
    switch (board.pieceOn[from]) {
      case Pawn: addPawnMoves<Us, CapturesOnly>(board, tested, list, from); break;
      case Knight: addSteps<Us, CapturesOnly>(board, tested, list, from, knightDeltas); break;
      case Bishop: addSlides<Us, CapturesOnly>(board, tested, list, from, bishopDeltas); break;
      case Rook: addSlides<Us, CapturesOnly>(board, tested, list, from, rookDeltas); break;
      case Queen:
        addSlides<Us, CapturesOnly>(board, tested, list, from, rookDeltas);
        addSlides<Us, CapturesOnly>(board, tested, list, from, bishopDeltas);
        break;
      case King: addSteps<Us, CapturesOnly>(board, true, list, from, kingDeltas); break;
      default: break;
    }
  }
  moves.count = std::uint32_t(list.count);
}

}  // namespace detail

template <Color Us>
inline void generateEnPassant(Board_0x88& board, MoveList& list) {
  const Square88 ep = board.epSquare;
  if (ep == NoSquare) return;
  for (int d : pawnCaptureDeltas[Us]) {
    const Square88 from = ep - d;
    if (detail::holds(board, from, Us, Pawn)) {
      const Move m = makeEnPassant(from, ep);
      if (isLegal<Us>(board, m)) list.addMove(m);
    }
  }
}

template <Color Us>
inline void generateAllMoves(Board_0x88& board, const PinInfo& pins, MoveList& list) {
  detail::generatePieceMoves<Us, false>(board, pins, list);
}

template <Color Us>
inline void generateCaptures(Board_0x88& board, const PinInfo& pins, MoveList& list) {
  detail::generatePieceMoves<Us, true>(board, pins, list);
}

template <Color Us>
inline void generateCastling(Board_0x88& board, const PinInfo& pins, MoveList& list) {
  if (pins.check.checkers != 0) return;
  struct Wing {
    CastlingRights right;
    Square88 empty[3];
    Square88 crossed;
    Move move;
  };
  constexpr Wing wings[2] = {
      Us == White ? Wing{WhiteKingSide, {sq::f1, sq::g1, sq::g1}, sq::f1, WhiteCastleKingSide}
                  : Wing{BlackKingSide, {sq::f8, sq::g8, sq::g8}, sq::f8, BlackCastleKingSide},
      Us == White ? Wing{WhiteQueenSide, {sq::d1, sq::c1, sq::b1}, sq::d1, WhiteCastleQueenSide}
                  : Wing{BlackQueenSide, {sq::d8, sq::c8, sq::b8}, sq::d8, BlackCastleQueenSide},
  };
  for (const Wing& wing : wings) {
    if (!(board.castlingRights & wing.right)) continue;
    if (board.pieceOn[wing.empty[0]] != NoPiece || board.pieceOn[wing.empty[1]] != NoPiece ||
        board.pieceOn[wing.empty[2]] != NoPiece)
      continue;
    CheckInfo info;
    if (isAttacked<opposite(Us)>(board, wing.crossed, info)) continue;
    if (isLegal<Us>(board, wing.move)) list.addMove(wing.move);
  }
}

template <Color Us>
inline void generateLegalMovesFor(Board_0x88& board, MoveList& list) {
  CheckInfo check;
  findCheck<Us>(board, check);
  const PinInfo pins = computePinInfo<Us>(board, check);
  generateEnPassant<Us>(board, list);
  generateAllMoves<Us>(board, pins, list);
  generateCastling<Us>(board, pins, list);
}

}  // namespace torvy
