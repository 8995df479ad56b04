// ChessPlayer's side of the search: the thread pool, the search job of thread 0 and the
// helpers', and the clock check and output that the threads call back for.

#include "search/chess_player.h"
#include "search/search_thread.h"

namespace torvy {

namespace {

void searchThreadEntry(std::uint32_t index, void* argument) {
  ChessPlayer& player = *static_cast<ChessPlayer*>(argument);
  if (index == 0)
    player.searchJob();
  else
    player.helperJob(index);
}

std::uint64_t percentOf(std::uint64_t part, std::uint64_t whole) { return whole == 0 ? 0 : part * 100 / whole; }

}  // namespace

void ChessPlayer::createMissingTables() {
  if (!ttHash.exists()) ttHash.resize(ttHashSizeMB, "TT hash", out());
  if (!pawnHash.exists()) pawnHash.resize(pawnHashSizeMB, "Pawn hash", out());
}

void ChessPlayer::syncThreads(bool force) {
  if (cores == activeCores && !force && !threads.empty()) return;
  // Threads are never destroyed under a running search.
  stopSearch();
  activeCores = cores;
  threads.clear();
  const Searcher::Tables tables{&ttHash, &pawnHash, &tablebases, &clock, this};
  for (std::uint32_t i = 0; i < activeCores; ++i)
    threads.push_back(std::make_unique<SearchThread>(i, searchThreadEntry, this, tables));
}

void ChessPlayer::startSearch() {
  createMissingTables();
  syncThreads(false);
  // All threads are busy before any runs: else thread 0 could finish at once, pass over a
  // helper that is still idle and publish its move, and that helper would then search alone,
  // with nobody to stop it, on a game board that changes under it.
  for (auto& thread : threads) {
    thread->searcher.clearFlags();
    thread->searcher.alwaysGivesMove = alwaysGivesMove;
    thread->request();
  }
  for (auto& thread : threads) thread->launch();
}

void ChessPlayer::stopSearch() {
  for (auto& thread : threads) {
    if (thread->isIdle()) continue;
    thread->searcher.requestStop(true);
    thread->waitUntilIdle();
  }
}

bool ChessPlayer::isIdle() const {
  for (const auto& thread : threads)
    if (!thread->isIdle()) return false;
  return true;
}

// A random move when asked for one, else a book move on a clock (never in analysis), else a search.
void ChessPlayer::searchJob() {
  clock.startClock();
  if (clock.timeLimited) clock.computeMaxTime(gamePly, out());
  Move move = NoMove;
  const bool quickMove = (randGame && randomMove(move)) || (clock.timeLimited && useBook && bookMove(move));
  if (!quickMove)
    move = searchForMove();
  else if (threads[0]->searcher.stopped() && !alwaysGivesMove)
    move = NoMove;  // a stopped job gives no move, however quickly it found one
  // Also after a quick move: the helpers must be off the game board before the move lands on it.
  stopHelpers();
  if (move != NoMove || alwaysGivesMove) engine->makeEngineMove(move);
  clock.stopClock();
}

void ChessPlayer::openBook() {
  if (!book) book = createBook(bookFilePath);
}

// The legality checks make moves, and the helpers may be copying the game board right now;
// thread 0's search would fill its own board with the game's position anyway.
Board_0x88& ChessPlayer::quickMoveBoard() {
  Board_0x88& own = threads[0]->searcher.board;
  own = board;
  return own;
}

bool ChessPlayer::bookMove(Move& move) {
  openBook();
  return lookupBookMove(*book, quickMoveBoard(), move);
}

Move ChessPlayer::searchForMove() {
  pawnHash.hits.store(0, std::memory_order_relaxed);
  clock.correctMaxTimeOutOfBook(gamePly, outOfBook, out());
  Move move = NoMove;
  Move ponder = NoMove;
  threads[0]->searcher.runSearch(board, move, ponder);
  ponderMove = ponder;
  return move;
}

void ChessPlayer::stopHelpers() {
  for (std::size_t i = 1; i < threads.size(); ++i) {
    if (threads[i]->isIdle()) continue;
    threads[i]->searcher.requestStop(false);
    threads[i]->waitUntilIdle();
  }
}

void ChessPlayer::helperJob(std::uint32_t index) {
  Move move = NoMove;
  Move ponder = NoMove;
  threads[index]->searcher.runSearch(board, move, ponder);
}

std::uint64_t ChessPlayer::totalNodes() const {
  std::uint64_t sum = 0;
  for (const auto& thread : threads) sum += thread->searcher.stats.nodes.get();
  return sum;
}

// The clock is read once for every 4096 nodes of thread 0. Counting only its own nodes keeps
// thread 0 off the other threads' counters, which they write at every node.
bool ChessPlayer::checkTimeout() {
  if (threads[0]->searcher.stats.nodes.get() % 4096 != 0) return false;
  if (!clock.timeLimited) return false;
  if (clock.elapsed() - clock.searchStart < clock.maxTime) return false;
  out() << "# timeout" << std::endl;
  return true;
}

void ChessPlayer::printAnalysisLine(unsigned depth, int score, const PvLine& line) {
  if (!post) return;
  engine->printThinking(depth, score, clock.elapsed() - clock.searchStart, totalNodes(), line);
}

void ChessPlayer::printSearchNote(std::string_view line) { out() << line << std::endl; }

void ChessPlayer::printSearchStats() {
  pawnHash.flushHits();  // this thread's; the helpers' hits lag by less than a batch each
  if (!post) return;
  std::uint64_t t[9] = {};
  for (const auto& thread : threads) {
    const SearchStats& s = thread->searcher.stats;
    const Counter* counters[9] = {
        &s.nodes,  &s.qsNodes,      &s.cutoffs, &s.cutoffsOn1stMove, &s.qsCutoffs, &s.qsCutoffsOn1stMove,
        &s.ttHits, &s.pawnHashHits, &s.tbHits};
    for (int i = 0; i < 9; ++i) t[i] += counters[i]->get();
  }
  const std::uint64_t nodes = t[0], qsNodes = t[1], cutoffs = t[2], cutoffsFirst = t[3], qsCutoffs = t[4],
                      qsCutoffsFirst = t[5], ttHits = t[6], tbHits = t[8];
  const std::uint64_t pawnHashHits = pawnHash.hits.load(std::memory_order_relaxed);
  const std::int64_t time = clock.elapsed() - clock.searchStart;
  const std::uint64_t nps = time > 0 ? nodes * 100 / std::uint64_t(time) : 0;
  out() << "# total nodes = " << nodes << ", QS nodes = " << qsNodes << " (" << percentOf(qsNodes, nodes)
        << "%), time = " << time << ", nps = " << nps << '\n';
  out() << "# cutoffs = " << cutoffs << ", cutoffs on 1st move = " << cutoffsFirst << " ("
        << percentOf(cutoffsFirst, cutoffs) << "%)\n";
  out() << "# qsCutoffs = " << qsCutoffs << ", qsCutoffs on 1st move = " << qsCutoffsFirst << " ("
        << percentOf(qsCutoffsFirst, qsCutoffs) << "%)\n";
  out() << "# allCutoffs = " << cutoffs + qsCutoffs << ", all cutoffs on 1st move = " << cutoffsFirst + qsCutoffsFirst
        << " (" << percentOf(cutoffsFirst + qsCutoffsFirst, cutoffs + qsCutoffs) << "%)\n";
  out() << "# ttHashFull% = " << ttHash.fillPercent() << ", ttHashHits = " << ttHits << '\n';
  out() << "# pawnHashFull% = " << pawnHash.fillPercent() << ", pawnHashHits = " << pawnHashHits << '\n';
  out() << "# tbHits = " << tbHits << std::endl;
}

}  // namespace torvy
