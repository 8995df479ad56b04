// The search below the root: principal variation search with its pruning, reductions and
// extensions, and the quiescence search at the horizon.
#include <algorithm>

#include "board/draw_rules.h"
#include "eval/evaluate.h"
#include "search/capture_safety.h"
#include "search/move_selector.h"
#include "search/searcher.h"
#include "search/transposition_table.h"

namespace torvy {

namespace {

constexpr int razorMargin[4] = {0, 232, 264, 296};
constexpr int futilityMargin[6] = {0, 80, 160, 240, 320, 400};

bool isPvWindow(int alpha, int beta) { return alpha + 1 != beta; }
bool insideMateRange(int score) { return score >= -MateThreshold && score <= MateThreshold; }

// Room the deepest node needs above it in the board's history stack.
constexpr std::uint32_t HistoryReserve = 4;

}  // namespace

bool Searcher::mustStopAt() {
  if (threadIndex == 0 && player->checkTimeout()) {
    stopFlag.store(true, std::memory_order_relaxed);
    return true;
  }
  return false;
}

// A draw by the rules, or the end of the history stack, which a very long game leaves close to
// the root: there the line scores as a draw rather than run off the stack.
bool Searcher::isDrawn() {
  DrawCode code;
  return board.historyIndex + HistoryReserve >= HistorySize || drawStatus(board, code);
}

template <Color Us, bool InCheck>
Searcher::Bounds Searcher::mateDistanceBounds(int ply, int& alpha, int& beta) const {
  constexpr Color Them = Us ^ 1;
  Bounds bounds;
  if (alpha < 0) {
    if (board.totalCount(Them) == 1) {
      bounds.lower = 0;
      alpha = std::max(alpha, -1);
    } else {
      bounds.lower = ply - (InCheck ? 32000 : 31998);
      alpha = std::max(alpha, ply - (InCheck ? 32001 : 31999));
    }
  }
  if (beta > 0) {
    if (board.totalCount(Us) == 1) {
      bounds.upper = 0;
      beta = std::min(beta, 1);
    } else {
      bounds.upper = 32000 - (ply + 1);
      beta = std::min(beta, 32001 - (ply + 1));
    }
  }
  return bounds;
}

template <Color Us>
bool Searcher::probeTablebase(int depth, int& value) const {
  if (depth == 0 || board.totalCount(White) + board.totalCount(Black) > 5) return false;
  const int iteration = int(iterationDepth);
  if (iteration > 6 && depth <= std::min(iteration - 7, 4)) return tablebases->probeSoft<Us>(board, value);
  return tablebases->probeHard<Us>(board, value);
}

template <Color Us>
int Searcher::searchChild(const CheckInfo& check, int alpha, int beta, int ply, int depth, int moveNumber,
                          PvLine& line) {
  constexpr Color Them = Us ^ 1;
  if (check.checkers != 0) {
    const int extension = isPvWindow(alpha, beta) || depth <= 6 ? 1 : 0;
    return -searchNodeInCheck<Them>(check, -beta, -alpha, ply, depth + extension, line);
  }
  if (depth == 0) return -quiescence<Them>(-beta, -alpha, ply, line);
  if (moveNumber == 1) return -searchNode<Them>(-beta, -alpha, ply, depth, line);
  int v = -searchNode<Them>(-alpha - 1, -alpha, ply, depth, line);
  if (isPvWindow(alpha, beta) && v > alpha) v = -searchNode<Them>(-beta, -alpha, ply, depth, line);
  return v;
}

// A late quiet move is searched one ply shallower first, and again at full depth only if it
// raises alpha.
template <Color Us>
int Searcher::searchMove(const CheckInfo& check, int alpha, int beta, int childPly, int depth, int moveNumber,
                         bool late, PvLine& child) {
  if (late) {
    const int v = searchChild<Us>(check, alpha, beta, childPly, depth - 2, moveNumber, child);
    if (v <= alpha) return v;
  }
  return searchChild<Us>(check, alpha, beta, childPly, depth - 1, moveNumber, child);
}

template <Color Us>
bool Searcher::nullMoveCutoff(int beta, int ply, int depth, const Bounds& bounds, int alpha, int& score) {
  constexpr Color Them = Us ^ 1;
  const std::uint32_t h = board.historyIndex;
  if (ply >= 2 && board.history[h - 1].move == NoMove && board.history[h - 2].move == NoMove) return false;
  if (board.totalCount(Us) - board.pieceCount[Us][Pawn] < 2) return false;

  PvLine child;
  UndoRecord undo;
  board.makeNullMove(undo);
  const int r = depth - std::min(depth / 4, 3) - 4;
  int v = r < 1 ? -quiescence<Them>(-beta, 1 - beta, ply + 1, child)
                : -searchNode<Them>(-beta, 1 - beta, ply + 1, r, child);
  board.unmakeNullMove(undo);
  if (stopped()) {
    score = StoppedScore;
    return true;
  }
  if (v < beta) return false;
  if (v >= MateThreshold + 1) v = beta;  // a mate found after passing is not believed
  storeTT(board, *ttHash, bounds.lower, bounds.upper, alpha, beta, ply, depth, v, NoMove);
  score = v;
  return true;
}

template <Color Us, bool InCheck>
int Searcher::searchMoves(MoveSelector& selector, Move first, int alpha, int beta, int ply, int depth,
                          const Bounds& bounds, PvLine& line) {
  int best = -MateScore;
  int moveNumber = 0;
  for (Move m = first; m != NoMove; m = selector.next<Us>()) {
    PvLine child;
    if (line.count > 0 && sameMove(m, line.moves[0])) child.setToRestOf(line);
    ++moveNumber;
    CheckInfo check;
    givesCheck<Us>(board, m, check);
    const bool late =
        !InCheck && moveNumber >= 2 && depth > 2 && isQuietMove(board, m) && !isPawnToSeventh(board, m);
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    const int v = searchMove<Us>(check, std::max(alpha, best), beta, ply + 1, depth, moveNumber, late, child);
    board.unmakeMove<Us>(m, undo);
    if (stopped()) return StoppedScore;
    if (v >= beta) {
      stats.cutoffs.add();
      if (moveNumber == 1) stats.cutoffsOn1stMove.add();
      updateKillers(board, m);
      storeTT(board, *ttHash, bounds.lower, bounds.upper, alpha, beta, ply, depth, v, m);
      return v;
    }
    if (v > best) {
      best = v;
      if (v > alpha) line.setFrom(m, child);
    }
  }
  storeTT(board, *ttHash, bounds.lower, bounds.upper, alpha, beta, ply, depth, best, line.first());
  return best;
}

// The steps every interior node begins with: count, clock, draw, mate distance, table. True
// when they settle the node, whose score is then in score.
template <Color Us, bool InCheck>
bool Searcher::openNode(int& alpha, int& beta, int ply, int depth, PvLine& line, Bounds& bounds, Move& ttMove,
                        int& score) {
  stats.nodes.add();
  score = StoppedScore;
  if (mustStopAt()) return true;
  score = DrawScore;
  if (isDrawn()) return true;
  bounds = mateDistanceBounds<Us, InCheck>(ply, alpha, beta);
  if (alpha >= beta) {
    storeTT(board, *ttHash, bounds.lower, bounds.upper, alpha, beta, ply, depth, alpha, NoMove);
    score = alpha;
    return true;
  }
  bool found = false;
  const bool cutoff = probeTT(board, *ttHash, alpha, beta, ply, depth, score, ttMove, found);
  if (found) stats.ttHits.add();
  if (cutoff && ttMove != NoMove) {
    line.moves[0] = ttMove;
    line.count = 1;
  }
  return cutoff;
}

template <Color Us>
int Searcher::searchNode(int alpha, int beta, int ply, int depth, PvLine& line) {
  Bounds bounds;
  Move ttMove = NoMove;
  int settled = 0;
  if (openNode<Us, false>(alpha, beta, ply, depth, line, bounds, ttMove, settled)) return settled;

  int tablebaseValue = 0;
  if (probeTablebase<Us>(depth, tablebaseValue)) {
    stats.tbHits.add();
    return tablebaseValue > 0 ? tablebaseValue - ply : tablebaseValue < 0 ? tablebaseValue + ply : 0;
  }

  const int eval = evaluate(board, *pawnHash, alpha, beta);
  const bool pv = isPvWindow(alpha, beta);
  PvLine child;

  if (depth <= 3 && !pv && ttMove == NoMove && alpha >= -MateThreshold - 1 && alpha <= MateThreshold - 1) {
    const int t = alpha - razorMargin[depth];
    if (eval <= t) {
      const int v = quiescence<Us>(t, t + 1, ply, child);
      if (v <= t) return v;
    }
  }

  if (depth <= 5 && insideMateRange(alpha) && insideMateRange(beta)) {
    const int t = eval - futilityMargin[depth];
    if (beta <= t) {
      storeTT(board, *ttHash, bounds.lower, bounds.upper, alpha, beta, ply, depth, t, NoMove);
      return t;
    }
  }

  int nullScore = 0;
  if (depth >= 2 && !pv && eval >= beta && nullMoveCutoff<Us>(beta, ply, depth, bounds, alpha, nullScore))
    return nullScore;

  if (ttMove == NoMove && depth >= 3 && pv) {
    child.clear();
    searchNode<Us>(alpha, beta, ply, depth - 2, child);
    if (stopped()) return StoppedScore;
    if (child.count > 0) ttMove = child.moves[0];
  }

  MoveSelector selector;
  selector.init<Us>(SelectNormal, board, CheckInfo{}, NoMove);
  if (ply < 8) {
    selector.next<Us>();
    if (selector.list.count == 1) ++depth;
    selector.rewind();
  }
  selector.pvMove = line.first();
  selector.hashMove = ttMove;
  const Move first = selector.next<Us>();
  if (first == NoMove) return DrawScore;  // stalemate
  return searchMoves<Us, false>(selector, first, alpha, beta, ply, depth, bounds, line);
}

template <Color Us>
int Searcher::searchNodeInCheck(const CheckInfo& check, int alpha, int beta, int ply, int depth, PvLine& line) {
  Bounds bounds;
  Move ttMove = NoMove;
  int settled = 0;
  if (openNode<Us, true>(alpha, beta, ply, depth, line, bounds, ttMove, settled)) return settled;

  MoveSelector selector;
  selector.init<Us>(SelectInCheck, board, check, line.first());
  selector.hashMove = ttMove;
  const Move first = selector.next<Us>();
  if (first == NoMove) return ply - MateScore;  // mated
  return searchMoves<Us, true>(selector, first, alpha, beta, ply, depth, bounds, line);
}

template <Color Us>
int Searcher::quiescence(int alpha, int beta, int ply, PvLine& line) {
  constexpr Color Them = Us ^ 1;
  stats.nodes.add();
  stats.qsNodes.add();
  if (mustStopAt()) return StoppedScore;
  if (isDrawn()) return DrawScore;
  mateDistanceBounds<Us, false>(ply, alpha, beta);
  if (alpha >= beta) return alpha;

  const int eval = evaluate(board, *pawnHash, alpha, beta);
  if (eval >= beta) return eval;
  int best = eval;

  MoveSelector selector;
  selector.init<Us>(SelectCaptures, board, CheckInfo{}, line.first());
  int moveNumber = 0;
  for (Move m = selector.next<Us>(); m != NoMove; m = selector.next<Us>()) {
    ++moveNumber;
    int gain = 0;
    if (isLosingCapture<Us>(board, m, gain)) continue;
    CheckInfo check;
    givesCheck<Us>(board, m, check);
    if (check.checkers == 0 && best + gain <= alpha) continue;
    PvLine child;
    if (line.count > 0 && sameMove(m, line.moves[0])) child.setToRestOf(line);
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    const int a = std::max(alpha, best);
    const int v = check.checkers != 0 ? -searchNodeInCheck<Them>(check, -beta, -a, ply + 1, 1, child)
                                      : -quiescence<Them>(-beta, -a, ply + 1, child);
    board.unmakeMove<Us>(m, undo);
    if (stopped()) return StoppedScore;
    if (v >= beta) {
      stats.qsCutoffs.add();
      if (moveNumber == 1) stats.qsCutoffsOn1stMove.add();
      return v;
    }
    if (v > best) {
      best = v;
      if (v > alpha) line.setFrom(m, child);
    }
  }
  return best;
}

template int Searcher::searchMove<White>(const CheckInfo&, int, int, int, int, int, bool, PvLine&);
template int Searcher::searchMove<Black>(const CheckInfo&, int, int, int, int, int, bool, PvLine&);
template Searcher::Bounds Searcher::mateDistanceBounds<White, false>(int, int&, int&) const;
template Searcher::Bounds Searcher::mateDistanceBounds<Black, false>(int, int&, int&) const;
template Searcher::Bounds Searcher::mateDistanceBounds<White, true>(int, int&, int&) const;
template Searcher::Bounds Searcher::mateDistanceBounds<Black, true>(int, int&, int&) const;

}  // namespace torvy
