#include <gtest/gtest.h>

#include <sstream>

#include "search/tt_entry.h"

namespace torvy {
namespace {

void fill(TranspositionTable& table) {
  for (std::uint32_t i = 0; i < table.entryCount; ++i) table.at(i).key.store(i + 1);
}

bool allEmpty(TranspositionTable& table) {
  for (std::uint32_t i = 0; i < table.entryCount; ++i)
    if (!table.at(i).isEmpty()) return false;
  return true;
}

// A table made again keeps nothing of the one before, whether its memory is reused (same size)
// or not, and whether the old one was released first (as "new" does) or not (as "hash" does).
TEST(HashTableTest, ATableMadeAgainIsEmpty) {
  std::ostringstream sink;
  TranspositionTable table;
  table.resize(1, "TT hash", sink);
  fill(table);
  table.release();
  EXPECT_FALSE(table.exists());
  table.resize(1, "TT hash", sink);
  EXPECT_EQ(table.entryCount, 65536u);
  EXPECT_TRUE(allEmpty(table));

  fill(table);
  table.resize(1, "TT hash", sink);
  EXPECT_TRUE(allEmpty(table));

  fill(table);
  table.release();
  table.resize(2, "TT hash", sink);
  EXPECT_EQ(table.entryCount, 131072u);
  EXPECT_EQ(table.indexMask, 131072u / 4 - 1);
  EXPECT_TRUE(allEmpty(table));
}

}  // namespace
}  // namespace torvy
