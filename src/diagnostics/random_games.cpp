#include "diagnostics/random_games.h"

#include <cstdio>
#include <cstdlib>

#include "board/draw_rules.h"
#include "board/fen.h"
#include "board/movegen.h"

namespace torvy {

namespace {

// How many of each piece type a side starts with, for the presence percentages.
constexpr int StartingNumber[7] = {0, 8, 2, 2, 2, 1, 1};

// Text in a printf format; a finished line is flushed.
template <class... Args>
void printFormatted(std::ostream& out, const char* format, Args... args) {
  char text[160];
  const int length = std::snprintf(text, sizeof text, format, args...);
  out << text;
  if (length > 0 && text[length - 1] == '\n') out.flush();
}

template <Color Us>
void makeGameMove(Board_0x88& board, Move move) {
  // The game is never taken back: each one starts again from the start position.
  UndoRecord undo;
  board.makeMove<Us>(move, undo);
}

// Plays one game from the start position to its first repeated position, the fifty-move rule,
// dead material, no legal move or a full game record.
void playOneGame(Board_0x88& board, RandomGameStats& stats) {
  setStartPosition(board);
  ++stats.games;
  Move move = NoMove;
  while (board.historyIndex < MaxRandomGamePlies && pickRandomMove(board, move)) {
    ++stats.positions;
    stats.countMove(board, move);
    forSideToMove(board, [&]<Color Us>() { makeGameMove<Us>(board, move); });
    stats.countPosition(board);
    DrawCode code = NoDrawCode;
    if (drawStatus(board, code)) break;
  }
  ++stats.gameLength[board.historyIndex];
}

double perGame(std::uint64_t count, const RandomGameStats& stats) { return double(count) / double(stats.games); }

void printPieceAverages(const char* label, const std::uint64_t (&counts)[7], const RandomGameStats& stats,
                        std::ostream& out) {
  out << label;
  for (PieceType p = Pawn; p <= King; ++p)
    printFormatted(out, p == Pawn ? "%6.2f" : " %6.2f", perGame(counts[p], stats));
  out << std::endl;
}

void printPresence(Color c, PieceType p, const RandomGameStats& stats, std::ostream& out) {
  const double scale = 100.0 / (StartingNumber[p] * double(stats.positions));
  printFormatted(out, "Avg. presence of %d %d:\n", int(c), int(p));
  std::uint64_t sum = 0;
  for (int rank = 7; rank >= 0; --rank) {
    for (int file = 0; file < 8; ++file) {
      const std::uint64_t count = stats.presence[c][p][rank * 8 + file];
      sum += count;
      printFormatted(out, file == 0 ? "%5.1f" : " %5.1f", double(count) * scale);
    }
    out << std::endl;
  }
  printFormatted(out, "[%5.1f]\n", double(sum) * scale);
}

void printPieceCounts(Color c, const RandomGameStats& stats, std::ostream& out) {
  printFormatted(out, "Frequency of positions with given number of %s pieces:\n", c == White ? "white" : "black");
  for (int first : {1, 9}) {
    for (int n = first; n < first + 8; ++n)
      printFormatted(out, n == first ? "%5.1f" : " %5.1f",
                     double(stats.pieceCount[c][n]) * 100.0 / double(stats.positions));
    out << std::endl;
  }
}

}  // namespace

void RandomGameStats::countMove(const Board_0x88& board, Move move) {
  const Square88 to = toSquare(move);
  ++movesOfPiece[board.pieceOn[fromSquare(move)]];
  switch (moveKind(move)) {
    case PromotionMove:
      // A capturing promotion counts as a promotion alone.
      ++promotions;
      ++promotionsIntoPiece[promotionPiece(move)];
      break;
    case CastlingMove: ++castlings; break;
    case EnPassantMove:
      ++epCaptures;
      ++capturesOfPiece[Pawn];
      break;
    default:
      if (board.pieceOn[to] != NoPiece) {
        ++captures;
        ++capturesOfPiece[board.pieceOn[to]];
      } else if (moveDetail(move) == 1) {
        ++doubleSteps;
      }
  }
}

void RandomGameStats::countPosition(const Board_0x88& board) {
  for (Color c : {White, Black}) {
    ++pieceCount[c][board.totalCount(c)];
    for (Square88 s : board.pieceList[c])
      if (onBoard(s)) ++presence[c][board.pieceOn[s]][toSquare64(s)];
  }
}

void RandomGameStats::gatherLengths() {
  for (std::uint32_t plies = 0; plies <= MaxRandomGamePlies; ++plies) {
    const std::uint32_t bucket = plies / PliesPerBucket;
    lengthBucket[bucket < LengthBuckets ? bucket : LengthBuckets - 1] += gameLength[plies];
  }
}

bool pickRandomMove(Board_0x88& board, Move& out) {
  MoveList moves;
  generateLegalMoves(board, moves);
  if (moves.count == 0) return false;
  out = moves[std::uint32_t(std::rand() & 0x7fffffff) % moves.count];
  return true;
}

void playRandomGames(Board_0x88& board, std::uint64_t count, RandomGameStats& stats, std::ostream& out) {
  // About fifty progress marks; a run of fewer games marks every one.
  const std::uint64_t markEvery = count / 50 == 0 ? 1 : count / 50;
  for (std::uint64_t game = 0; game < count; ++game) {
    playOneGame(board, stats);
    if (game % markEvery == 0) out << '#' << std::flush;
  }
}

void runRandomGames(Board_0x88& board, std::uint64_t count, std::ostream& out) {
  printFormatted(out, "# Playing %lu random games ...\n", static_cast<unsigned long>(count));
  RandomGameStats stats;
  playRandomGames(board, count, stats, out);
  out << '\n' << "calculate average values ..." << std::endl;
  stats.gatherLengths();
  printRandomGamesReport(stats, out);
}

void printRandomGamesReport(const RandomGameStats& stats, std::ostream& out) {
  printFormatted(out, "Total games:                        %10lu\n", static_cast<unsigned long>(stats.games));
  printFormatted(out, "Total positions:                    %10lu\n", static_cast<unsigned long>(stats.positions));
  printFormatted(out, "Avg. moves/game:                    %6.2f\n", perGame(stats.positions, stats));
  printFormatted(out, "Avg. captures/game:                 %6.2f\n", perGame(stats.captures, stats));
  printFormatted(out, "Avg. promotions/game:               %6.2f\n", perGame(stats.promotions, stats));
  printFormatted(out, "Avg. castlings/game:                %6.2f\n", perGame(stats.castlings, stats));
  printFormatted(out, "Avg. ep captures/game:              %6.2f\n", perGame(stats.epCaptures, stats));
  printFormatted(out, "Avg. double steps/game:             %6.2f\n", perGame(stats.doubleSteps, stats));
  printPieceAverages("Avg. moves of piece/game:           ", stats.movesOfPiece, stats, out);
  printPieceAverages("Avg. captures of piece/game:        ", stats.capturesOfPiece, stats, out);
  printPieceAverages("Avg. promotions into piece/game:    ", stats.promotionsIntoPiece, stats, out);
  for (Color c : {White, Black})
    for (PieceType p = Pawn; p <= King; ++p) printPresence(c, p, stats, out);
  for (Color c : {White, Black}) printPieceCounts(c, stats, out);
  out << "Game length:" << std::endl;
  for (std::uint32_t b = 0; b < LengthBuckets; ++b)
    printFormatted(out, "%4d .. %4d: %5.2f\n", int(b * PliesPerBucket), int(b * PliesPerBucket + PliesPerBucket - 1),
                   double(stats.lengthBucket[b]) * 100.0 / double(stats.games));
}

}  // namespace torvy
