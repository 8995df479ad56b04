// The three make/unmake pairs of Board_0x88, written once and instantiated by what they keep up:
// Full (everything), Light (pieces, rights and a key of its own, for perft), Test (pieces only).
#pragma once

#include "board/geometry.h"

namespace torvy {

namespace detail {

struct CastlingSquares {
  Square88 kingFrom, kingTo, rookFrom, rookTo;
};
constexpr CastlingSquares castlingSquares[4] = {
    {sq::e1, sq::g1, sq::h1, sq::f1},
    {sq::e1, sq::c1, sq::a1, sq::d1},
    {sq::e8, sq::g8, sq::h8, sq::f8},
    {sq::e8, sq::c8, sq::a8, sq::d8},
};

// The rights that survive a move from or to a square; squares alone decide, not pieces.
constexpr std::array<CastlingRights, 128> makeRightsKept() {
  std::array<CastlingRights, 128> kept{};
  for (auto& k : kept) k = 15;
  kept[sq::e1] = 15 & ~(WhiteKingSide | WhiteQueenSide);
  kept[sq::h1] = 15 & ~WhiteKingSide;
  kept[sq::a1] = 15 & ~WhiteQueenSide;
  kept[sq::e8] = 15 & ~(BlackKingSide | BlackQueenSide);
  kept[sq::h8] = 15 & ~BlackKingSide;
  kept[sq::a8] = 15 & ~BlackQueenSide;
  return kept;
}
constexpr std::array<CastlingRights, 128> rightsKept = makeRightsKept();

// A promotion clears rights by its to-square alone, and only on the corners.
constexpr CastlingRights cornerRightsKept(Square88 to) { return to == sq::e1 || to == sq::e8 ? 15 : rightsKept[to]; }

inline Key castlingChangeKey(CastlingRights changed) {
  Key k = 0;
  for (int bit = 1; bit <= 8; bit <<= 1)
    if (changed & bit) k ^= keys.castlingKeys[bit];
  return k;
}

}  // namespace detail

template <Board_0x88::Keep K>
inline void Board_0x88::toggleKey(Key k) {
  if constexpr (K == Keep::Everything) history[historyIndex].key ^= k;
  if constexpr (K == Keep::LightKey) lightKeys[lightIndex] ^= k;
}

template <Board_0x88::Keep K>
inline void Board_0x88::place(Square88 s, PieceType t, Color c, std::uint8_t slot) {
  pieceOn[s] = t;
  colorOn[s] = c;
  slotOn[s] = slot;
  pieceList[c][slot] = s;
  occupied[c] |= squareBit(s);
  ++pieceCount[c][t];
  ++pieceCount[c][TotalCountIndex];
  if constexpr (K == Keep::Everything || K == Keep::SumsOnly) psq[c] += pieceSquareOf(c, t, s);
  toggleKey<K>(pieceKey(c, t, s));
  if constexpr (K == Keep::Everything)
    if (t == Pawn) history[historyIndex].pawnKey ^= pieceKey(c, t, s);
}

// The colour as a constant lets the lists, sums and keys of that side be addressed directly.
template <Board_0x88::Keep K, Color C>
inline void Board_0x88::remove(Square88 s) {
  PieceType t = pieceOn[s];
  constexpr Color c = C;
  pieceList[c][slotOn[s]] = NoSquare;
  occupied[c] &= ~squareBit(s);
  --pieceCount[c][t];
  --pieceCount[c][TotalCountIndex];
  pieceOn[s] = NoPiece;
  colorOn[s] = NoColor;
  slotOn[s] = EmptySlot;
  if constexpr (K == Keep::Everything || K == Keep::SumsOnly) psq[c] -= pieceSquareOf(c, t, s);
  toggleKey<K>(pieceKey(c, t, s));
  if constexpr (K == Keep::Everything)
    if (t == Pawn) history[historyIndex].pawnKey ^= pieceKey(c, t, s);
}

template <Board_0x88::Keep K, Color C>
inline void Board_0x88::move(Square88 from, Square88 to) {
  PieceType t = pieceOn[from];
  constexpr Color c = C;
  std::uint8_t slot = slotOn[from];
  pieceOn[to] = t;
  colorOn[to] = c;
  slotOn[to] = slot;
  pieceList[c][slot] = to;
  occupied[c] ^= squareBit(from) | squareBit(to);
  pieceOn[from] = NoPiece;
  colorOn[from] = NoColor;
  slotOn[from] = EmptySlot;
  if constexpr (K == Keep::Everything || K == Keep::SumsOnly) {
    psq[c] -= pieceSquareOf(c, t, from);
    psq[c] += pieceSquareOf(c, t, to);
  }
  toggleKey<K>(pieceKey(c, t, from) ^ pieceKey(c, t, to));
  if constexpr (K == Keep::Everything)
    if (t == Pawn) history[historyIndex].pawnKey ^= pieceKey(c, t, from) ^ pieceKey(c, t, to);
}

template <Color Us, Board_0x88::Mode M>
inline void Board_0x88::doMake(Move m, UndoRecord& undo) {
  constexpr Color Them = opposite(Us);
  constexpr Keep K = M == Mode::Full ? Keep::Everything : M == Mode::Light ? Keep::LightKey : Keep::PiecesOnly;
  constexpr bool KeepsRights = M != Mode::Test;
  constexpr bool KeepsClock = M == Mode::Full;

  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  if constexpr (M == Mode::Full) {
    HistoryRecord& next = history[historyIndex + 1];
    next.key = history[historyIndex].key;
    next.pawnKey = history[historyIndex].pawnKey;
    next.repetitionCount = 0;
    ++historyIndex;
  }
  if constexpr (M == Mode::Light) {
    lightKeys[lightIndex + 1] = lightKeys[lightIndex];
    ++lightIndex;
  }
  if constexpr (KeepsRights) {
    undo.castlingRights = castlingRights;
    undo.epSquare = epSquare;
    undo.halfmoveClock = halfmoveClock;
  }

  Square88 newEpSquare = NoSquare;
  CastlingRights newRights = castlingRights;
  switch (moveKind(m)) {
    case EnPassantMove: {
      const Square88 victim = Square88(to - pawnForward[Us]);
      undo.captured = std::uint8_t(Pawn << 4 | slotOn[victim]);
      remove<K, Them>(victim);
      move<K, Us>(from, to);
      if constexpr (KeepsClock) halfmoveClock = 0;
      break;
    }
    case PromotionMove: {
      const PieceType promoted = promotionPiece(m);
      undo.captured = pieceOn[to] == NoPiece ? 0 : std::uint8_t(pieceOn[to] << 4 | slotOn[to]);
      if (pieceOn[to] != NoPiece) remove<K, Them>(to);
      move<K, Us>(from, to);
      toggleKey<K>(pieceKey(Us, Pawn, to) ^ pieceKey(Us, promoted, to));
      if constexpr (K == Keep::Everything) {
        history[historyIndex].pawnKey ^= pieceKey(Us, Pawn, to);
        psq[Us] += pieceSquareOf(Us, promoted, to);
        psq[Us] -= pieceSquareOf(Us, Pawn, to);
      }
      pieceOn[to] = promoted;
      --pieceCount[Us][Pawn];
      ++pieceCount[Us][promoted];
      if constexpr (KeepsClock) halfmoveClock = 0;
      newRights &= detail::cornerRightsKept(to);
      break;
    }
    case CastlingMove: {
      const detail::CastlingSquares& c = detail::castlingSquares[moveDetail(m)];
      undo.captured = 0;
      move<K, Us>(c.kingFrom, c.kingTo);
      move<K, Us>(c.rookFrom, c.rookTo);
      if constexpr (KeepsClock) ++halfmoveClock;
      newRights &=
          Us == White ? CastlingRights(BlackKingSide | BlackQueenSide) : CastlingRights(WhiteKingSide | WhiteQueenSide);
      break;
    }
    default: {
      const PieceType mover = pieceOn[from];
      if (pieceOn[to] == NoPiece) {
        undo.captured = 0;
        if constexpr (KeepsClock) halfmoveClock = mover == Pawn ? 0 : halfmoveClock + 1;
      } else {
        undo.captured = std::uint8_t(pieceOn[to] << 4 | slotOn[to]);
        remove<K, Them>(to);
        if constexpr (KeepsClock) halfmoveClock = 0;
      }
      move<K, Us>(from, to);
      if constexpr (KeepsRights) {
        if (moveDetail(m) == 1) {
          const bool leftHasPawn = fileOf(to) != 0 && pieceOn[to - 1] == Pawn && colorOn[to - 1] == Them;
          const bool rightHasPawn = fileOf(to) != 7 && pieceOn[to + 1] == Pawn && colorOn[to + 1] == Them;
          if (leftHasPawn || rightHasPawn) newEpSquare = Square88(to - pawnForward[Us]);
        }
        newRights &= detail::rightsKept[from] & detail::rightsKept[to];
      }
      break;
    }
  }

  if constexpr (KeepsRights) {
    if (epSquare != NoSquare) toggleKey<K>(keys.enPassantKeys[fileOf(epSquare)]);
    if (newEpSquare != NoSquare) toggleKey<K>(keys.enPassantKeys[fileOf(newEpSquare)]);
    epSquare = newEpSquare;
    if (newRights != castlingRights) {
      toggleKey<K>(detail::castlingChangeKey(newRights ^ castlingRights));
      castlingRights = newRights;
    }
  }
  toggleKey<K>(keys.sideKey);
  sideToMove = Them;
}

template <Color Us, Board_0x88::Mode M>
inline void Board_0x88::doUnmake(Move m, const UndoRecord& undo) {
  constexpr Color Them = opposite(Us);
  constexpr Keep K = M == Mode::Full ? Keep::SumsOnly : Keep::PiecesOnly;

  const Square88 from = fromSquare(m);
  const Square88 to = toSquare(m);
  sideToMove = Us;
  switch (moveKind(m)) {
    case CastlingMove: {
      const detail::CastlingSquares& c = detail::castlingSquares[moveDetail(m)];
      move<K, Us>(c.kingTo, c.kingFrom);
      move<K, Us>(c.rookTo, c.rookFrom);
      break;
    }
    case EnPassantMove:
      move<K, Us>(to, from);
      place<K>(Square88(to - pawnForward[Us]), Pawn, Them, undo.captured & 15);
      break;
    default:
      if (moveKind(m) == PromotionMove) {
        const PieceType promoted = pieceOn[to];
        if constexpr (K == Keep::SumsOnly) {
          psq[Us] -= pieceSquareOf(Us, promoted, to);
          psq[Us] += pieceSquareOf(Us, Pawn, to);
        }
        --pieceCount[Us][promoted];
        ++pieceCount[Us][Pawn];
        pieceOn[to] = Pawn;
      }
      move<K, Us>(to, from);
      if (undo.captured > 15) place<K>(to, PieceType(undo.captured >> 4), Them, undo.captured & 15);
      break;
  }
  if constexpr (M != Mode::Test) {
    castlingRights = undo.castlingRights;
    epSquare = undo.epSquare;
    halfmoveClock = undo.halfmoveClock;
  }
  if constexpr (M == Mode::Full) --historyIndex;
  if constexpr (M == Mode::Light) --lightIndex;
}

template <Color Us>
inline void Board_0x88::makeMove(Move m, UndoRecord& undo) {
  doMake<Us, Mode::Full>(m, undo);
}
template <Color Us>
inline void Board_0x88::unmakeMove(Move m, const UndoRecord& undo) {
  doUnmake<Us, Mode::Full>(m, undo);
}
template <Color Us>
inline void Board_0x88::makeMoveLight(Move m, UndoRecord& undo) {
  doMake<Us, Mode::Light>(m, undo);
}
template <Color Us>
inline void Board_0x88::unmakeMoveLight(Move m, const UndoRecord& undo) {
  doUnmake<Us, Mode::Light>(m, undo);
}
template <Color Us>
inline void Board_0x88::makeMoveTest(Move m, UndoRecord& undo) {
  doMake<Us, Mode::Test>(m, undo);
}
template <Color Us>
inline void Board_0x88::unmakeMoveTest(Move m, const UndoRecord& undo) {
  doUnmake<Us, Mode::Test>(m, undo);
}

}  // namespace torvy
