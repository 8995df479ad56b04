#include "book/book_reader.h"

#include <cerrno>

#include "book_helpers.h"

namespace torvy {
namespace {

using testing::encodeBook;
using testing::TempFile;

TEST(BookReader, ReadsAnyEntryAcrossBlocks) {
  std::vector<BookEntry> entries;
  for (std::uint32_t i = 0; i < 600; ++i)
    entries.push_back({Key(i) << 40 | i, std::uint16_t(i), std::uint16_t(i * 3), i});
  TempFile file("reader.bin", encodeBook(entries));
  std::FILE* stream = std::fopen(file.path().c_str(), "rb");
  ASSERT_NE(stream, nullptr);
  BookReader reader(stream);
  for (std::uint64_t index : {599u, 0u, 255u, 256u, 300u, 257u, 511u, 512u, 1u}) {
    BookEntry entry;
    ASSERT_TRUE(reader.read(index, entry)) << index;
    EXPECT_EQ(entry.key, entries[index].key);
    EXPECT_EQ(entry.move, entries[index].move);
    EXPECT_EQ(entry.weight, entries[index].weight);
    EXPECT_EQ(entry.learn, entries[index].learn);
  }
  // Past the end, in the last block and beyond it, the file simply ends.
  BookEntry entry;
  EXPECT_FALSE(reader.read(600, entry));
  EXPECT_EQ(errno, 0);
  EXPECT_FALSE(reader.read(5000, entry));
  EXPECT_EQ(errno, 0);
  EXPECT_TRUE(reader.read(599, entry));
  std::fclose(stream);
}

}  // namespace
}  // namespace torvy
