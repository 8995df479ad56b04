// One thread's search: its own board, the shared tables it borrows, its counters and flags.
#pragma once

#include <atomic>
#include <cstdint>

#include "board/board.h"
#include "eval/pawn_hash.h"
#include "search/search_clock.h"
#include "search/search_interface.h"
#include "search/search_types.h"
#include "search/tt_entry.h"
#include "tablebase/tablebase_state.h"

namespace torvy {

struct CheckInfo;
struct MoveSelector;

class Searcher {
 public:
  // What the threads of a pool share, borrowed from the player.
  struct Tables {
    TranspositionTable* ttHash;
    PawnHashTable* pawnHash;
    const TablebaseState* tablebases;
    SearchClock* clock;
    SearchInterface* player;
  };

  Searcher(std::uint32_t threadIndex, const Tables& tables);

  // Iterative deepening from the game's position; best and ponder are 0 when no move is to be
  // given (analysis, or a stop from outside), unless alwaysGivesMove is set.
  void runSearch(const Board_0x88& game, Move& best, Move& ponder);

  // Raised by anyone to end this thread's search; cleared only by the thread itself.
  void requestStop(bool abort) {
    if (abort) abortFlag.store(true, std::memory_order_relaxed);
    stopFlag.store(true, std::memory_order_relaxed);
  }
  // Cleared before the thread is released for a job, so that no stop raised after the
  // release can be lost.
  void clearFlags() {
    stopFlag.store(false, std::memory_order_relaxed);
    abortFlag.store(false, std::memory_order_relaxed);
  }
  bool stopped() const { return stopFlag.load(std::memory_order_relaxed); }

  std::uint32_t threadIndex;
  Board_0x88 board;
  TranspositionTable* ttHash;
  PawnHashTable* pawnHash;
  const TablebaseState* tablebases;
  SearchClock* clock;
  SearchInterface* player;
  SearchStats stats;
  std::uint32_t iterationDepth = 0;
  std::int32_t lastMovesTime = 0;
  std::atomic<bool> stopFlag{false};
  std::atomic<bool> abortFlag{false};
  bool easyMove = false;
  // Set by the player before a job: a stopped or unlimited search still gives its best move so
  // far, for a protocol that answers every search with a move.
  bool alwaysGivesMove = false;

 private:
  struct Bounds {
    int lower = -MateScore;
    int upper = MateScore;
  };

  template <Color Us>
  void runIterations(Move& best, Move& ponder);
  template <Color Us>
  int evaluateRootMoves(PvLine& bestLine, int& rootMoves, int& resolved);
  bool checksAfterIteration(int depth, int rootMoves, int best, int mateLower, int mateUpper, const PvLine& bestLine,
                            Move previousBest, bool* easyHistory);
  template <Color Us>
  int searchRoot(int alpha, int beta, int depth, PvLine& line);
  template <Color Us, bool InCheck>
  int searchRootMoves(const CheckInfo& check, int alpha, int beta, int depth, PvLine& line);
  // A node's window after the mate distance step, its mate bounds, ply and depth: what each
  // store into the transposition table repeats.
  struct Node {
    int alpha;
    int beta;
    int ply;
    int depth;
    Bounds bounds;
  };

  template <Color Us>
  int searchNode(int alpha, int beta, int ply, int depth, PvLine& line);
  template <Color Us>
  int searchNodeInCheck(const CheckInfo& check, int alpha, int beta, int ply, int depth, PvLine& line);
  template <Color Us, bool InCheck>
  int searchMoves(MoveSelector& selector, Move first, const Node& node, PvLine& line);
  template <Color Us>
  int searchMove(const CheckInfo& check, int alpha, int beta, int childPly, int depth, int moveNumber, bool late,
                 PvLine& child);
  template <Color Us>
  int quiescence(int alpha, int beta, int ply, PvLine& line);
  template <Color Us, bool InCheck>
  Bounds mateDistanceBounds(int ply, int& alpha, int& beta) const;
  template <Color Us, bool InCheck>
  Node openNode(int alpha, int beta, int ply, int depth) const;
  bool probe(const Node& node, Move& ttMove, int& score, PvLine& line);
  int store(const Node& node, int score, Move move);  // gives back the score, for the node to return
  // Whether a move of the loop is searched one ply shallower first.
  template <bool InCheck>
  bool isLateMove(Move m, int moveNumber, int depth) const;
  template <Color Us>
  bool probeTablebase(int depth, int& value) const;
  template <Color Us>
  bool mayPass(int ply) const;

  // Thread 0's clock check, and the guard that keeps the descent inside the history stack.
  bool mustStopAt();
  bool givesMove(bool timeLimited) const {
    return alwaysGivesMove || (timeLimited && !abortFlag.load(std::memory_order_relaxed));
  }
  bool isDrawn();
};

}  // namespace torvy
