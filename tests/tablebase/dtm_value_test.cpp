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
      {0, WhiteToMove, ResultDraw, 0},          {0, BlackToMove, ResultDraw, 0},
      {3, WhiteToMove, ResultForbidden, 0},     {3, BlackToMove, ResultForbidden, 0},
      {1, WhiteToMove, ResultWhiteMates, 1},    {1, BlackToMove, ResultWhiteMates, 0},
      {4 * 9 + 1, WhiteToMove, ResultWhiteMates, 19}, {4 * 9 + 1, BlackToMove, ResultWhiteMates, 18},
      {4 * 5 + 2, WhiteToMove, ResultBlackMates, 10}, {4 * 5 + 2, BlackToMove, ResultBlackMates, 11},
      {4, WhiteToMove, ResultWhiteMates, 129},  {4, BlackToMove, ResultBlackMates, 129},
      {7, WhiteToMove, ResultBlackMates, 128},  {7, BlackToMove, ResultWhiteMates, 128},
      {252, WhiteToMove, ResultWhiteMates, 253}, {252, BlackToMove, ResultWhiteMates, 254},
      {255, WhiteToMove, ResultBlackMates, 252}, {255, BlackToMove, ResultWhiteMates, 252},
  };
  for (const Case& c : cases) {
    const DtmValue value = StoredByteValues[c.side][c.byte];
    EXPECT_EQ(dtmCode(value), c.code) << int(c.byte) << " side " << c.side;
    EXPECT_EQ(dtmPlies(value), c.plies) << int(c.byte) << " side " << c.side;
  }
}

}  // namespace
}  // namespace torvy
