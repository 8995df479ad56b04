#include "search/chess_player.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <utility>

#include "board/attacks.h"
#include "board/draw_rules.h"
#include "board/fen.h"
#include "board/movegen.h"
#include "diagnostics/random_games.h"
#include "search/search_thread.h"

namespace torvy {

namespace {

// The game board moves by the side to move, whose colour only the board knows at run time.
void makeOnBoard(Board_0x88& board, Move move, UndoRecord& undo) {
  forSideToMove(board, [&]<Color Us>() { board.makeMove<Us>(move, undo); });
}

// Unmakes the move of the side that is not to move now.
void unmakeOnBoard(Board_0x88& board, Move move, const UndoRecord& undo) {
  forSideToMove(board, [&]<Color Us>() { board.unmakeMove<opposite(Us)>(move, undo); });
}

bool sideToMoveInCheck(const Board_0x88& board) {
  CheckInfo info;
  return forSideToMove(board, [&]<Color Us>() { return findCheck<Us>(board, info); });
}

bool sideNotToMoveInCheck(const Board_0x88& board) {
  CheckInfo info;
  return forSideToMove(board, [&]<Color Us>() { return findCheck<opposite(Us)>(board, info); });
}

}  // namespace

void copyOptionPath(OptionPath& field, std::string_view value) {
  const std::size_t length = std::min(value.size(), OptionPathSize - 1);
  std::memcpy(field, value.data(), length);
  field[length] = '\0';
}

ChessPlayer::ChessPlayer(SearchClock& clock, Console& console)
    : clock(clock), console(console), maxCores(usableCores(std::thread::hardware_concurrency())) {}

ChessPlayer::~ChessPlayer() {
  stopSearch();
  threads.clear();
}

void ChessPlayer::newGame() {
  const bool first = std::exchange(firstNewGame, false);
  if (first)
    createMissingTables();
  else
    renewTables();
  syncThreads(!first);
  setStartPosition(board);
  startRecord(0);
  outOfBook = false;
}

void ChessPlayer::renewTables() {
  stopSearch();
  ttHash.release();
  pawnHash.release();
  createMissingTables();
}

void ChessPlayer::startRecord(std::uint32_t ply) {
  gamePly = ply;
  recordStartPly = ply;
  hasPosition = true;
}

void ChessPlayer::commitMove(Move move) {
  const std::uint32_t index = recordLength();
  gameMoves[index] = move;
  makeOnBoard(board, move, gameUndo[index]);
  ++gamePly;
}

bool ChessPlayer::takeBack(std::uint32_t plies) {
  if (recordLength() < plies) return false;
  for (std::uint32_t i = 0; i < plies; ++i) {
    --gamePly;
    unmakeOnBoard(board, gameMoves[recordLength()], gameUndo[recordLength()]);
  }
  return true;
}

bool ChessPlayer::setPosition(const char* fen) {
  // The ply count runs on for the clock; the record and its room start afresh.
  startRecord(gamePly);
  // A failed set-up leaves the board half filled: the front end has no such board either.
  hasPosition = setFromFen(board, fen);
  return hasPosition;
}

bool ChessPlayer::setFreshPosition(const char* fen) {
  gamePly = 0;
  return setPosition(fen);
}

bool ChessPlayer::kingMissing() const {
  return board.kingSquare(White) == NoSquare || board.kingSquare(Black) == NoSquare;
}

bool ChessPlayer::kingCapturable() const { return sideNotToMoveInCheck(board); }

bool ChessPlayer::checkGameEnd() {
  MoveList moves;
  generateLegalMoves(board, moves);
  bool ended = true;
  if (moves.count == 0 && sideToMoveInCheck(board)) {
    out() << (board.sideToMove == Black ? "1-0 {White wins by checkmate}" : "0-1 {Black wins by checkmate}")
          << std::endl;
  } else if (moves.count == 0) {
    out() << "1/2-1/2 {Stalemate}" << std::endl;
  } else {
    // Repetition and the fifty-move rule are only claimed by a draw offer, never declared here.
    DrawCode code = NoDrawCode;
    drawStatus(board, code);
    ended = code == InsufficientMaterialDraw;
    if (ended) out() << "1/2-1/2 {Draw by insufficient material}" << std::endl;
  }
  return ended;
}

bool ChessPlayer::shouldOfferDraw(Move move) {
  // Only the board is asked, so the game record needs no room for the trial move.
  UndoRecord undo;
  makeOnBoard(board, move, undo);
  MoveList moves;
  generateLegalMoves(board, moves);
  DrawCode code = NoDrawCode;
  const bool offer = moves.count > 0 && drawStatus(board, code) && (code == FiftyMoveDraw || code == RepetitionDraw);
  unmakeOnBoard(board, move, undo);
  return offer;
}

void ChessPlayer::setCores(std::uint32_t wanted) {
  cores = std::min(wanted, maxCores);
  out() << "# will now use " << cores << " cores (requested=" << wanted << ", current=" << activeCores
        << ", max=" << maxCores << ")" << std::endl;
}

void ChessPlayer::setTtHashSizeMB(std::uint32_t sizeMB) {
  stopSearch();
  ttHashSizeMB = sizeMB;
  ttHash.resize(sizeMB, "TT hash", out());
}

void ChessPlayer::setPawnHashSizeMB(std::uint32_t sizeMB) {
  stopSearch();
  pawnHashSizeMB = sizeMB;
  pawnHash.resize(sizeMB, "Pawn hash", out());
}

void ChessPlayer::setGtbCacheSizeMB(std::uint32_t sizeMB) {
  stopSearch();
  gtbCacheSizeMB = sizeMB;
  setupTablebases("gaviota");
}

void ChessPlayer::setGtbPath(std::string_view path) {
  stopSearch();
  copyOptionPath(gtbPath, path);
  setupTablebases("gaviota");
}

// The first lookup creates the book from bookFilePath; until then the field alone changes.
void ChessPlayer::setBookFilePath(std::string_view path) {
  stopSearch();
  copyOptionPath(bookFilePath, path);
  if (book) book->setPath(bookFilePath);
}

void ChessPlayer::setupTablebases(std::string_view type, const char* path) {
  stopSearch();
  if (type == "gaviota" && path != nullptr) copyOptionPath(gtbPath, path);
  tablebases.setup(type, gtbPath, gtbCacheSizeMB);
}

bool ChessPlayer::randomMove(Move& move) { return pickRandomMove(quickMoveBoard(), move); }

// Random games run on the game board itself, so a search that reads it is stopped first.
void ChessPlayer::playRandomGames(std::uint64_t count) {
  stopSearch();
  const bool previous = randGame.exchange(true);
  runRandomGames(board, count, out());
  randGame = previous;
  setStartPosition(board);
  startRecord(0);
}

}  // namespace torvy
