#include "board/board.h"

#include <initializer_list>

namespace torvy {

namespace {

struct SlotRule {
  std::uint8_t limit;      // most pieces of the type a colour may have
  std::uint8_t firstSlot;  // first slot of the type's own
  std::uint8_t ownSlots;
};
constexpr SlotRule slotRules[7] = {
    {0, 0, 0},   // NoPiece
    {8, 8, 8},   // Pawn
    {10, 6, 2},  // Knight
    {10, 4, 2},  // Bishop
    {10, 2, 2},  // Rook
    {9, 1, 1},   // Queen
    {1, 0, 1},   // King
};

}  // namespace

Key Board_Common::computeKey() const {
  Key k = computePieceKey(White) ^ computePieceKey(Black);
  for (CastlingRights right : SingleCastlingRights)
    if (castlingRights & right) k ^= keys.castlingKeys[right];
  if (epSquare != NoSquare) k ^= keys.enPassantKeys[fileOf(epSquare)];
  if (sideToMove == Black) k ^= keys.sideKey;
  return k;
}

Board_0x88::Board_0x88() {
  initKeys();
  for (auto& record : history) record = HistoryRecord{};
  clear();
}

Key Board_0x88::computePieceKey(Color c) const {
  Key k = 0;
  for (Square88 s : pieceList[c])
    if (onBoard(s)) k ^= pieceKey(c, pieceOn[s], s);
  return k;
}

Key Board_0x88::computePawnKey() const {
  Key k = 0;
  for (Color c : {White, Black})
    for (int slot = SharedSlotsBegin; slot < SlotCount; ++slot) {
      Square88 s = pieceList[c][slot];
      if (onBoard(s) && pieceOn[s] == Pawn) k ^= pieceKey(c, Pawn, s);
    }
  return k;
}

void Board_0x88::clear() {
  for (int s = 0; s < 128; ++s) {
    pieceOn[s] = NoPiece;
    colorOn[s] = NoColor;
    slotOn[s] = EmptySlot;
  }
  for (auto& list : pieceList)
    for (Square88& s : list) s = NoSquare;
  for (auto& counts : pieceCount)
    for (auto& n : counts) n = 0;
  occupied[White] = occupied[Black] = 0;
  psq[White] = psq[Black] = ScorePair{};
  historyIndex = 0;
  history[0] = HistoryRecord{};
  castlingRights = NoCastlingRights;
  epSquare = NoSquare;
  halfmoveClock = 0;
  sideToMove = NoColor;
}

bool Board_0x88::addPiece(Square88 s, PieceType t, Color c) {
  const SlotRule& rule = slotRules[t];
  if (pieceCount[c][t] >= rule.limit) return false;
  int slot = -1;
  for (int i = rule.firstSlot; i < rule.firstSlot + rule.ownSlots && slot < 0; ++i)
    if (pieceList[c][i] == NoSquare) slot = i;
  if (slot < 0 && t != Pawn && t != King)
    for (int i = SharedSlotsBegin; i < SlotCount && slot < 0; ++i)
      if (pieceList[c][i] == NoSquare) slot = i;
  if (slot < 0) return false;
  place<Keep::Everything>(s, t, c, std::uint8_t(slot));
  return true;
}

void Board_0x88::makeNullMove(UndoRecord& undo) {
  history[historyIndex].move = NoMove;
  HistoryRecord& next = history[historyIndex + 1];
  next.key = history[historyIndex].key;
  next.pawnKey = history[historyIndex].pawnKey;
  next.repetitionCount = 0;
  ++historyIndex;
  undo.castlingRights = castlingRights;
  undo.epSquare = epSquare;
  undo.halfmoveClock = halfmoveClock;
  sideToMove = opposite(sideToMove);
  halfmoveClock = 0;
  history[historyIndex].key ^= keys.sideKey;
  if (epSquare != NoSquare) history[historyIndex].key ^= keys.enPassantKeys[fileOf(epSquare)];
  epSquare = NoSquare;
}

void Board_0x88::unmakeNullMove(const UndoRecord& undo) {
  sideToMove = opposite(sideToMove);
  --historyIndex;
  castlingRights = undo.castlingRights;
  epSquare = undo.epSquare;
  halfmoveClock = undo.halfmoveClock;
}

}  // namespace torvy
