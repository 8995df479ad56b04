// The position: 0x88 arrays, piece lists in fixed slots, and a stack of one record per ply.
#pragma once

#include <cstdint>

#include "board/bitboards.h"
#include "board/keys.h"
#include "board/piece_square.h"
#include "board/types.h"

namespace torvy {

struct HistoryRecord {
  Key key = 0;
  Key pawnKey = 0;
  std::uint16_t repetitionCount = 0;  // earlier occurrences, as the draw test found them
  Move killer1 = NoMove;
  Move killer2 = NoMove;
  Move move = NoMove;  // the move played from here; 0 for a null move
};

// What a caller keeps between make and unmake.
struct UndoRecord {
  CastlingRights castlingRights = NoCastlingRights;
  Square88 epSquare = NoSquare;
  std::uint8_t halfmoveClock = 0;
  std::uint8_t captured = 0;  // captured PieceType << 4 | its slot; 0 for none
};

constexpr std::uint32_t HistorySize = 1024;
constexpr std::uint32_t LightKeysSize = 64;

// Slots 0 to 7 of a piece list belong to the pieces; 8 to 15 to the pawns, and to pieces
// promoted beyond their own slots.
constexpr int SharedSlotsBegin = 8;
constexpr int SlotCount = 16;

class Board_Common {
 public:
  virtual ~Board_Common() = default;

  virtual Key computePieceKey(Color c) const = 0;
  virtual Key computePawnKey() const = 0;
  Key computeKey() const;

  Key key() const { return history[historyIndex].key; }
  Key pawnKey() const { return history[historyIndex].pawnKey; }

  ScorePair psq[2];  // the psqMg and psqEg sums, White first
  HistoryRecord history[HistorySize];
  std::uint32_t historyIndex = 0;
  Key lightKeys[LightKeysSize] = {};
  std::uint32_t lightIndex = 0;
  CastlingRights castlingRights = NoCastlingRights;
  Square88 epSquare = NoSquare;
  std::uint8_t halfmoveClock = 0;
  Color sideToMove = NoColor;
};

constexpr std::uint8_t EmptySlot = 16;
constexpr int TotalCountIndex = 7;

class Board_0x88 : public Board_Common {
 public:
  Board_0x88();

  Key computePieceKey(Color c) const override;
  Key computePawnKey() const override;

  void clear();
  // Puts a piece on an empty square; false if its colour has no slot left for it.
  bool addPiece(Square88 s, PieceType t, Color c);

  template <Color Us>
  void makeMove(Move m, UndoRecord& undo);
  template <Color Us>
  void unmakeMove(Move m, const UndoRecord& undo);
  template <Color Us>
  void makeMoveLight(Move m, UndoRecord& undo);
  template <Color Us>
  void unmakeMoveLight(Move m, const UndoRecord& undo);
  template <Color Us>
  void makeMoveTest(Move m, UndoRecord& undo);
  template <Color Us>
  void unmakeMoveTest(Move m, const UndoRecord& undo);
  void makeNullMove(UndoRecord& undo);
  void unmakeNullMove(const UndoRecord& undo);

  Square88 kingSquare(Color c) const { return pieceList[c][0]; }
  Bitboard occupiedSquares() const { return occupied[White] | occupied[Black]; }
  std::uint8_t totalCount(Color c) const { return pieceCount[c][TotalCountIndex]; }

  PieceType pieceOn[128];
  Color colorOn[128];
  std::uint8_t slotOn[128];
  Square88 pieceList[2][SlotCount];
  std::uint8_t pieceCount[2][8];  // by PieceType; entry 7 is the total, kings included
  // The squares of each colour's pieces, kept beside pieceOn so that a ray's nearest piece
  // is one bit scan away.
  Bitboard occupied[2];

 private:
  // What a make or unmake keeps up besides the pieces themselves.
  enum class Keep { Everything, SumsOnly, LightKey, PiecesOnly };
  enum class Mode { Full, Light, Test };

  template <Color Us, Mode M>
  void doMake(Move m, UndoRecord& undo);
  template <Color Us, Mode M>
  void doUnmake(Move m, const UndoRecord& undo);

  template <Keep K>
  void toggleKey(Key k);
  template <Keep K>
  void place(Square88 s, PieceType t, Color c, std::uint8_t slot);
  // C: the colour of the piece, which the caller knows; make and unmake only ever move their
  // own side's pieces and take the other side's.
  template <Keep K, Color C>
  void remove(Square88 s);
  template <Keep K, Color C>
  void move(Square88 from, Square88 to);
};

// The one place the run-time side to move picks the per-colour code: f is a lambda written
// like the templates it calls, [&]<Color Us>() { ... }.
template <class F>
decltype(auto) forSideToMove(const Board_Common& board, F&& f) {
  if (board.sideToMove == White) return f.template operator()<White>();
  return f.template operator()<Black>();
}

}  // namespace torvy

#include "board/make_move.h"
