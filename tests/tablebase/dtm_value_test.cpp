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
      {0, WhiteToMove, ResultDraw, 0},           {3, BlackToMove, ResultForbidden, 0},
      {4 * 9 + 1, WhiteToMove, ResultWhiteMates, 19}, {4 * 9 + 1, BlackToMove, ResultWhiteMates, 18},
      {4 * 5 + 2, WhiteToMove, ResultBlackMates, 10}, {4 * 5 + 2, BlackToMove, ResultBlackMates, 11},
      // Past 126 plies the unused combinations take over, and 252 breaks the rule once.
      {4, WhiteToMove, ResultWhiteMates, 129},   {7, BlackToMove, ResultWhiteMates, 128},
      {252, WhiteToMove, ResultWhiteMates, 253}, {252, BlackToMove, ResultWhiteMates, 254},
  };

  for (const Case& c : cases) {
    const DtmValue value = StoredByteValues[c.side][c.byte];
    EXPECT_EQ(dtmCode(value), c.code) << int(c.byte) << " side " << c.side;
    EXPECT_EQ(dtmPlies(value), c.plies) << int(c.byte) << " side " << c.side;
  }
}

}  // namespace
}  // namespace torvy
