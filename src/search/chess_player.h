// The owner of a game: the game board and record, the hash tables, the options and, later, the
// search threads. The front end drives it; the search borrows from it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

#include "board/board.h"
#include "book/book.h"
#include "diagnostics/perft.h"
#include "eval/pawn_hash.h"
#include "search/console.h"
#include "search/engine_interface.h"
#include "search/search_clock.h"
#include "search/search_interface.h"
#include "search/tt_entry.h"
#include "tablebase/tablebase_state.h"

namespace torvy {

constexpr std::uint32_t MaxGameMoves = 1023;
// A path option holds this many characters with its terminating zero; longer values are cut.
constexpr std::size_t OptionPathSize = 256;

using OptionPath = char[OptionPathSize];

void copyOptionPath(OptionPath& field, std::string_view value);

// Hardware that reports no concurrency still has the one core the engine runs on.
constexpr std::uint32_t usableCores(unsigned reported) { return reported == 0 ? 1 : reported; }

class SearchThread;

class ChessPlayer final : public SearchInterface {
 public:
  ChessPlayer(SearchClock& clock, Console& console);
  ~ChessPlayer();
  ChessPlayer(const ChessPlayer&) = delete;
  ChessPlayer& operator=(const ChessPlayer&) = delete;

  // Fresh tables (both "# new size of " lines print again after the first game) and the start position.
  void newGame();
  // Empty tables of the options' sizes, as a new game has.
  void renewTables();

  bool recordFull() const { return recordLength() >= MaxGameMoves; }
  // Appends to the game record and makes the move on the game board; the record must have room.
  void commitMove(Move move);
  // Takes back the last plies of the record; false, and nothing taken back, if there are fewer
  // since the start or the last set-up.
  bool takeBack(std::uint32_t plies);
  // A new set-up position, where the record starts again. On a text that can't be read there
  // is no position at all until the next good set-up or new game.
  bool setPosition(const char* fen);
  // The same, for a front end that sends the whole game each time: the ply count starts again.
  bool setFreshPosition(const char* fen);

  // Positions that FEN allows but no game reaches; the engine doesn't search them.
  bool kingMissing() const;
  bool kingCapturable() const;

  // Prints the result line of a mate, stalemate or dead position and answers whether it ended.
  bool checkGameEnd();
  // Whether this move brings a repetition or the fifty-move rule about.
  bool shouldOfferDraw(Move move);

  void setCores(std::uint32_t wanted);

  // The option setters. Each replaces something a search uses, so a running search is stopped
  // first; the command loop starts it again when the engine is still to move.
  void setTtHashSizeMB(std::uint32_t sizeMB);
  void setPawnHashSizeMB(std::uint32_t sizeMB);
  void setGtbCacheSizeMB(std::uint32_t sizeMB);
  void setGtbPath(std::string_view path);
  void setBookFilePath(std::string_view path);
  // Tears down the tablebases and, for "gaviota", sets them up again from a new path, or from
  // gtbPath when none is given.
  void setupTablebases(std::string_view type, const char* path = nullptr);

  // The random games report; the game in progress is lost and the start position set up.
  void playRandomGames(std::uint64_t count);

  // The pool: the search never runs on the main thread, which stays free to read commands.
  // A pool that has to be rebuilt is stopped first.
  void syncThreads(bool force);
  // The transposition table, then the pawn hash, each in its option's size if it is missing.
  void createMissingTables();
  void startSearch();
  // Ends a running search; a search so stopped gives no move.
  void stopSearch();
  // True when no search thread is working, so that a published move is fully made.
  bool isIdle() const;

  // Thread 0's job: clock, a random move, the book or a search, then the move to the engine.
  void searchJob();
  void helperJob(std::uint32_t index);

  bool checkTimeout() override;
  void printAnalysisLine(unsigned depth, int score, const PvLine& line) override;
  void printSearchStats() override;
  void printSearchNote(std::string_view line) override;

  SearchClock& clock;
  Console& console;
  EngineInterface* engine = nullptr;

  Board_0x88 board;
  // Plies since the start of the game, set-ups included, for the clock's count of full moves.
  std::uint32_t gamePly = 0;
  // The record holds the moves since the start or the last set-up, whose gamePly this is.
  std::uint32_t recordStartPly = 0;
  Move gameMoves[MaxGameMoves] = {};
  UndoRecord gameUndo[MaxGameMoves] = {};
  bool hasPosition = true;

  TranspositionTable ttHash;
  std::uint32_t ttHashSizeMB = 256;
  PerftTable perftHash;
  std::uint32_t perftHashSizeMB = 64;
  PawnHashTable pawnHash;
  std::uint32_t pawnHashSizeMB = 32;

  TablebaseState tablebases;
  std::uint32_t gtbCacheSizeMB = 16;
  OptionPath gtbPath = "C:/gtb";

  // Created on the first lookup, which also seeds rand from the clock.
  std::unique_ptr<Book> book;
  OptionPath bookFilePath = "book.bin";

  // Switches that commands flip while a search may read them.
  std::atomic<bool> useBook{true};
  bool outOfBook = false;
  Move ponderMove = NoMove;
  std::atomic<bool> randGame{false};
  std::atomic<bool> post{true};
  // Every search job hands the engine a move, stopped or not, NoMove when there is none.
  std::atomic<bool> alwaysGivesMove{false};

  std::uint32_t maxCores;
  std::uint32_t cores = 1;
  std::uint32_t activeCores = 0;

 private:
  std::ostream& out() { return console.stream(); }
  void openBook();
  // Thread 0's own board, set to the game's position: the random and book moves are found there.
  Board_0x88& quickMoveBoard();
  // A random legal move of the game's position; false when there is none.
  bool randomMove(Move& move);
  bool bookMove(Move& move);
  Move searchForMove();
  void stopHelpers();
  std::uint64_t totalNodes() const;
  std::uint32_t recordLength() const { return gamePly - recordStartPly; }
  void startRecord(std::uint32_t ply);

  bool firstNewGame = true;
  std::vector<std::unique_ptr<SearchThread>> threads;
};

}  // namespace torvy
