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
  constexpr Color Them = opposite(Us);
  Bounds bounds;
  if (alpha < 0) {
    if (board.totalCount(Them) == 1) {
      bounds.lower = 0;
      alpha = std::max(alpha, -1);
    } else {
      bounds.lower = ply - (InCheck ? MateScore : MateScore - 2);
      alpha = std::max(alpha, ply - (InCheck ? MateScore + 1 : MateScore - 1));
    }
  }
  if (beta > 0) {
    if (board.totalCount(Us) == 1) {
      bounds.upper = 0;
      beta = std::min(beta, 1);
    } else {
      bounds.upper = MateScore - (ply + 1);
      beta = std::min(beta, MateScore + 1 - (ply + 1));
    }
  }
  return bounds;
}

// The node's record, its window narrowed by the mate distance step.
template <Color Us, bool InCheck>
Searcher::Node Searcher::openNode(int alpha, int beta, int ply, int depth) const {
  Node node{alpha, beta, ply, depth, {}};
  node.bounds = mateDistanceBounds<Us, InCheck>(ply, node.alpha, node.beta);
  return node;
}

// True when the table settles the node, whose line is then the table's move, if any; that move
// reaches ttMove either way.
bool Searcher::probe(const Node& node, Move& ttMove, int& score, PvLine& line) {
  bool found = false;
  const bool cutoff = probeTT(board, *ttHash, node.alpha, node.beta, node.ply, node.depth, score, ttMove, found);
  if (found) stats.ttHits.add();
  if (cutoff && ttMove != NoMove) {
    line.moves[0] = ttMove;
    line.count = 1;
  }
  return cutoff;
}

namespace {

// The limits of the child depths, in the order in which searchMove applies them.
constexpr int ReductionMinDepth = 3;       // a late quiet move is reduced from this node depth on
constexpr int CheckExtensionMaxDepth = 6;  // a check in a null window is extended up to this depth

}  // namespace

// Asked before the move is made; a move in check is never reduced.
template <bool InCheck>
bool Searcher::isLateMove(Move m, int moveNumber, int depth) const {
  return !InCheck && moveNumber >= 2 && depth >= ReductionMinDepth && isQuietMove(board, m) &&
         !isPawnToSeventh(board, m);
}

int Searcher::store(const Node& node, int score, Move move) {
  storeTT(board, *ttHash, node.bounds.lower, node.bounds.upper, node.alpha, node.beta, node.ply, node.depth, score,
          move);
  return score;
}

template <Color Us>
bool Searcher::probeTablebase(int depth, int& value) const {
  if (depth == 0 || board.totalCount(White) + board.totalCount(Black) > MostTablebaseMen) return false;
  const int iteration = int(iterationDepth);
  if (iteration > 6 && depth <= std::min(iteration - 7, 4)) return tablebases->probeSoft<Us>(board, value);
  return tablebases->probeHard<Us>(board, value);
}

// Null move needs a piece besides king and pawns, for zugzwang is common without one, and is
// not tried a third time in a row.
template <Color Us>
bool Searcher::mayPass(int ply) const {
  const std::uint32_t h = board.historyIndex;
  if (ply >= 2 && board.history[h - 1].move == NoMove && board.history[h - 2].move == NoMove) return false;
  return board.totalCount(Us) - board.pieceCount[Us][Pawn] >= 2;
}

// One child, its move made, and every rule that sets its depth: a ply less than its parent, a
// ply less again at first for a late quiet move, a ply more for a check, quiescence at 0.
template <Color Us>
int Searcher::searchMove(const CheckInfo& check, int alpha, int beta, int childPly, int depth, int moveNumber,
                         bool late, PvLine& child) {
  constexpr Color Them = opposite(Us);
  const bool pv = isPvWindow(alpha, beta);
  const int fullDepth = depth - 1;
  int childDepth = late ? fullDepth - 1 : fullDepth;
  for (;;) {
    int v = 0;
    if (check.checkers != 0) {
      // Extended in a PV window at any depth, in a null window near the horizon only.
      const int extension = pv || childDepth <= CheckExtensionMaxDepth ? 1 : 0;
      v = -searchNodeInCheck<Them>(check, -beta, -alpha, childPly, childDepth + extension, child);
    } else if (childDepth == 0) {
      v = -quiescence<Them>(-beta, -alpha, childPly, child);
    } else if (moveNumber == 1) {
      v = -searchNode<Them>(-beta, -alpha, childPly, childDepth, child);
    } else {
      // Principal variation search: a null window first, the full one only if the move raises alpha.
      v = -searchNode<Them>(-alpha - 1, -alpha, childPly, childDepth, child);
      if (pv && v > alpha) v = -searchNode<Them>(-beta, -alpha, childPly, childDepth, child);
    }
    if (childDepth == fullDepth || v <= alpha) return v;
    childDepth = fullDepth;  // the reduced search raised alpha: once more at full depth
  }
}

// The move loop of both node kinds, from the node's first move on. The window is the node's own
// and is never raised: each move is searched from the best score so far.
template <Color Us, bool InCheck>
int Searcher::searchMoves(MoveSelector& selector, Move first, const Node& node, PvLine& line) {
  int best = -MateScore;
  int moveNumber = 0;
  for (Move m = first; m != NoMove; m = selector.next<Us>()) {
    PvLine child;
    if (line.count > 0 && sameMove(m, line.moves[0])) child.setToRestOf(line);
    ++moveNumber;
    CheckInfo check;
    givesCheck<Us>(board, m, check);
    const bool late = isLateMove<InCheck>(m, moveNumber, node.depth);
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    ttHash->prefetch(board.key());
    const int v =
        searchMove<Us>(check, std::max(node.alpha, best), node.beta, node.ply + 1, node.depth, moveNumber, late, child);
    board.unmakeMove<Us>(m, undo);
    if (stopped()) return StoppedScore;
    if (v >= node.beta) {
      stats.cutoffs.add();
      if (moveNumber == 1) stats.cutoffsOn1stMove.add();
      updateKillers(board, m);
      return store(node, v, m);
    }
    if (v > best) {
      best = v;
      if (v > node.alpha) line.setFrom(m, child);
    }
  }
  return store(node, best, line.first());
}

namespace {

// The limits and margins of the interior node's steps, in the order of the steps.
constexpr int RazorMaxDepth = 3;
constexpr int RazorMargin[RazorMaxDepth + 1] = {0, 232, 264, 296};  // by depth
constexpr int StaticNullMaxDepth = 5;
constexpr int FutilityMargin[StaticNullMaxDepth + 1] = {0, 80, 160, 240, 320, 400};  // by depth
constexpr int NullMoveMinDepth = 2;
constexpr int NullMoveReduction = 3;     // plies skipped besides the pass itself
constexpr int NullMoveMaxDeepening = 3;  // one more ply skipped per 4 of depth, up to this many
constexpr int IidMinDepth = 3;
constexpr int IidReduction = 2;
constexpr int SingleReplyMaxPly = 8;

}  // namespace

template <Color Us>
int Searcher::searchNode(int alpha, int beta, int ply, int depth, PvLine& line) {
  constexpr Color Them = opposite(Us);

  // 1. Count the node; thread 0 watches the clock; a drawn position needs no search.
  stats.nodes.add();
  if (mustStopAt()) return StoppedScore;
  if (isDrawn()) return DrawScore;

  // 2. Mate distance: the window shrinks to what a mate from this ply can still reach, which
  // may leave nothing to search. From here on the node's window is node.alpha, node.beta.
  Node node = openNode<Us, false>(alpha, beta, ply, depth);
  if (node.alpha >= node.beta) return store(node, node.alpha, NoMove);

  // 3. Transposition table: a deep enough entry with a fitting bound settles the node, in a PV
  // window too; any entry offers its move to search first.
  Move ttMove = NoMove;
  int ttScore = 0;
  if (probe(node, ttMove, ttScore, line)) return ttScore;

  // 4. Tablebases: an exact result, turned from a distance to mate from here into a score from
  // the root. It is not stored.
  if (int value = 0; probeTablebase<Us>(depth, value)) {
    stats.tbHits.add();
    return value > 0 ? value - ply : value < 0 ? value + ply : 0;
  }

  // 5. The static evaluation, which the three pruning steps weigh against the window.
  const int eval = evaluate(board, *pawnHash, node.alpha, node.beta);
  const bool pv = isPvWindow(node.alpha, node.beta);
  PvLine child;

  // 6. Razoring: near the horizon, a null-window node whose evaluation lies far below alpha is
  // settled by quiescence if the captures don't bring it back. Not when the table knows a move,
  // a sign the node did better before; not near mate scores, which the margin would distort.
  if (depth <= RazorMaxDepth && !pv && ttMove == NoMove && insideMateRange(node.beta)) {
    const int t = node.alpha - RazorMargin[depth];
    if (eval <= t) {
      const int v = quiescence<Us>(t, t + 1, ply, child);
      if (v <= t) return v;
    }
  }

  // 7. Static null move: near the horizon, an evaluation above beta by more than a move could
  // lose in the plies left cuts off at once.
  if (depth <= StaticNullMaxDepth && insideMateRange(node.alpha) && insideMateRange(node.beta)) {
    const int t = eval - FutilityMargin[depth];
    if (node.beta <= t) return store(node, t, NoMove);
  }

  // 8. Null move: a null-window node already at or above beta that stays there even after
  // passing, searched shallower, is taken to fail high. A mate found after the pass is not
  // believed: a pass is no legal move, and may be what made the mate.
  if (depth >= NullMoveMinDepth && !pv && eval >= node.beta && mayPass<Us>(ply)) {
    const int r = depth - 1 - NullMoveReduction - std::min(depth / 4, NullMoveMaxDeepening);
    child.clear();
    UndoRecord undo;
    board.makeNullMove(undo);
    const int v = r < 1 ? -quiescence<Them>(-node.beta, 1 - node.beta, ply + 1, child)
                        : -searchNode<Them>(-node.beta, 1 - node.beta, ply + 1, r, child);
    board.unmakeNullMove(undo);
    if (stopped()) return StoppedScore;
    if (v >= node.beta) return store(node, v >= MateThreshold + 1 ? node.beta : v, NoMove);
  }

  // 9. Internal iterative deepening: a PV node without a table move finds one by a shallower
  // search of itself, for its first move decides most of its cost.
  if (ttMove == NoMove && depth >= IidMinDepth && pv) {
    child.clear();
    searchNode<Us>(node.alpha, node.beta, ply, depth - IidReduction, child);
    if (stopped()) return StoppedScore;
    if (child.count > 0) ttMove = child.moves[0];
  }

  // 10. Single reply extension: near the root, a node with one legal move is searched a ply
  // deeper, since its cost is that of one move. Counting them generates the whole list, which
  // the move loop then scores and uses.
  MoveSelector selector;
  selector.init<Us>(SelectNormal, board, CheckInfo{}, NoMove);
  if (ply < SingleReplyMaxPly && selector.generateAhead<Us>() == 1) ++node.depth;

  // 11. The moves, the line's first and the table's before the rest; with none it is stalemate.
  selector.pvMove = line.first();
  selector.hashMove = ttMove;
  const Move first = selector.next<Us>();
  if (first == NoMove) return DrawScore;
  return searchMoves<Us, false>(selector, first, node, line);
}

// A node whose side is in check has no pruning at all: every legal reply is searched.
template <Color Us>
int Searcher::searchNodeInCheck(const CheckInfo& check, int alpha, int beta, int ply, int depth, PvLine& line) {
  // 1. Count the node; thread 0 watches the clock; a drawn position needs no search.
  stats.nodes.add();
  if (mustStopAt()) return StoppedScore;
  if (isDrawn()) return DrawScore;

  // 2. Mate distance, where the side in check may be mated at this very ply.
  const Node node = openNode<Us, true>(alpha, beta, ply, depth);
  if (node.alpha >= node.beta) return store(node, node.alpha, NoMove);

  // 3. Transposition table, as in searchNode.
  Move ttMove = NoMove;
  int ttScore = 0;
  if (probe(node, ttMove, ttScore, line)) return ttScore;

  // 4. The replies to the check, the line's first and the table's before the rest; with none
  // the side is mated.
  MoveSelector selector;
  selector.init<Us>(SelectInCheck, board, check, line.first());
  selector.hashMove = ttMove;
  const Move first = selector.next<Us>();
  if (first == NoMove) return ply - MateScore;
  return searchMoves<Us, true>(selector, first, node, line);
}

// Captures and promotions until the position is quiet, without the transposition table.
template <Color Us>
int Searcher::quiescence(int alpha, int beta, int ply, PvLine& line) {
  constexpr Color Them = opposite(Us);

  // 1. Count the node; thread 0 watches the clock; a drawn position needs no search.
  stats.nodes.add();
  stats.qsNodes.add();
  if (mustStopAt()) return StoppedScore;
  if (isDrawn()) return DrawScore;

  // 2. Mate distance, as in searchNode.
  mateDistanceBounds<Us, false>(ply, alpha, beta);
  if (alpha >= beta) return alpha;

  // 3. Stand pat: the side to move need not capture, so the evaluation is a floor for the
  // score; at or above beta it cuts off.
  const int eval = evaluate(board, *pawnHash, alpha, beta);
  if (eval >= beta) return eval;
  int best = eval;

  // 4. The captures and promotions, the line's first before the rest.
  MoveSelector selector;
  selector.init<Us>(SelectCaptures, board, CheckInfo{}, line.first());
  int moveNumber = 0;
  for (Move m = selector.next<Us>(); m != NoMove; m = selector.next<Us>()) {
    ++moveNumber;
    // A capture that a cheap defender answers is dropped, even if it gives check.
    int gain = 0;
    if (isLosingCapture<Us>(board, m, gain)) continue;
    // Delta pruning: a move that doesn't give check and whose gain can't lift best above alpha.
    CheckInfo check;
    givesCheck<Us>(board, m, check);
    if (check.checkers == 0 && best + gain <= alpha) continue;
    PvLine child;
    if (line.count > 0 && sameMove(m, line.moves[0])) child.setToRestOf(line);
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    // A check leaves quiescence for one node in check, so that every reply is seen.
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
template Searcher::Node Searcher::openNode<White, false>(int, int, int, int) const;
template Searcher::Node Searcher::openNode<Black, false>(int, int, int, int) const;
template Searcher::Node Searcher::openNode<White, true>(int, int, int, int) const;
template Searcher::Node Searcher::openNode<Black, true>(int, int, int, int) const;
template bool Searcher::isLateMove<false>(Move, int, int) const;
template bool Searcher::isLateMove<true>(Move, int, int) const;

}  // namespace torvy
