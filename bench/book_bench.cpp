// Average cost of one book lookup in a book of 100,000 entries written to a temp file.
// Each lookup opens the file and binary-searches it on disk, as in a game.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "book/book.h"
#include "book/book_key.h"
#include "book/book_move.h"

using namespace torvy;

namespace {

constexpr std::size_t BookSize = 100000;
constexpr int PositionCount = 64;
constexpr int Rounds = 200;

std::uint16_t toBookMove(Move m) {
  const unsigned promotion = moveKind(m) == PromotionMove ? promotionPiece(m) - 1u : 0u;
  return makeBookMove(fromSquare(m), toSquare(m), promotion);
}

void playRandomMove(Board_0x88& board, std::mt19937_64& random) {
  MoveList legal;
  generateLegalMoves(board, legal);
  if (legal.count == 0) return;
  const Move m = legal[std::uint32_t(random() % legal.count)];
  UndoRecord undo;
  forSideToMove(board, [&]<Color Us>() { board.makeMove<Us>(m, undo); });
}

// Positions a few random moves deep, each with entries for its first legal moves.
std::vector<std::unique_ptr<Board_0x88>> makePositions(std::vector<BookEntry>& entries, std::mt19937_64& random) {
  std::vector<std::unique_ptr<Board_0x88>> positions;
  for (int i = 0; i < PositionCount; ++i) {
    auto board = std::make_unique<Board_0x88>();
    setStartPosition(*board);
    for (int ply = 0; ply < 2 + i % 10; ++ply) playRandomMove(*board, random);
    MoveList legal;
    generateLegalMoves(*board, legal);
    const Key key = polyglotKey(*board);
    for (std::uint32_t j = 0; j < std::min(legal.count, 4u); ++j)
      entries.push_back({key, toBookMove(legal[j]), std::uint16_t(j + 1), 0});
    positions.push_back(std::move(board));
  }
  return positions;
}

void writeBook(const std::string& path, std::vector<BookEntry>& entries) {
  std::sort(entries.begin(), entries.end(), [](const BookEntry& a, const BookEntry& b) { return a.key < b.key; });
  std::ofstream out(path, std::ios::binary);
  for (const BookEntry& entry : entries) {
    BookEntryBytes bytes;
    encodeBookEntry(entry, bytes);
    out.write(reinterpret_cast<const char*>(bytes), BookEntrySize);
  }
}

}  // namespace

int main() {
  std::mt19937_64 random(20261123);
  std::vector<BookEntry> entries;
  const auto positions = makePositions(entries, random);
  while (entries.size() < BookSize) entries.push_back({random(), 0x031C, 1, 0});  // e2e4 under random keys

  const std::string path =
      (std::filesystem::temp_directory_path() / ("torvy-book-bench-" + std::to_string(::getpid()) + ".bin")).string();
  writeBook(path, entries);
  Book book(path.c_str());

  // Half of the positions are taken out of the book by moving on one ply: lookups that miss.
  std::vector<std::unique_ptr<Board_0x88>> misses;
  for (int i = 0; i < PositionCount; i += 2) {
    auto board = std::make_unique<Board_0x88>(*positions[i]);
    playRandomMove(*board, random);
    misses.push_back(std::move(board));
  }

  // Wall time counts the waits of a busy machine too; CPU time, user and system, is what a
  // lookup itself costs, and is the figure the limit applies to.
  struct Cost {
    double wallMicros;
    double cpuMicros;
  };
  auto measure = [&](const std::vector<std::unique_ptr<Board_0x88>>& boards, int& found) {
    found = 0;
    const auto wallStart = std::chrono::steady_clock::now();
    const std::clock_t cpuStart = std::clock();
    for (int round = 0; round < Rounds; ++round) {
      for (const auto& board : boards) {
        Move move = NoMove;
        found += lookupBookMove(book, *board, move);
      }
    }
    const double lookups = double(Rounds * boards.size());
    const std::chrono::duration<double, std::micro> wall = std::chrono::steady_clock::now() - wallStart;
    const double cpu = double(std::clock() - cpuStart) * 1e6 / CLOCKS_PER_SEC;
    return Cost{wall.count() / lookups, cpu / lookups};
  };
  int hits = 0;
  int missed = 0;
  const Cost hit = measure(positions, hits);
  const Cost miss = measure(misses, missed);
  std::filesystem::remove(path);

  std::printf("book entries: %llu\n", static_cast<unsigned long long>(book.entries));
  std::printf("lookup with a move: %.2f us CPU, %.2f us wall (%d of %d found)\n", hit.cpuMicros, hit.wallMicros, hits,
              Rounds * PositionCount);
  std::printf("lookup without:     %.2f us CPU, %.2f us wall (%d of %zu found)\n", miss.cpuMicros, miss.wallMicros,
              missed, Rounds * misses.size());
  const bool fastEnough = hit.cpuMicros < 50 && miss.cpuMicros < 50;
  std::printf("%s: average lookup under 50 us\n", fastEnough ? "PASS" : "FAIL");
  return fastEnough ? 0 : 1;
}
