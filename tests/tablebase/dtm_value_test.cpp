#include "tablebase/dtm_value.h"

#include <gtest/gtest.h>

namespace torvy {
namespace {

constexpr int WhiteToMove = 0;
constexpr int BlackToMove = 1;

TEST(StoredByteTest, DecodesResultAndDistanceForEachSideToMove) {
  struct Case {
    std::uint8_t byte;
    int side;
    unsigned code;
    unsigned plies;
  };
  const Case cases[] = {
      {0, WhiteToMove, DrawCode, 0},          {0, BlackToMove, DrawCode, 0},
      {3, WhiteToMove, ForbiddenCode, 0},     {3, BlackToMove, ForbiddenCode, 0},
      {1, WhiteToMove, WhiteMatesCode, 1},    {1, BlackToMove, WhiteMatesCode, 0},
      {4 * 9 + 1, WhiteToMove, WhiteMatesCode, 19}, {4 * 9 + 1, BlackToMove, WhiteMatesCode, 18},
      {4 * 5 + 2, WhiteToMove, BlackMatesCode, 10}, {4 * 5 + 2, BlackToMove, BlackMatesCode, 11},
      {4, WhiteToMove, WhiteMatesCode, 129},  {4, BlackToMove, BlackMatesCode, 129},
      {7, WhiteToMove, BlackMatesCode, 128},  {7, BlackToMove, WhiteMatesCode, 128},
      {252, WhiteToMove, WhiteMatesCode, 253}, {252, BlackToMove, WhiteMatesCode, 254},
      {255, WhiteToMove, BlackMatesCode, 252}, {255, BlackToMove, WhiteMatesCode, 252},
  };
  for (const Case& c : cases) {
    const DtmValue value = StoredByteValues[c.side][c.byte];
    EXPECT_EQ(dtmCode(value), c.code) << int(c.byte) << " side " << c.side;
    EXPECT_EQ(dtmPlies(value), c.plies) << int(c.byte) << " side " << c.side;
  }
}

}  // namespace
}  // namespace torvy
