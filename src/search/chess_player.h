// The owner of a game: the game board and record, the hash tables, the options and, later, the
// search threads. The front end drives it; the search borrows from it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "board/board.h"
#include "diagnostics/perft.h"
#include "eval/pawn_hash.h"
#include "search/engine_interface.h"
#include "search/search_clock.h"
#include "search/search_interface.h"
#include "search/tt_entry.h"
#include "tablebase/tablebase_state.h"

namespace torvy {

constexpr std::uint32_t MaxGameMoves = 1023;

class SearchThread;

class ChessPlayer final : public SearchInterface {
 public:
  ChessPlayer(SearchClock& clock, std::ostream& out);
  ~ChessPlayer();
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

  // The pool: the search never runs on the main thread, which stays free to read commands.
  void syncThreads(bool force);
  void startSearch();
  // Ends a running search; a search so stopped gives no move.
  void stopSearch();
  // True when no search thread is working, so that a published move is fully made.
  bool isIdle() const;

  // Thread 0's job: clock, book, search, then the move to the engine.
  void searchJob();
  void helperJob(std::uint32_t index);

  bool checkTimeout() override;
  void printAnalysisLine(unsigned depth, int score, const PvLine& line) override;
  void printSearchStats() override;

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

  TablebaseState tablebases;

  // Switches that commands flip while a search may read them.
  std::atomic<bool> useBook{true};
  bool outOfBook = false;
  Move ponderMove = NoMove;
  std::atomic<bool> randGame{false};
  std::atomic<bool> post{true};

  std::uint32_t maxCores;
  std::uint32_t cores = 1;
  std::uint32_t activeCores = 0;

 private:
  void createMissingTables();
  std::uint64_t totalNodes() const;

  bool firstNewGame = true;
  std::vector<std::unique_ptr<SearchThread>> threads;
  std::uint64_t lastTimeoutBucket = 0;
};

}  // namespace torvy
