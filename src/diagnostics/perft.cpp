#include "diagnostics/perft.h"

#include <algorithm>
#include <iomanip>
#include <type_traits>

#include "board/move_text.h"
#include "search/move_selector.h"

namespace torvy {

namespace {

template <Color C>
using ColorConstant = std::integral_constant<Color, C>;

constexpr std::uint64_t KeyBitsMask = (std::uint64_t(1) << 48) - 1;
constexpr std::uint64_t DepthMask = 0xFFFF;
constexpr int ClusterSlots = 4;  // as PerftTable groups its entries

std::uint64_t storedKey(const PerftEntry& e) { return e.depthAndKey >> 16; }
int storedDepth(const PerftEntry& e) { return int(e.depthAndKey & DepthMask); }

// Only the first slot with the position's key counts; another depth there is a miss.
bool probe(PerftTable& table, Key key, int depth, std::uint64_t& count) {
  const std::uint64_t key48 = key & KeyBitsMask;
  const PerftEntry* cluster = table.cluster(key);
  for (int i = 0; i < ClusterSlots; ++i) {
    if (storedKey(cluster[i]) != key48) continue;
    if (storedDepth(cluster[i]) != depth) return false;
    count = cluster[i].count;
    return true;
  }
  return false;
}

// The same position first, then a free slot, then the shallowest count (the first of equals).
void store(PerftTable& table, Key key, int depth, std::uint64_t count) {
  const std::uint64_t key48 = key & KeyBitsMask;
  PerftEntry* cluster = table.cluster(key);
  PerftEntry* target = nullptr;
  for (int i = 0; i < ClusterSlots && target == nullptr; ++i)
    if (storedKey(cluster[i]) == key48) target = &cluster[i];
  for (int i = 0; i < ClusterSlots && target == nullptr; ++i)
    if (cluster[i].isEmpty()) target = &cluster[i];
  if (target == nullptr) {
    target = &cluster[0];
    for (int i = 1; i < ClusterSlots; ++i)
      if (storedDepth(cluster[i]) < storedDepth(*target)) target = &cluster[i];
  }
  target->count = count;
  target->depthAndKey = key48 << 16 | (std::uint64_t(depth) & DepthMask);
}

template <Color Us, bool InCheck>
void setUpSelector(MoveSelector& selector, Board_0x88& board, const CheckInfo& check) {
  if constexpr (InCheck)
    selector.init<Us>(SelectInCheck, board, check, NoMove);
  else
    selector.initFull<Us>(SelectAll, board, NoMove);
}

// The check state of Us: handed down from the move that led here, or found.
template <Color Us, bool InCheck>
CheckInfo checkHere(const Board_0x88& board, const CheckInfo& handed) {
  CheckInfo found = handed;
  if constexpr (!InCheck) findCheck<Us>(board, found);
  return found;
}

// The leaves below one move, with the check it gives handed to the reply.
template <Color Us>
std::uint64_t subtree(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth, Move m) {
  constexpr Color Them = opposite(Us);
  CheckInfo check;
  const bool checks = givesCheck<Us>(board, m, check);
  UndoRecord undo;
  board.makeMoveLight<Us>(m, undo);
  const std::uint64_t count = checks ? perftNode<Them, true>(nodes, board, table, depth, check)
                                     : perftNode<Them, false>(nodes, board, table, depth);
  board.unmakeMoveLight<Us>(m, undo);
  return count;
}

template <Color Us, bool InCheck>
std::uint64_t divideRoot(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth, const CheckInfo& check,
                         std::ostream& out) {
  ++nodes;
  MoveSelector selector;
  setUpSelector<Us, InCheck>(selector, board, check);
  std::uint64_t sum = 0;
  for (Move m = selector.nextAsGenerated<Us>(); !isNoMove(m); m = selector.nextAsGenerated<Us>()) {
    const std::uint64_t count = depth == 1 ? 1 : subtree<Us>(nodes, board, table, depth - 1, m);
    sum += count;
    out << moveToText(m) << ' ' << count << std::endl;
  }
  return sum;
}

// The keys are rebuilt from the pieces so that a run never trusts what set-up or play left.
void recomputeKeys(Board_0x88& board) {
  HistoryRecord& record = board.history[board.historyIndex];
  record.key = board.computeKey();
  record.pawnKey = board.computePawnKey();
  board.lightKeys[board.lightIndex] = record.key;
}

void startRunClock(SearchClock& clock) {
  clock.accumulated = 0;
  clock.startStamp = 0;
  clock.searchStart = 0;
  clock.running = true;
  clock.startStamp = SearchClock::now();
}

struct RunTotals {
  std::uint64_t leaves = 0;
  std::uint64_t nodes = 0;
  std::int32_t centiseconds = 0;
};

void printReport(const RunTotals& run, const PerftTable& table, const char* prefix, std::ostream& out) {
  const std::uint64_t rate = run.centiseconds > 0 ? run.nodes * 100 / std::uint64_t(run.centiseconds) : 0;
  out << prefix << "Total leaves: " << run.leaves << std::endl;
  out << prefix << "Total nodes:  " << run.nodes << std::endl;
  out << prefix << "Time elapsed: " << run.centiseconds / 100 << '.' << std::setw(2) << std::setfill('0')
      << run.centiseconds % 100 << std::setfill(' ') << " s" << std::endl;
  out << prefix << "Nodes/second: " << rate << std::endl;
  out << "# perftHashFull%:  " << table.fillPercent() << std::endl;
}

// Calls root with the side to move and its check state as compile-time constants.
template <class Root>
std::uint64_t bySideAndCheck(const Board_0x88& board, Root root) {
  CheckInfo check;
  return forSideToMove(board, [&]<Color Us>() {
    return findCheck<Us>(board, check) ? root(ColorConstant<Us>{}, std::true_type{}, check)
                                       : root(ColorConstant<Us>{}, std::false_type{}, check);
  });
}

// The frame both drivers share: clock, table, keys, the root call, and the report.
template <class Root>
void runDriver(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, SearchClock& clock, const char* prefix,
               std::ostream& out, Root root) {
  startRunClock(clock);
  preparePerftHash(table, sizeMB, out);
  RunTotals run;
  recomputeKeys(board);
  run.leaves = root(run.nodes);
  clock.stopClock();
  run.centiseconds = clock.accumulated;
  printReport(run, table, prefix, out);
}

// The light key stack holds one key per ply made, and depth 1 makes none. Deeper runs could
// not end in any case, so they are cut to what the stack holds rather than overrun it.
int cappedDepth(const Board_0x88& board, int depth) { return std::min(depth, int(LightKeysSize - board.lightIndex)); }

}  // namespace

void preparePerftHash(PerftTable& table, std::uint32_t sizeMB, std::ostream& out) {
  if (table.exists())
    table.clear();
  else
    table.resize(sizeMB, "Perft hash", out);
}

template <Color Us, bool InCheck>
std::uint64_t perftNode(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth, const CheckInfo& check) {
  ++nodes;
  // The last ply only counts the moves, which needs no list.
  if (depth == 1) return countLegalMoves<Us>(board, checkHere<Us, InCheck>(board, check));
  const Key key = board.lightKeys[board.lightIndex];
  std::uint64_t sum = 0;
  if (probe(table, key, depth, sum)) return sum;
  // The list in generation order, as the selector's perft form gives it, without its stages.
  MoveList moves;
  generateLegalMovesFor<Us>(board, checkHere<Us, InCheck>(board, check), moves);
  for (std::uint32_t i = 0; i < moves.count; ++i) sum += subtree<Us>(nodes, board, table, depth - 1, moves[i]);
  store(table, key, depth, sum);
  return sum;
}

template std::uint64_t perftNode<White, false>(std::uint64_t&, Board_0x88&, PerftTable&, int, const CheckInfo&);
template std::uint64_t perftNode<White, true>(std::uint64_t&, Board_0x88&, PerftTable&, int, const CheckInfo&);
template std::uint64_t perftNode<Black, false>(std::uint64_t&, Board_0x88&, PerftTable&, int, const CheckInfo&);
template std::uint64_t perftNode<Black, true>(std::uint64_t&, Board_0x88&, PerftTable&, int, const CheckInfo&);

std::uint64_t perftFromRoot(std::uint64_t& nodes, Board_0x88& board, PerftTable& table, int depth) {
  return bySideAndCheck(board, [&](auto us, auto inCheck, const CheckInfo& check) {
    return perftNode<us(), inCheck()>(nodes, board, table, depth, check);
  });
}

void runPerft(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, SearchClock& clock, int depth,
              std::ostream& out) {
  depth = cappedDepth(board, depth);
  runDriver(board, table, sizeMB, clock, "# ", out,
            [&](std::uint64_t& nodes) { return perftFromRoot(nodes, board, table, depth); });
}

void runDivide(Board_0x88& board, PerftTable& table, std::uint32_t sizeMB, SearchClock& clock, int depth,
               std::ostream& out) {
  depth = cappedDepth(board, depth);
  runDriver(board, table, sizeMB, clock, "", out, [&](std::uint64_t& nodes) {
    return bySideAndCheck(board, [&](auto us, auto inCheck, const CheckInfo& check) {
      return divideRoot<us(), inCheck()>(nodes, board, table, depth, check, out);
    });
  });
}

}  // namespace torvy
