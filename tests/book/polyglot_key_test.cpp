#include "board/board_helpers.h"
#include "book/book_key.h"
#include "data_table.h"

namespace torvy {
namespace {

// Positions reached by play have the fields of their FEN (see the board tests).
TEST(PolyglotKey, PublishedAndHandDerivedKeys) {
  for (const testing::DataRow& row : testing::dataTable("polyglot_keys.txt"))
    EXPECT_EQ(polyglotKey(*testing::boardFrom(row[0].c_str())), std::stoull(row[1], nullptr, 16)) << row[0];
}

}  // namespace
}  // namespace torvy
