// Legal move generation in a fixed order: slots ascending, steps in table order.
// Every move is tested on its way into the list: by its pin line, the check's squares and a
// test make, or the king-step shortcut.
#pragma once

#include <bit>
#include <cstddef>
#include <utility>

#include "board/attacks.h"
#include "board/slider_attacks.h"

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

// All legal moves of Us: en passant, then the pieces, then castling; check is the check state
// of Us, found here by the form without it.
template <Color Us>
void generateLegalMovesFor(Board_0x88& board, const CheckInfo& check, MoveList& list);
template <Color Us>
void generateLegalMovesFor(Board_0x88& board, MoveList& list);

// The same for the side to move, into a cleared list.
void generateLegalMoves(Board_0x88& board, MoveList& list);

// How many moves generateLegalMovesFor lists, counted without the list; check is the check
// state of Us.
template <Color Us>
std::uint32_t countLegalMoves(Board_0x88& board, const CheckInfo& check);

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
  // n moves that differ by stride each, as a slide's targets do: the room left is checked once.
  void addRun(Move first, int stride, std::size_t n) {
    if (n > MoveList::Capacity - count) n = MoveList::Capacity - count;
    for (std::size_t i = 0; i < n; ++i) entries[count++].word = std::uint32_t(first + int(i) * stride);
  }
};

// The same count without the moves, for perft's last ply: a slide's run is one addition.
struct MoveCounter {
  std::size_t count;

  void addMove(Move) {
    if (count < MoveList::Capacity) ++count;
  }
  void addRun(Move, int, std::size_t n) { count += n < MoveList::Capacity - count ? n : MoveList::Capacity - count; }
};

// What generation needs besides the board. The moves of a restricted piece, a pinned one or
// any in check, must end on the squares allowed to it, and in check pass the test make too.
// The helpers below are all inlined into generatePieceMovesInto, so that the sink's count and
// the rest of this record stay in registers through the whole list.
template <class Sink>
struct Generation {
  Board_0x88& board;
  Sink list;
  Bitboard occupied;
  Bitboard enemies;
  Bitboard restrictedPieces;
  bool inCheck;
  Bitboard evasionTargets;
  Bitboard allowed;  // for the piece at hand, when it is restricted
};

// In check, a piece other than the king answers only by taking the checker or stepping between
// it and the king; a move anywhere else would fail its test make, so it is not made at all.
template <Color Us>
inline Bitboard evasionTargets(const Board_0x88& board, const CheckInfo& check) {
  if (check.checkers == 0) return ~Bitboard(0);
  const Square88 k = board.kingSquare(Us);
  const int dir = rayDirection(k, check.square);
  return squareBit(check.square) | (dir == 0 ? 0 : squaresBetween(k, check.square, dir));
}

// Out of check, a pinned piece keeps its king covered exactly while it stays on the line of its
// pin, and nothing else about its move can uncover the king: that line replaces the test make.
template <Color Us>
inline Bitboard pinLine(const Board_0x88& board, Square88 pinned) {
  const Square88 k = board.kingSquare(Us);
  return rayMasks[rayDirection(k, pinned)][toSquare64(k)];
}

template <Color Us, class Sink>
[[gnu::always_inline]] inline void tryAdd(Generation<Sink>& gen, bool restricted, Move m) {
  if (!restricted || ((gen.allowed & squareBit(toSquare(m))) != 0 && (!gen.inCheck || isLegal<Us>(gen.board, m))))
    gen.list.addMove(m);
}

template <Color Us>
inline bool holdsEnemy(const Board_0x88& board, Square88 s) {
  return onBoard(s) && board.colorOn[s] == opposite(Us);
}

// Queen, knight, rook, bishop: the order the promotions are listed in.
constexpr PieceType promotionOrder[4] = {Queen, Knight, Rook, Bishop};

template <Color Us, bool CapturesOnly, class Sink>
[[gnu::always_inline]] inline void addPromotions(Generation<Sink>& gen, bool restricted, Square88 from) {
  auto addAll = [&](Square88 to) {
    if constexpr (CapturesOnly) {
      tryAdd<Us>(gen, restricted, makePromotion(from, to, Queen));
    } else {
      for (PieceType p : promotionOrder) tryAdd<Us>(gen, restricted, makePromotion(from, to, p));
    }
  };
  for (int d : pawnCaptureDeltas[Us])
    if (holdsEnemy<Us>(gen.board, from + d)) addAll(from + d);
  if (gen.board.pieceOn[from + pawnForward[Us]] == NoPiece) addAll(from + pawnForward[Us]);
}

template <Color Us, bool CapturesOnly, class Sink>
[[gnu::always_inline]] inline void addPawnMoves(Generation<Sink>& gen, bool restricted, Square88 from) {
  if (relativeRank(Us, from) == 6) return addPromotions<Us, CapturesOnly>(gen, restricted, from);
  // Most pawns have nothing to take: one mask test before the two squares are looked at.
  if ((captureReach[Us][Pawn][toSquare64(from)] & gen.enemies) != 0)
    for (int d : pawnCaptureDeltas[Us])
      if (holdsEnemy<Us>(gen.board, from + d)) tryAdd<Us>(gen, restricted, makeNormalMove(from, from + d));
  if constexpr (!CapturesOnly) {
    const Square88 one = from + pawnForward[Us];
    if (!onBoard(one) || gen.board.pieceOn[one] != NoPiece) return;
    tryAdd<Us>(gen, restricted, makeNormalMove(from, one));
    const Square88 two = one + pawnForward[Us];
    if (relativeRank(Us, from) == 1 && gen.board.pieceOn[two] == NoPiece)
      tryAdd<Us>(gen, restricted, makeNormalMove(from, two, true));
  }
}

// The king's steps are always tested, by the king-step shortcut, and never filtered by the
// evasion targets: the king answers a check by stepping anywhere safe.
template <Color Us, bool CapturesOnly, bool IsKing, class Sink>
[[gnu::always_inline]] inline void addSteps(Generation<Sink>& gen, bool restricted, Square88 from,
                                            const int (&deltas)[8]) {
  for (int d : deltas) {
    const Square88 to = from + d;
    // A capture needs an enemy there: one colour test instead of two.
    if (CapturesOnly ? !holdsEnemy<Us>(gen.board, to) : !onBoard(to) || gen.board.colorOn[to] == Us) continue;
    const Move m = makeNormalMove(from, to);
    if constexpr (IsKing) {
      if (isKingStepSafe<Us>(gen.board, from, to)) gen.list.addMove(m);
    } else {
      tryAdd<Us>(gen, restricted, m);
    }
  }
}

// One ray of a slide, its direction a constant. The nearest piece is one bit scan away instead
// of a walk over the empty squares, and the squares passed go into the list as one run whose
// moves lie a fixed stride apart; all of it on Square64 numbers, as moves hold them.
template <Color Us, bool CapturesOnly, int Dir, class Sink>
[[gnu::always_inline]] inline void addSlide(Generation<Sink>& gen, bool restricted, int from64) {
  const Bitboard ray = rayMasks[Dir][from64];
  const Bitboard hit = ray & gen.occupied;
  const int nearest = hit == 0 ? 0 : stepsUp(Dir) ? std::countr_zero(hit) : 63 - std::countl_zero(hit);
  if constexpr (!CapturesOnly) {
    // Going up the squares passed lie below the nearest piece's bit, going down above it.
    const Bitboard passed = hit == 0       ? ray
                            : stepsUp(Dir) ? ray & ((Bitboard(1) << nearest) - 1)
                                           : ray & (~Bitboard(1) << nearest);
    const int stride = square64Steps[Dir] << 6;  // the to-square sits in bits 6 to 11
    const Move first = Move(from64 + (from64 << 6) + stride);
    const std::size_t steps = std::size_t(std::popcount(passed));
    if (!restricted) {
      gen.list.addRun(first, stride, steps);
    } else {
      for (std::size_t i = 0; i < steps; ++i) tryAdd<Us>(gen, true, Move(first + int(i) * stride));
    }
  }
  if (hit != 0 && ((gen.enemies >> nearest) & 1) != 0) tryAdd<Us>(gen, restricted, Move(from64 | nearest << 6));
}

template <Color Us, bool CapturesOnly, const int (&Directions)[4], class Sink, std::size_t... I>
[[gnu::always_inline]] inline void addSlides(Generation<Sink>& gen, bool restricted, Square88 from,
                                             std::index_sequence<I...>) {
  (addSlide<Us, CapturesOnly, Directions[I]>(gen, restricted, toSquare64(from)), ...);
}

template <Color Us, bool CapturesOnly, class Sink>
[[gnu::always_inline]] inline void addPieceMoves(Generation<Sink>& gen, Square88 from, PieceType piece) {
  constexpr std::make_index_sequence<4> fourRays;
  if constexpr (CapturesOnly) {
    // Most pieces have nothing to take: one mask test instead of their steps and rays. A pawn
    // about to promote is looked at all the same, for its push.
    if ((captureReach[Us][piece][toSquare64(from)] & gen.enemies) == 0 &&
        (piece != Pawn || relativeRank(Us, from) != 6))
      return;
  }
  const bool restricted = ((gen.restrictedPieces >> toSquare64(from)) & 1) != 0;
  if (restricted) gen.allowed = gen.inCheck ? gen.evasionTargets : pinLine<Us>(gen.board, from);
  switch (piece) {
    case Pawn: addPawnMoves<Us, CapturesOnly>(gen, restricted, from); break;
    case Knight: addSteps<Us, CapturesOnly, false>(gen, restricted, from, knightDeltas); break;
    case Bishop: addSlides<Us, CapturesOnly, bishopDirections>(gen, restricted, from, fourRays); break;
    case Rook: addSlides<Us, CapturesOnly, rookDirections>(gen, restricted, from, fourRays); break;
    case Queen:
      addSlides<Us, CapturesOnly, rookDirections>(gen, restricted, from, fourRays);
      addSlides<Us, CapturesOnly, bishopDirections>(gen, restricted, from, fourRays);
      break;
    case King: addSteps<Us, CapturesOnly, true>(gen, true, from, kingDeltas); break;
    default: break;
  }
}

// Slots 0 to 7 hold one kind each (king, queen, rooks, bishops, knights), so only the shared
// slots, pawns and further pieces, read the piece off the board.
constexpr PieceType fixedSlotKinds[8] = {King, Queen, Rook, Rook, Bishop, Bishop, Knight, Knight};

// Appends to the sink, whose count it returns.
template <Color Us, bool CapturesOnly, class Sink>
inline std::size_t generatePieceMovesInto(Board_0x88& board, const PinInfo& pins, Sink sink) {
  // The king's steps are tested on their own; the other pieces only when restricted.
  const bool inCheck = pins.check.checkers != 0;
  Generation<Sink> gen{board,
                       sink,
                       board.occupiedSquares(),
                       board.occupied[opposite(Us)],
                       inCheck ? ~Bitboard(0) : pins.straightPinned | pins.diagonalPinned,
                       inCheck,
                       evasionTargets<Us>(board, pins.check),
                       ~Bitboard(0)};
  for (int slot = 0; slot < SlotCount; ++slot) {
    const Square88 from = board.pieceList[Us][slot];
    if (onBoard(from))
      addPieceMoves<Us, CapturesOnly>(gen, from, slot < SharedSlotsBegin ? fixedSlotKinds[slot] : board.pieceOn[from]);
  }
  return gen.list.count;
}

template <Color Us, bool CapturesOnly>
inline void generatePieceMoves(Board_0x88& board, const PinInfo& pins, MoveList& moves) {
  moves.count =
      std::uint32_t(generatePieceMovesInto<Us, CapturesOnly>(board, pins, MoveSink{moves.entries, moves.count}));
}

// The squares one rank ahead of the given ones, for Us; none past the last rank.
template <Color Us>
constexpr Bitboard oneRankAhead(Bitboard squares) {
  return Us == White ? squares << 8 : squares >> 8;
}

// Out of check a piece's moves are its targets less its own men, kept to its pin line when
// pinned, so perft's last ply counts them by population counts instead of move by move. The
// king's steps are each tested; a push to the last rank counts four promotions.
template <Color Us>
inline std::size_t countPieceMovesOutOfCheck(Board_0x88& board, const PinInfo& pins) {
  constexpr Color Them = opposite(Us);
  const Bitboard own = board.occupied[Us];
  const Bitboard all = own | board.occupied[Them];
  const Bitboard pinned = pins.straightPinned | pins.diagonalPinned;
  std::size_t count = 0;
  for (int slot = 1; slot < SlotCount; ++slot) {
    const Square88 from = board.pieceList[Us][slot];
    if (!onBoard(from)) continue;
    const int from64 = toSquare64(from);
    const PieceType piece = slot < SharedSlotsBegin ? fixedSlotKinds[slot] : board.pieceOn[from];
    Bitboard targets = 0;
    switch (piece) {
      case Pawn: {
        const Bitboard one = oneRankAhead<Us>(squareBit(from)) & ~all;
        const Bitboard two = relativeRank(Us, from) == 1 ? oneRankAhead<Us>(one) & ~all : 0;
        targets = (captureReach[Us][Pawn][from64] & board.occupied[Them]) | one | two;
        break;
      }
      case Knight: targets = captureReach[Us][Knight][from64] & ~own; break;
      case Bishop: targets = bishopAttacks(from, all) & ~own; break;
      case Rook: targets = rookAttacks(from, all) & ~own; break;
      case Queen: targets = (bishopAttacks(from, all) | rookAttacks(from, all)) & ~own; break;
      default: break;
    }
    if ((pinned & squareBit(from)) != 0) targets &= pinLine<Us>(board, from);
    const bool promotes = piece == Pawn && relativeRank(Us, from) == 6;
    count += std::size_t(countSquares(targets)) * (promotes ? std::size(promotionOrder) : 1);
  }
  const Square88 king = board.kingSquare(Us);
  if (king != NoSquare)
    for (Bitboard steps = captureReach[Us][King][toSquare64(king)] & ~own; steps != 0; steps &= steps - 1)
      count += isKingStepSafe<Us>(board, king, toSquare88(Square64(std::countr_zero(steps)))) ? 1 : 0;
  return count;
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
inline std::uint32_t countLegalMoves(Board_0x88& board, const CheckInfo& check) {
  const PinInfo pins = computePinInfo<Us>(board, check);
  MoveList specials;
  generateEnPassant<Us>(board, specials);
  const std::size_t withPieces =
      check.checkers == 0 ? specials.count + detail::countPieceMovesOutOfCheck<Us>(board, pins)
                          : detail::generatePieceMovesInto<Us, false>(board, pins, detail::MoveCounter{specials.count});
  specials.count = 0;
  generateCastling<Us>(board, pins, specials);
  const std::size_t total = withPieces + specials.count;
  return std::uint32_t(total < MoveList::Capacity ? total : MoveList::Capacity);
}

template <Color Us>
inline void generateLegalMovesFor(Board_0x88& board, const CheckInfo& check, MoveList& list) {
  const PinInfo pins = computePinInfo<Us>(board, check);
  generateEnPassant<Us>(board, list);
  generateAllMoves<Us>(board, pins, list);
  generateCastling<Us>(board, pins, list);
}

template <Color Us>
inline void generateLegalMovesFor(Board_0x88& board, MoveList& list) {
  CheckInfo check;
  findCheck<Us>(board, check);
  generateLegalMovesFor<Us>(board, check, list);
}

}  // namespace torvy
