// The owner of a game: the game board and record, the hash tables, the options and, later, the
// search threads. The front end drives it; the search borrows from it.
#pragma once

#include <cstdint>
#include <ostream>

#include "board/board.h"
#include "diagnostics/perft.h"
#include "eval/pawn_hash.h"
#include "search/engine_interface.h"
#include "search/search_clock.h"
#include "search/tt_entry.h"

namespace torvy {

constexpr std::uint32_t MaxGameMoves = 1023;

class ChessPlayer {
 public:
  ChessPlayer(SearchClock& clock, std::ostream& out);
  ChessPlayer(const ChessPlayer&) = delete;
  ChessPlayer& operator=(const ChessPlayer&) = delete;

  // Fresh tables (both "# new size of " lines print again after the first game) and the start position.
  void newGame();

  bool recordFull() const { return gamePly >= MaxGameMoves; }
  // Appends to the game record and makes the move on the game board; the record must have room.
  void commitMove(Move move);
  // Takes back the last plies of the record; false, and nothing taken back, if there are fewer
  // since the start or the last set-up.
  bool takeBack(std::uint32_t plies);
  // A new set-up position; on a text that can't be read the game stays as it was.
  bool setPosition(const char* fen);

  // Prints the result line of a mate, stalemate or dead position and answers whether it ended.
  bool checkGameEnd();
  // Whether this move brings a repetition or the fifty-move rule about.
  bool shouldOfferDraw(Move move);

  void setCores(std::uint32_t wanted);

  // The search threads come with the search; until then the pool is always idle.
  bool isIdle() const { return true; }
  void startSearch() {}
  void stopSearch() {}

  SearchClock& clock;
  std::ostream& out;
  EngineInterface* engine = nullptr;

  Board_0x88 board;
  std::uint32_t gamePly = 0;
  Move gameMoves[MaxGameMoves] = {};
  UndoRecord gameUndo[MaxGameMoves] = {};
  // No record reaches behind a set-up position, so undo stops here.
  std::uint32_t firstUndoablePly = 0;

  TranspositionTable ttHash;
  std::uint32_t ttHashSizeMB = 256;
  PerftTable perftHash;
  std::uint32_t perftHashSizeMB = 64;
  PawnHashTable pawnHash;
  std::uint32_t pawnHashSizeMB = 32;

  bool useBook = true;
  bool outOfBook = false;
  Move ponderMove = NoMove;
  bool randGame = false;
  bool post = true;

  std::uint32_t maxCores;
  std::uint32_t cores = 1;
  std::uint32_t activeCores = 0;

 private:
  bool firstNewGame = true;
};

}  // namespace torvy
