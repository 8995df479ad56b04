// The opening book: a Polyglot file, searched on disk at each lookup and never held in memory,
// so the file can be replaced between moves.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

#include "board/board.h"
#include "book/book_entry.h"

namespace torvy {

constexpr std::size_t BookPathSize = 256;
constexpr std::size_t MaxBookChoices = 256;

class Book {
 public:
  explicit Book(const char* path) { setPath(path); }

  // Stores up to 255 characters of the path and takes the entry count from the file size
  // again; a file that cannot be measured counts as empty.
  void setPath(const char* newPath);

  char path[BookPathSize] = {};
  std::uint64_t entries = 0;  // as last measured; only its low 32 bits are searched
  std::FILE* file = nullptr;  // open only during a lookup
};

// Creates the book of the process and seeds rand from the time of day, so that the weighted
// choice differs from game to game; the engine calls it once, on the first lookup.
std::unique_ptr<Book> createBook(const char* path);
unsigned bookRandomSeed();

// True and a legal move of the board if the position has a usable entry in the book.
// A missing, unreadable or damaged book gives false, and so does an entry that names no legal
// move; only a read that fails with a reason during the search prints "ERROR: " and it.
bool lookupBookMove(Book& book, Board_0x88& board, Move& out);

// The weighted random choice among the entries of one position: weight 0 never wins against
// a positive sum, and if every weight is 0 the first entry is taken.
const BookEntry& chooseBookEntry(const BookEntry* entries, std::uint32_t count);

}  // namespace torvy
