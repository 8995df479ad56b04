// Attacks, checks and pins, found by walking the 0x88 board outward from a square.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "board/board.h"
#include "board/geometry.h"

namespace torvy {

// Zero means not in check. The scans stop at the first attacker, so a double check reads 1.
struct CheckInfo {
  std::uint16_t checkers = 0;
  Square88 square = NoSquare;
};

struct PinInfo {
  std::uint64_t straightPinned = 0;
  std::uint64_t diagonalPinned = 0;
  CheckInfo check;
};

inline bool isPinned(const PinInfo& pins, Square88 s) {
  return ((pins.straightPinned | pins.diagonalPinned) & squareBit(s)) != 0;
}

// The pin shortcut for a single stored move: it needs the test make when in check, by the
// king, by a pinned piece, or en passant (which can bare the king along the rank of both
// pawns). Generation narrows these further per piece (movegen.h).
inline bool pieceNeedsLegalityTest(const Board_0x88& board, Square88 from, const PinInfo& pins) {
  return pins.check.checkers != 0 || board.pieceOn[from] == King || isPinned(pins, from);
}

inline bool needsLegalityTest(const Board_0x88& board, Move m, const PinInfo& pins) {
  return pieceNeedsLegalityTest(board, fromSquare(m), pins) || moveKind(m) == EnPassantMove;
}

// Whether a piece of By attacks s; on true, info holds the attacker found first.
template <Color By>
bool isAttacked(const Board_0x88& board, Square88 s, CheckInfo& info);

// Whether the king of Us stands attacked; a side without a king is never in check.
template <Color Us>
bool isKingAttacked(const Board_0x88& board, CheckInfo& info);

// isKingAttacked with info cleared first: the check state of a node.
template <Color Us>
bool findCheck(const Board_0x88& board, CheckInfo& info);

// The pieces of Us pinned to their king along ranks and files, or along diagonals, as square bits.
template <Color Us>
std::uint64_t straightPins(const Board_0x88& board);
template <Color Us>
std::uint64_t diagonalPins(const Board_0x88& board);
template <Color Us>
PinInfo computePinInfo(const Board_0x88& board, const CheckInfo& check);

// Whether the move gives check, read before it is made; on true, info holds the checker.
template <Color Us>
bool givesCheck(Board_0x88& board, Move m, CheckInfo& info);

// Whether the king of Us may step from one square to the other without a test make.
template <Color Us>
bool isKingStepSafe(Board_0x88& board, Square88 from, Square88 to);

// Whether the move leaves the own king safe, by a test make (or the king-step shortcut).
template <Color Us>
bool isLegal(Board_0x88& board, Move m);

// isLegal, skipped for moves the pin shortcut clears.
template <Color Us>
bool isLegalWithPins(Board_0x88& board, Move m, const PinInfo& pins);

// Whether a stored move can be played here at all; it does not look at the own king.
template <Color Us>
bool isPseudoLegal(const Board_0x88& board, Move m);

// Whether the piece on the from-square can make this move at all: its step, its line with
// nothing in between, a pawn's push or capture. Castling is left to isPseudoLegal.
template <Color Us>
bool movesLikeItsPiece(const Board_0x88& board, Move m);

// Template bodies; callers need only the declarations above.
// ---------------------------------------------------------------------------

namespace detail {

inline bool holds(const Board_0x88& board, int s, Color c, PieceType t) {
  return onBoard(s) && board.pieceOn[s] == t && board.colorOn[s] == c;
}

inline bool isSliderOf(PieceType t, int sliderClass) {
  return t == Queen || t == (sliderClass == DiagonalSlider ? Bishop : Rook);
}

}  // namespace detail

namespace detail {

// The rays from s (bits of lineBits) on which a slider of By stands that moves along them. A
// ray without one can't end in an attacker, so isAttacked skips its walk. Slots 1 to 5 hold the
// queen, the rooks and the bishops and nothing else; the shared slots are read only when By has
// more sliders than those (after a promotion).
template <Color By>
inline std::uint16_t sliderRays(const Board_0x88& board, Square88 s) {
  const Square88* list = board.pieceList[By];
  const std::uint8_t* count = board.pieceCount[By];
  std::uint16_t rays = lineBits(s, list[1]) & (StraightRayBits | DiagonalRayBits);
  rays |= (lineBits(s, list[2]) | lineBits(s, list[3])) & StraightRayBits;
  rays |= (lineBits(s, list[4]) | lineBits(s, list[5])) & DiagonalRayBits;
  int inOwnSlots = 0;
  for (int slot = 1; slot <= 5; ++slot) inOwnSlots += onBoard(list[slot]) ? 1 : 0;
  if (count[Queen] + count[Rook] + count[Bishop] > inOwnSlots) {
    for (int slot = 8; slot < 16; ++slot) {
      const Square88 p = list[slot];
      if (!onBoard(p)) continue;
      const PieceType t = board.pieceOn[p];
      const std::uint16_t along = t == Queen    ? StraightRayBits | DiagonalRayBits
                                  : t == Rook   ? StraightRayBits
                                  : t == Bishop ? DiagonalRayBits
                                                : 0;
      rays |= lineBits(s, p) & along;
    }
  }
  return rays;
}

// The walks of isAttacked go against the table's deltas (-d), whose rays in rayDeltas are these.
constexpr std::uint16_t rookWalkRays[4] = {1 << 4, 1 << 6, 1 << 8, 1 << 2};
constexpr std::uint16_t bishopWalkRays[4] = {1 << 5, 1 << 7, 1 << 1, 1 << 3};

// The first occupied square from s along step d, or an off-board value.
inline int firstOccupied(const Board_0x88& board, int s, int d) {
  s += d;
  while (onBoard(s) && board.pieceOn[s] == NoPiece) s += d;
  return s;
}

// The nearest piece along the ray dir from s, if it is a slider of By moving along it.
template <Color By>
inline bool sliderOnRay(const Board_0x88& board, Bitboard occupied, Square88 s, int dir, Square88& t) {
  t = nearestOccupied(occupied, s, dir);
  return t != NoSquare && board.colorOn[t] == By && isSliderOf(board.pieceOn[t], raySliderClass[dir]);
}

}  // namespace detail

template <Color By>
inline bool isAttacked(const Board_0x88& board, Square88 s, CheckInfo& info) {
  auto found = [&](int attacker) {
    info.checkers = 1;
    info.square = Square88(attacker);
    return true;
  };
  // Kinds of piece that By has none of are not looked for; the order of the others stays.
  const std::uint8_t* count = board.pieceCount[By];
  for (int d : pawnCaptureDeltas[By])
    if (detail::holds(board, s - d, By, Pawn)) return found(s - d);
  // The king is looked for step by step only when it stands next to s at all.
  const bool kingNear = (lineBits(s, board.kingSquare(By)) & NearBit) != 0;
  if (kingNear || count[Knight] != 0) {
    for (int i = 0; i < 8; ++i) {
      if (detail::holds(board, s - knightDeltas[i], By, Knight)) return found(s - knightDeltas[i]);
      if (kingNear && detail::holds(board, s - kingDeltas[i], By, King)) return found(s - kingDeltas[i]);
    }
  }
  const std::uint16_t rays = detail::sliderRays<By>(board, s);
  if (rays == 0) return false;
  // Walked, not scanned: the rays from a square near the king mostly end a step or two away,
  // where a walk is shorter than a bit scan and its conversions.
  for (int i = 0; i < 4; ++i) {
    if (!(rays & detail::rookWalkRays[i])) continue;
    const int t = detail::firstOccupied(board, s, -rookDeltas[i]);
    if (onBoard(t) && board.colorOn[t] == By && (board.pieceOn[t] == Rook || board.pieceOn[t] == Queen))
      return found(t);
  }
  for (int i = 0; i < 4; ++i) {
    if (!(rays & detail::bishopWalkRays[i])) continue;
    const int t = detail::firstOccupied(board, s, -bishopDeltas[i]);
    if (onBoard(t) && board.colorOn[t] == By && (board.pieceOn[t] == Bishop || board.pieceOn[t] == Queen))
      return found(t);
  }
  return false;
}

// A side without a king is never in check; its missing square must not index the board.
template <Color Us>
inline bool isKingAttacked(const Board_0x88& board, CheckInfo& info) {
  const Square88 k = board.kingSquare(Us);
  return k != NoSquare && isAttacked<opposite(Us)>(board, k, info);
}

template <Color Us>
inline bool findCheck(const Board_0x88& board, CheckInfo& info) {
  info = CheckInfo{};
  return isKingAttacked<Us>(board, info);
}

// rays: the rays from the king with an enemy slider along them (detail::sliderRays); only
// these can hold a pin, so only these are walked.
template <Color Us>
inline std::uint64_t pinsAlong(const Board_0x88& board, const int (&directions)[4], std::uint16_t rays) {
  const Square88 k = board.kingSquare(Us);
  std::uint64_t pinned = 0;
  if (k == NoSquare) return pinned;
  const Bitboard occupied = board.occupiedSquares();
  for (int dir : directions) {
    if (!(rays & (1 << dir))) continue;
    const Square88 p = nearestOccupied(occupied, k, dir);
    Square88 t = NoSquare;
    if (p == NoSquare || board.colorOn[p] != Us) continue;
    if (detail::sliderOnRay<opposite(Us)>(board, occupied, p, dir, t)) pinned |= squareBit(p);
  }
  return pinned;
}

template <Color Us>
inline std::uint16_t raysToKing(const Board_0x88& board) {
  const Square88 k = board.kingSquare(Us);
  return k == NoSquare ? 0 : detail::sliderRays<opposite(Us)>(board, k);
}

template <Color Us>
inline std::uint64_t straightPins(const Board_0x88& board) {
  return pinsAlong<Us>(board, rookDirections, raysToKing<Us>(board));
}

template <Color Us>
inline std::uint64_t diagonalPins(const Board_0x88& board) {
  return pinsAlong<Us>(board, bishopDirections, raysToKing<Us>(board));
}

template <Color Us>
inline PinInfo computePinInfo(const Board_0x88& board, const CheckInfo& check) {
  const std::uint16_t rays = raysToKing<Us>(board);
  return PinInfo{pinsAlong<Us>(board, rookDirections, rays), pinsAlong<Us>(board, bishopDirections, rays), check};
}

namespace detail {

template <Color Us>
inline bool givesDirectOrDiscoveredCheck(const Board_0x88& board, Move m, Square88 k, CheckInfo& info) {
  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  const int fromDir = rayDirection(k, from);
  const int toDir = rayDirection(k, to);
  const PieceType piece = moveKind(m) == PromotionMove ? promotionPiece(m) : board.pieceOn[from];
  const Bitboard occupied = board.occupiedSquares();
  auto found = [&](Square88 checker) {
    info.checkers = 1;
    info.square = checker;
    return true;
  };

  if (piece == Pawn) {
    if (k == to + pawnCaptureDeltas[Us][0] || k == to + pawnCaptureDeltas[Us][1]) return found(to);
  } else if (piece == Knight) {
    for (int d : knightDeltas)
      if (to + d == k) return found(to);
  } else if (toDir != 0 && isSliderOf(piece, raySliderClass[toDir])) {
    // Only the ray from the target back toward the king can reach it.
    if (nearestOccupied(occupied, to, reverseDirection(toDir)) == k) return found(to);
  }

  if (fromDir == 0 || toDir == fromDir) return false;
  if (nearestOccupied(occupied, k, fromDir) != from) return false;
  Square88 behind = NoSquare;
  if (!sliderOnRay<Us>(board, occupied, from, fromDir, behind)) return false;
  return found(behind);
}

}  // namespace detail

// Checks that the move gives, read before the move is made: direct checks and discovered
// checks by walking from the enemy king. Those walks can't see the rook's check after
// castling, a discovery through the square of a pawn taken en passant, or a promoted piece's
// check through the square its pawn left; for these rare kinds a test make settles it, so that
// a side in check is always known to be in check.
template <Color Us>
inline bool givesCheck(Board_0x88& board, Move m, CheckInfo& info) {
  const Square88 k = board.kingSquare(opposite(Us));
  if (k == NoSquare) return false;
  if (detail::givesDirectOrDiscoveredCheck<Us>(board, m, k, info)) return true;
  if (moveKind(m) == NormalMove) return false;
  UndoRecord undo;
  board.makeMoveTest<Us>(m, undo);
  const bool check = isAttacked<Us>(board, k, info);
  board.unmakeMoveTest<Us>(m, undo);
  return check;
}

// A king's step needs no test make: with the king lifted off its square, a slider's line
// through that square reaches the target as it would after the move. isAttacked walks pieceOn
// alone, so the occupancy bits are left as they are.
template <Color Us>
inline bool isKingStepSafe(Board_0x88& board, Square88 from, Square88 to) {
  CheckInfo info;
  board.pieceOn[from] = NoPiece;
  const bool attacked = isAttacked<opposite(Us)>(board, to, info);
  board.pieceOn[from] = King;
  return !attacked;
}

template <Color Us>
inline bool isLegal(Board_0x88& board, Move m) {
  const Square88 from = fromSquare(m);
  if (moveKind(m) == NormalMove && board.pieceOn[from] == King) return isKingStepSafe<Us>(board, from, toSquare(m));
  UndoRecord undo;
  CheckInfo info;
  board.makeMoveTest<Us>(m, undo);
  const bool attacked = isKingAttacked<Us>(board, info);
  board.unmakeMoveTest<Us>(m, undo);
  return !attacked;
}

template <Color Us>
inline bool isLegalWithPins(Board_0x88& board, Move m, const PinInfo& pins) {
  return !needsLegalityTest(board, m, pins) || isLegal<Us>(board, m);
}

}  // namespace torvy
