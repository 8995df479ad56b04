// Hands a node its moves one at a time, stage by stage; the stages of a node come from its kind.
#pragma once

#include <cstdint>

#include "board/attacks.h"
#include "board/movegen.h"
#include "search/move_scoring.h"

namespace torvy {

enum SelectorKind : std::int32_t {
  SelectAll = 0,       // root evaluation, perft
  SelectInCheck = 1,   // nodes in check
  SelectNormal = 2,    // nodes not in check, root search
  SelectCaptures = 3,  // quiescence
};

enum class SelectorStage : std::uint8_t { PvMove, HashMove, HashMoveInCheck, AllMoves, Captures, Done };

constexpr std::uint32_t MaxStages = 4;

// Each kind's stages in order, closed by Done.
constexpr SelectorStage stageSequences[4][MaxStages] = {
    {SelectorStage::AllMoves, SelectorStage::Done, SelectorStage::Done, SelectorStage::Done},
    {SelectorStage::PvMove, SelectorStage::HashMoveInCheck, SelectorStage::AllMoves, SelectorStage::Done},
    {SelectorStage::PvMove, SelectorStage::HashMove, SelectorStage::AllMoves, SelectorStage::Done},
    {SelectorStage::PvMove, SelectorStage::Captures, SelectorStage::Done, SelectorStage::Done},
};

// The comment line for a stored move that does not fit the position.
void reportHashCollision(Move m, bool inCheck);

// A plain value on the node's stack; the node writes pvMove and hashMove right after init.
struct MoveSelector {
  MoveList list;
  PinInfo pins;
  std::uint32_t cursor = 0;
  Board_0x88* board = nullptr;
  std::int32_t kind = SelectAll;
  std::uint32_t stageIndex = 0;
  bool stageStarted = false;
  bool generatedAhead = false;  // the list holds the moves of the generated stage, unscored
  Move pvMove = NoMove;
  Move hashMove = NoMove;

  // For a caller who knows whether and by what the side to move is in check.
  template <Color Us>
  void init(SelectorKind selectorKind, Board_0x88& b, const CheckInfo& check, Move pv);
  // Finds the check itself, so it is right whatever the caller knows.
  template <Color Us>
  void initFull(SelectorKind selectorKind, Board_0x88& b, Move pv);

  // The perft form of next: the stages of the kind with the generated moves in generation
  // order, unscored; NoMove behind the last stage.
  template <Color Us>
  Move nextAsGenerated() {
    return advance<Us, false>();
  }

  // The search's form: generated moves scored once per stage and picked best first.
  template <Color Us>
  Move next() {
    return advance<Us, true>();
  }

  // Generates all the moves before any stage asks for them and counts them; the stage that
  // hands them out later scores this list instead of generating it again.
  template <Color Us>
  std::uint32_t generateAhead() {
    generateStage<Us, false>();
    stageStarted = false;
    generatedAhead = true;
    return list.count;
  }

  SelectorStage stage() const { return stageSequences[kind][stageIndex]; }
  void nextStage() {
    ++stageIndex;
    stageStarted = false;
  }

 private:
  // Runs the stages of the kind until one gives a move; Scored picks the search's form.
  template <Color Us, bool Scored>
  Move advance();
  template <Color Us>
  Move pvStage();
  template <Color Us, bool InCheck>
  Move hashStage();
  template <Color Us, bool CapturesOnly>
  Move generatedStageAsGenerated();
  template <Color Us, bool CapturesOnly>
  void generateStage();
  template <Color Us, bool CapturesOnly>
  Move generatedStageScored();
  // The best remaining entry brought to the cursor, skipping what an earlier stage gave out.
  Move takeBest(Move givenA, Move givenB);
  // The next entry at the cursor that an earlier stage has not handed out yet.
  Move takeInOrder(Move givenA, Move givenB);
};

// Template bodies; callers need only the declarations above.
// ---------------------------------------------------------------------------

template <Color Us>
inline void MoveSelector::init(SelectorKind selectorKind, Board_0x88& b, const CheckInfo& check, Move pv) {
  list.clear();
  kind = selectorKind;
  stageIndex = 0;
  cursor = 0;
  stageStarted = false;
  generatedAhead = false;
  board = &b;
  pvMove = pv;
  hashMove = NoMove;
  pins = computePinInfo<Us>(b, check);
}

template <Color Us>
inline void MoveSelector::initFull(SelectorKind selectorKind, Board_0x88& b, Move pv) {
  CheckInfo check;
  findCheck<Us>(b, check);
  init<Us>(selectorKind, b, check, pv);
}

// The line of the previous iteration and the table can both hand in a move that doesn't fit
// this position (a cutoff puts the table's move into the line untested), so it is tested here.
template <Color Us>
inline Move MoveSelector::pvStage() {
  if (stageStarted || isNoMove(pvMove)) return NoMove;
  stageStarted = true;
  if (!isPseudoLegal<Us>(*board, pvMove) || !movesLikeItsPiece<Us>(*board, pvMove) || !isLegal<Us>(*board, pvMove)) {
    pvMove = NoMove;
    return NoMove;
  }
  return pvMove;
}

// A stored move may come from another position with the same key, or from another thread.
template <Color Us, bool InCheck>
inline Move MoveSelector::hashStage() {
  if (stageStarted || isNoMove(hashMove) || sameMove(hashMove, pvMove)) return NoMove;
  const bool fits = isPseudoLegal<Us>(*board, hashMove) && movesLikeItsPiece<Us>(*board, hashMove) &&
                    (InCheck ? isLegal<Us>(*board, hashMove) : isLegalWithPins<Us>(*board, hashMove, pins));
  if (!fits) {
    reportHashCollision(hashMove, InCheck);
    return NoMove;
  }
  stageStarted = true;
  return hashMove;
}

inline Move MoveSelector::takeInOrder(Move givenA, Move givenB) {
  while (cursor < list.count) {
    const Move m = list[cursor++];
    if (!sameMove(m, givenA) && !sameMove(m, givenB)) return m;
  }
  return NoMove;
}

template <Color Us, bool CapturesOnly>
inline void MoveSelector::generateStage() {
  stageStarted = true;
  generateEnPassant<Us>(*board, list);
  if constexpr (CapturesOnly) {
    generateCaptures<Us>(*board, pins, list);
  } else {
    generateAllMoves<Us>(*board, pins, list);
    generateCastling<Us>(*board, pins, list);
  }
}

template <Color Us, bool CapturesOnly>
inline Move MoveSelector::generatedStageAsGenerated() {
  if (!stageStarted) generateStage<Us, CapturesOnly>();
  // The captures follow no hash stage, so only the PV move can have been given out before.
  return CapturesOnly ? takeInOrder(pvMove, NoMove) : takeInOrder(pvMove, hashMove);
}

// Each better entry swaps places with the leader, which leaves the rest in the order the
// search was tuned with. The leader waits in a register rather than in the list, and the
// scores compare as whole words: with the leader's move bits all set, a word is greater
// exactly when its score is.
inline Move MoveSelector::takeBest(Move givenA, Move givenB) {
  const std::uint32_t count = list.count;
  while (cursor < count) {
    const std::uint32_t i = cursor++;
    MoveEntry best = list.entries[i];
    std::int32_t bar = std::int32_t(best.word | 0xFFFF);
    for (std::uint32_t j = i + 1; j < count; ++j) {
      const MoveEntry entry = list.entries[j];
      if (std::int32_t(entry.word) > bar) {
        list.entries[j] = best;
        best = entry;
        bar = std::int32_t(best.word | 0xFFFF);
      }
    }
    list.entries[i] = best;
    const Move m = best.move();
    if (!sameMove(m, givenA) && !sameMove(m, givenB)) return m;
  }
  return NoMove;
}

template <Color Us, bool CapturesOnly>
inline Move MoveSelector::generatedStageScored() {
  if (!stageStarted) {
    if (generatedAhead)
      stageStarted = true;
    else
      generateStage<Us, CapturesOnly>();
    scoreMoves<Us, CapturesOnly>(*board, list);
  }
  return CapturesOnly ? takeBest(pvMove, NoMove) : takeBest(pvMove, hashMove);
}

template <Color Us, bool Scored>
inline Move MoveSelector::advance() {
  for (;;) {
    Move m = NoMove;
    switch (stage()) {
      case SelectorStage::PvMove: m = pvStage<Us>(); break;
      case SelectorStage::HashMove: m = hashStage<Us, false>(); break;
      case SelectorStage::HashMoveInCheck: m = hashStage<Us, true>(); break;
      case SelectorStage::AllMoves:
        m = Scored ? generatedStageScored<Us, false>() : generatedStageAsGenerated<Us, false>();
        break;
      case SelectorStage::Captures:
        m = Scored ? generatedStageScored<Us, true>() : generatedStageAsGenerated<Us, true>();
        break;
      case SelectorStage::Done: return NoMove;
    }
    if (!isNoMove(m)) return m;
    nextStage();
  }
}

}  // namespace torvy
