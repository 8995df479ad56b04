// Average cost of evaluate, in nanoseconds, over the positions of random games: once with a
// warm pawn hash and once with the position's pawn hash slot emptied before each call.
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "eval/evaluate.h"

using namespace torvy;

namespace {

constexpr int Games = 40;
constexpr int MaxPlies = 200;
constexpr int Rounds = 7;

using Game = std::vector<Move>;

void play(Board_0x88& board, Move m) {
  UndoRecord undo;
  forSideToMove(board, [&]<Color Us>() { board.makeMove<Us>(m, undo); });
}

std::vector<Game> randomGames(Board_0x88& board) {
  std::mt19937 random(2024);
  std::vector<Game> games(Games);
  for (Game& game : games) {
    setStartPosition(board);
    for (int ply = 0; ply < MaxPlies && board.halfmoveClock < 100; ++ply) {
      MoveList moves;
      generateLegalMoves(board, moves);
      if (moves.count == 0) break;
      game.push_back(moves[random() % moves.count]);
      play(board, game.back());
    }
  }
  return games;
}

// The thread's own processor time, which other programs on the machine don't inflate.
double threadNanoseconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec * 1e9 + now.tv_nsec;
}

// Nanoseconds of one replay of all games with the visit at each position.
template <class Visit>
double replay(Board_0x88& board, const std::vector<Game>& games, Visit visit) {
  const double start = threadNanoseconds();
  for (const Game& game : games) {
    setStartPosition(board);
    for (Move m : game) {
      play(board, m);
      visit();
    }
  }
  return threadNanoseconds() - start;
}

template <class Visit>
double fastest(Board_0x88& board, const std::vector<Game>& games, Visit visit) {
  double best = 1e300;
  for (int round = 0; round < Rounds; ++round) best = std::min(best, replay(board, games, visit));
  return best;
}

}  // namespace

int main() {
  initEvaluation();
  Board_0x88 board;
  PawnHashTable pawnHash;
  std::ostringstream sink;
  pawnHash.resize(32, "Pawn hash", sink);
  const std::vector<Game> games = randomGames(board);
  std::size_t positions = 0;
  for (const Game& game : games) positions += game.size();

  volatile int checksum = 0;
  auto evaluateHere = [&] { checksum = checksum + evaluate(board, pawnHash, -32000, 32000); };
  auto emptySlot = [&] { pawnHash.cluster(board.pawnKey())->clear(); };

  const double moves = fastest(board, games, [] {});
  replay(board, games, evaluateHere);
  pawnHash.flushHits();
  pawnHash.hits = 0;
  const double warm = fastest(board, games, evaluateHere);
  pawnHash.flushHits();
  const double hitShare = double(pawnHash.hits) / double(positions * Rounds);
  const double emptying = fastest(board, games, emptySlot);
  const double cold = fastest(board, games, [&] {
    emptySlot();
    evaluateHere();
  });

  std::printf("positions: %zu from %d random games\n", positions, Games);
  std::printf("evaluate, warm pawn hash:  %6.1f ns (pawn hash hits %.0f%%)\n", (warm - moves) / positions,
              hitShare * 100);
  std::printf("evaluate, pawn hash miss:  %6.1f ns\n", (cold - emptying) / positions);
  return 0;
}
