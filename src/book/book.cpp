#include "book/book.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "board/movegen.h"
#include "book/book_key.h"
#include "book/book_move.h"
#include "book/book_reader.h"
#include "search/console.h"

namespace torvy {

namespace {

// Keeps Book::file open for the span of one lookup.
class OpenBookFile {
 public:
  explicit OpenBookFile(Book& book) : book_(book) { book_.file = std::fopen(book_.path, "rb"); }
  ~OpenBookFile() {
    if (book_.file) std::fclose(book_.file);
    book_.file = nullptr;
  }
  OpenBookFile(const OpenBookFile&) = delete;
  OpenBookFile& operator=(const OpenBookFile&) = delete;

  explicit operator bool() const { return book_.file != nullptr; }

 private:
  Book& book_;
};

void reportReadError() {
  if (errno == 0) return;
  printLine(std::string("ERROR: ") + std::strerror(errno));
}

// Any entry of the key: the file may hold several, and the search stops at the first it meets.
bool findKey(BookReader& reader, std::uint32_t count, Key key, std::int64_t& found) {
  std::int64_t lo = 0;
  std::int64_t hi = std::int64_t(count) - 1;
  while (lo <= hi) {
    const std::int64_t mid = (lo + hi + 1) / 2;
    BookEntry entry;
    if (!reader.read(std::uint64_t(mid), entry)) {
      reportReadError();
      return false;
    }
    if (entry.key == key) {
      found = mid;
      return true;
    }
    if (entry.key > key) {
      hi = mid - 1;
    } else {
      lo = mid + 1;
    }
  }
  return false;
}

// The entry at mid, then its equals below it going down, then those above it going up.
// Returns the number collected, or -1 if a read failed.
int collectEntries(BookReader& reader, std::uint64_t count, Key key, std::int64_t mid,
                   BookEntry (&out)[MaxBookChoices]) {
  std::uint32_t n = 0;
  if (!reader.read(std::uint64_t(mid), out[n++])) return -1;
  for (std::int64_t i = mid - 1; i >= 0 && n < MaxBookChoices; --i) {
    if (!reader.read(std::uint64_t(i), out[n])) return -1;
    if (out[n].key != key) break;
    ++n;
  }
  for (std::uint64_t i = std::uint64_t(mid) + 1; i < count && n < MaxBookChoices; ++i) {
    if (!reader.read(i, out[n])) return -1;
    if (out[n].key != key) break;
    ++n;
  }
  return int(n);
}

// The legal move that the book move names, so that a damaged entry or a key collision can
// never put an impossible move on the board.
bool matchLegalMove(Board_0x88& board, Move decoded, Move& out) {
  if (isNoMove(decoded)) return false;
  MoveList legal;
  generateLegalMoves(board, legal);
  for (std::uint32_t i = 0; i < legal.count; ++i) {
    if (sameMove(legal[i], decoded)) {
      out = legal[i];
      return true;
    }
  }
  return false;
}

}  // namespace

void Book::setPath(const char* newPath) {
  std::strncpy(path, newPath, BookPathSize - 1);
  path[BookPathSize - 1] = '\0';
  struct stat info;
  entries = ::stat(path, &info) == 0 ? std::uint64_t(info.st_size) / BookEntrySize : 0;
}

unsigned bookRandomSeed() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const auto millisecondsOfDay = duration_cast<milliseconds>(now - floor<days>(now)).count();
  return unsigned(std::uint64_t(millisecondsOfDay) * std::uint64_t(std::time(nullptr)));
}

std::unique_ptr<Book> createBook(const char* path) {
  std::srand(bookRandomSeed());
  return std::make_unique<Book>(path);
}

const BookEntry& chooseBookEntry(const BookEntry* entries, std::uint32_t count) {
  std::uint32_t total = 0;
  for (std::uint32_t i = 0; i < count; ++i) total += entries[i].weight;
  if (total == 0) return entries[0];
  const std::uint32_t r = std::uint32_t(std::rand() & 0x7fffffff) % total;
  // r is below the total, so the walk ends on an entry.
  std::uint32_t i = 0;
  for (std::uint32_t sum = entries[0].weight; r >= sum; sum += entries[++i].weight) {
  }
  return entries[i];
}

bool lookupBookMove(Book& book, Board_0x88& board, Move& out) {
  const Key key = polyglotKey(board);
  BookEntry found[MaxBookChoices];
  int count = 0;
  {
    OpenBookFile open(book);
    if (!open) return false;
    BookReader reader(book.file);
    std::int64_t mid = 0;
    if (!findKey(reader, std::uint32_t(book.entries), key, mid)) return false;
    count = collectEntries(reader, book.entries, key, mid, found);
  }
  if (count <= 0) return false;
  const BookEntry& chosen = chooseBookEntry(found, std::uint32_t(count));
  return matchLegalMove(board, decodeBookMove(board, chosen.move), out);
}

}  // namespace torvy
