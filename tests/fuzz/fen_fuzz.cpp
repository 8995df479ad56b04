// libFuzzer target for the FEN reader and the move parser. The first line of the input is
// read as FEN; the words after it as coordinate moves. An accepted position must stand up to
// every legal move and every legal reply, made and taken back with both make pairs, with the
// incremental keys equal to keys computed from nothing after each step.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "board/fen.h"
#include "board/move_text.h"
#include "board/movegen.h"
#include "diagnostics/perft.h"

#include "../board/position_fields.h"

namespace torvy {
namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void requireKeysMatch(const Board_0x88& board) {
  require(board.key() == board.computeKey());
  require(board.pawnKey() == board.computePawnKey());
}

// Makes and takes back m with the light and then with the full pair, checking the keys and
// the mover's king in between. The light stack starts from the full key, as perft sets it up.
template <Color Us>
void tryBothPairs(Board_0x88& board, Move m) {
  const testing::PositionFields before(board);
  UndoRecord undo;
  board.lightKeys[board.lightIndex] = board.key();
  board.makeMoveLight<Us>(m, undo);
  require(board.lightKeys[board.lightIndex] == board.computeKey());
  board.unmakeMoveLight<Us>(m, undo);
  require(testing::PositionFields(board) == before);
  board.makeMove<Us>(m, undo);
  requireKeysMatch(board);
  CheckInfo info;
  require(!isKingAttacked<Us>(board, info));
  board.unmakeMove<Us>(m, undo);
  require(testing::PositionFields(board) == before);
}

// Every legal move, and below each every legal reply; returns the number of replies.
template <Color Us>
std::uint64_t walkTwoPlies(Board_0x88& board) {
  constexpr Color Them = opposite(Us);
  MoveList moves;
  generateLegalMoves(board, moves);
  std::uint64_t replies = 0;
  for (std::uint32_t i = 0; i < moves.count; ++i) {
    tryBothPairs<Us>(board, moves[i]);
    UndoRecord undo;
    board.makeMove<Us>(moves[i], undo);
    MoveList answers;
    generateLegalMoves(board, answers);
    replies += answers.count;
    for (std::uint32_t j = 0; j < answers.count; ++j) tryBothPairs<Them>(board, answers[j]);
    board.unmakeMove<Us>(moves[i], undo);
  }
  return replies;
}

// Every word that parses must be one of the legal moves.
void checkParsedMoves(Board_0x88& board, const std::string& words) {
  MoveList moves;
  generateLegalMoves(board, moves);
  std::istringstream in(words);
  for (std::string word; in >> word;) {
    Move m = NoMove;
    if (!parseCoordinateMove(board, word.c_str(), m)) continue;
    bool listed = false;
    for (std::uint32_t i = 0; i < moves.count; ++i) listed = listed || moves[i] == m;
    require(listed);
  }
}

}  // namespace
}  // namespace torvy

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace torvy;
  static Board_0x88* board = new Board_0x88;
  static PerftTable* table = [] {
    auto* t = new PerftTable;
    std::ostringstream ignored;
    t->resize(0, "Perft hash", ignored);
    return t;
  }();

  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t lineEnd = input.find('\n');
  const std::string fen = input.substr(0, lineEnd);
  if (fen.find('\0') != std::string::npos || !setFromFen(*board, fen.c_str())) return 0;
  requireKeysMatch(*board);
  if (lineEnd != std::string::npos) checkParsedMoves(*board, input.substr(lineEnd + 1));

  const std::uint64_t replies = forSideToMove(*board, [&]<Color Us>() { return walkTwoPlies<Us>(*board); });
  table->clear();
  std::uint64_t nodes = 0;
  require(perftFromRoot(nodes, *board, *table, 2) == replies);
  return 0;
}
