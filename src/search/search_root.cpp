// The top of the search: the root evaluation, iterative deepening with an aspiration window,
// the root search of one iteration and thread 0's decisions to stop early.
#include <algorithm>

#include "board/draw_rules.h"
#include "board/fen.h"
#include "board/move_text.h"
#include "eval/evaluate.h"
#include "search/move_selector.h"
#include "search/searcher.h"
#include "search/transposition_table.h"

namespace torvy {

namespace {

constexpr int MaxIterationDepth = 100;
constexpr int AspirationWindow = 30;
constexpr int EasyMoveMargin = 199;

}  // namespace

Searcher::Searcher(std::uint32_t index, const Tables& tables)
    : threadIndex(index),
      ttHash(tables.ttHash),
      pawnHash(tables.pawnHash),
      tablebases(tables.tablebases),
      clock(tables.clock),
      player(tables.player) {
  // The evaluation's tables are filled here, on the main thread, before any search runs.
  initEvaluation();
  setStartPosition(board);
}

void Searcher::runSearch(const Board_0x88& game, Move& best, Move& ponder) {
  board = game;
  forSideToMove(board, [&]<Color Us>() { runIterations<Us>(best, ponder); });
}

// Scores every root move by a tablebase probe or the static evaluation; the best one is the
// result should the search be stopped before its first iteration ends.
template <Color Us>
int Searcher::evaluateRootMoves(PvLine& bestLine, int& rootMoves, int& resolved) {
  constexpr Color Them = opposite(Us);
  int best = -MateScore;
  MoveSelector selector;
  selector.initFull<Us>(SelectAll, board, NoMove);
  for (Move m = selector.next<Us>(); m != NoMove; m = selector.next<Us>()) {
    ++rootMoves;
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    int score = 0;
    int value = 0;
    if (board.totalCount(White) + board.totalCount(Black) <= MostTablebaseMen &&
        tablebases->probeHard<Them>(board, value)) {
      stats.tbHits.add();
      ++resolved;
      score = value > 0 ? 1 - value : value < 0 ? -value - 1 : 0;
    } else {
      score = -evaluate(board, *pawnHash, -MateScore, MateScore);
    }
    board.unmakeMove<Us>(m, undo);
    if (score > best) {
      best = score;
      bestLine.moves[0] = m;
      bestLine.count = 1;
    }
  }
  return best;
}

template <Color Us>
void Searcher::runIterations(Move& bestMove, Move& ponderMove) {
  constexpr Color Them = opposite(Us);
  easyMove = false;
  lastMovesTime = 0;
  stats.reset();
  const bool timeLimited = clock->timeLimited;
  bestMove = ponderMove = NoMove;

  PvLine bestLine;
  int rootMoves = 0;
  int resolved = 0;
  int best = evaluateRootMoves<Us>(bestLine, rootMoves, resolved);
  if (rootMoves == 0 || resolved == rootMoves) {
    // As after the iterations: an analysis or a stopped search gives no move, and only thread 0
    // prints.
    if (rootMoves > 0 && givesMove(timeLimited)) bestMove = bestLine.first();
    if (threadIndex != 0) return;
    player->printAnalysisLine(0, best, bestLine);
    player->printSearchStats();
    return;
  }

  bool easyHistory[MaxIterationDepth] = {};
  int depth = threadIndex % 2 == 1 ? 2 : 1;
  int step = threadIndex == 0 ? 1 : 2;
  const bool themBare = board.totalCount(Them) == 1;
  const bool usBare = board.totalCount(Us) == 1;
  while (!stopped()) {
    iterationDepth = std::uint32_t(depth);
    const int mateLower = themBare ? 0 : ((depth + 1) & ~1) - MateScore;
    const int windowLow = themBare ? -1 : mateLower - 1;
    const int mateUpper = usBare ? 0 : MateScore + 1 - ((depth + 2) & ~1);
    const int windowHigh = usBare ? 1 : mateUpper + 1;
    const int alpha = std::max(best - AspirationWindow, windowLow);
    const int beta = std::min(best + AspirationWindow, windowHigh);
    PvLine workLine = bestLine;
    if (threadIndex == 0) easyHistory[depth - 1] = false;

    int v = searchRoot<Us>(alpha, beta, depth, workLine);
    if (!stopped()) {
      if (v >= beta && v <= mateUpper)
        v = searchRoot<Us>(alpha, windowHigh, depth, workLine);
      else if (v <= alpha && v >= mateLower)
        v = searchRoot<Us>(windowLow, beta, depth, workLine);
    }
    if (v > MateThreshold || v < -MateThreshold) step = 1;
    Move previousBest = bestLine.first();
    if (workLine.count > 0) {
      bestLine = workLine;
      best = v;
    }
    if (threadIndex == 0 && !stopped() &&
        checksAfterIteration(depth, rootMoves, best, mateLower, mateUpper, bestLine, previousBest, easyHistory))
      stopFlag.store(true, std::memory_order_relaxed);
    depth += step;
    if (depth > MaxIterationDepth) break;
  }
  if (threadIndex != 0) return;
  if (givesMove(timeLimited)) {
    bestMove = bestLine.first();
    ponderMove = bestLine.count >= 2 ? bestLine.moves[1] : NoMove;
  }
  player->printSearchStats();
}

// True when one of thread 0's rules ends the search after this iteration.
bool Searcher::checksAfterIteration(int depth, int rootMoves, int best, int mateLower, int mateUpper,
                                    const PvLine& bestLine, Move previousBest, bool* easyHistory) {
  const std::string text = moveToText(bestLine.first());
  const bool easy = easyMove;
  easyHistory[depth - 1] = easy;
  const std::int32_t sinceStart = clock->elapsed() - clock->searchStart;
  const bool timeLimited = clock->timeLimited;
  const std::int32_t maxTime = clock->maxTime;
  auto say = [this](const std::string& line) {
    player->printSearchNote(line);
    return true;
  };
  if (depth == 1 && rootMoves == 1) return say("# forced move: " + text);
  if (depth >= 6 && easy && easyHistory[depth - 2] && sameMove(bestLine.first(), previousBest) && timeLimited &&
      sinceStart >= maxTime / 8)
    return say("# easy move: " + text);
  if (depth >= 6 && timeLimited && lastMovesTime * 3 / 2 > maxTime - sinceStart)
    return say("# probably not enough time left for another iteration");
  if (best == mateUpper) {
    if (best == 0) return say("# forced draw: " + text);
    return say("# forced mate in " + std::to_string(MateScore - best) + " plies: " + text);
  }
  if (best == mateLower && best < 0)
    return say("# getting mated in " + std::to_string(best + MateScore) + " plies: " + text);
  return clock->depthLimited && clock->maxDepth == std::uint32_t(depth);
}

template <Color Us>
int Searcher::searchRoot(int alpha, int beta, int depth, PvLine& line) {
  CheckInfo check;
  if (findCheck<Us>(board, check)) return searchRootMoves<Us, true>(check, alpha, beta, depth, line);
  return searchRootMoves<Us, false>(check, alpha, beta, depth, line);
}

template <Color Us, bool InCheck>
int Searcher::searchRootMoves(const CheckInfo& check, int alpha, int beta, int depth, PvLine& line) {
  stats.nodes.add();
  const Node node = openNode<Us, InCheck>(alpha, beta, 0, depth);
  if (node.alpha >= node.beta) return store(node, node.alpha, NoMove);
  if (threadIndex == 0) easyMove = false;

  MoveSelector selector;
  selector.init<Us>(InCheck ? SelectInCheck : SelectNormal, board, check, line.first());
  const std::int32_t startTime = clock->elapsed() - clock->searchStart;
  Move m = selector.next<Us>();
  if (m == NoMove) return InCheck ? -MateScore : DrawScore;

  int best = -MateScore;
  int second = -MateScore;
  int moveNumber = 0;
  for (;;) {
    ++moveNumber;
    PvLine child;
    if (line.count > 0 && sameMove(m, line.moves[0])) child.setToRestOf(line);
    CheckInfo childCheck;
    givesCheck<Us>(board, m, childCheck);
    const bool late = isLateMove<InCheck>(m, moveNumber, depth);
    UndoRecord undo;
    board.history[board.historyIndex].move = m;
    board.makeMove<Us>(m, undo);
    const int v = searchMove<Us>(childCheck, std::max(node.alpha, best), node.beta, 1, depth, moveNumber, late, child);
    board.unmakeMove<Us>(m, undo);
    if (stopped()) break;
    if (v >= node.beta) {
      stats.cutoffs.add();
      if (moveNumber == 1) stats.cutoffsOn1stMove.add();
      updateKillers(board, m);
      return store(node, v, m);
    }
    if (v > best) {
      best = v;
      if (v > node.alpha) {
        line.setFrom(m, child);
        if (threadIndex == 0) player->printAnalysisLine(unsigned(depth), v, line);
      }
    } else {
      second = std::max(second, v);
    }
    m = selector.next<Us>();
    if (m == NoMove) break;
    if (!InCheck && moveNumber == 2 && depth >= 6) lastMovesTime = clock->elapsed() - clock->searchStart - startTime;
  }
  if (threadIndex == 0 && moveNumber >= 2 && !stopped() && best > second + EasyMoveMargin) easyMove = true;
  return store(node, best, line.first());
}

}  // namespace torvy
