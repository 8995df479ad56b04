// Random moves, and random games from the start position with statistics about what they
// contain: a statistical check of the move generator and the draw rules.
#pragma once

#include <cstdint>
#include <ostream>

#include "board/board.h"

namespace torvy {

// A random game ends here at the latest: the game record holds no more moves.
constexpr std::uint32_t MaxRandomGamePlies = 1023;
constexpr std::uint32_t LengthBuckets = 40;
constexpr std::uint32_t PliesPerBucket = 20;

struct RandomGameStats {
  std::uint64_t games = 0;
  std::uint64_t positions = 0;  // moves made; start positions are not counted
  std::uint64_t captures = 0;   // normal moves onto an occupied square
  std::uint64_t promotions = 0;
  std::uint64_t castlings = 0;
  std::uint64_t epCaptures = 0;
  std::uint64_t doubleSteps = 0;
  std::uint64_t movesOfPiece[7] = {};
  std::uint64_t capturesOfPiece[7] = {};  // en passant counts a pawn here, not in captures
  std::uint64_t promotionsIntoPiece[7] = {};
  std::uint64_t gameLength[MaxRandomGamePlies + 1] = {};
  std::uint64_t lengthBucket[LengthBuckets] = {};
  std::uint64_t presence[2][7][64] = {};
  std::uint64_t pieceCount[2][17] = {};

  // Counts a move of the board's side to move before it is made.
  void countMove(const Board_0x88& board, Move move);
  // Counts the pieces of a position reached.
  void countPosition(const Board_0x88& board);
  // Gathers gameLength by steps of 20 plies; the last bucket takes every longer game too.
  void gatherLengths();
};

// One of the legal moves, chosen by rand; false when there is none.
bool pickRandomMove(Board_0x88& board, Move& out);

// Plays the games on the board, which is left on the last position of the last game.
void playRandomGames(Board_0x88& board, std::uint64_t count, RandomGameStats& stats, std::ostream& out);

// The whole command: a progress line, the games and the report.
void runRandomGames(Board_0x88& board, std::uint64_t count, std::ostream& out);

void printRandomGamesReport(const RandomGameStats& stats, std::ostream& out);

}  // namespace torvy
