#include "eval/king_safety.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "data_table.h"

namespace torvy {
namespace {

// Rows of data/shelter_patterns.txt: the king's own pawns, its square and colour, the pattern.
TEST(KingSafetyTest, ShelterPatterns) {
  for (const testing::DataRow& row : testing::dataTable("shelter_patterns.txt")) {
    Bitboard pawns = 0;
    std::istringstream names(row[0]);
    for (std::string name; names >> name;)
      if (name != "-") pawns |= Bitboard(1) << toSquare64(testing::squareNamed(name));
    const Color color = row[2] == "white" ? White : Black;
    EXPECT_EQ(shelterPattern(pawns, testing::squareNamed(row[1]), color), std::stoul(row[3], nullptr, 2))
        << row[0] << " | " << row[1];
  }
}

}  // namespace
}  // namespace torvy
