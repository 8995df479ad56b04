#include "search/search_clock.h"

#include <gtest/gtest.h>

namespace torvy {
namespace {

TEST(SearchClock, SessionsBegunByAFullMove) {
  SearchClock clock;
  EXPECT_EQ(clock.sessionsUpTo(1), 1u);
  EXPECT_EQ(clock.sessionsUpTo(40), 1u);
  EXPECT_EQ(clock.sessionsUpTo(41), 2u);
  EXPECT_EQ(clock.sessionsUpTo(81), 3u);
  clock.movesPerSession = 0;
  EXPECT_EQ(clock.sessionsUpTo(500), 1u);
}

TEST(SearchClock, RemainingTimeReplacesTheUsedTime) {
  SearchClock clock;
  clock.setRemainingTime(30000, 0);
  EXPECT_EQ(clock.accumulated, 0);
  clock.setRemainingTime(12345, 1);  // still full move 1
  EXPECT_EQ(clock.accumulated, 30000 - 12345);
  clock.setRemainingTime(20000, 80);  // full move 41 opens the second session
  EXPECT_EQ(clock.accumulated, 60000 - 20000);

  clock.movesPerSession = 0;
  clock.increment = 100;
  clock.setRemainingTime(30100, 0);
  EXPECT_EQ(clock.accumulated, 0);
  clock.setRemainingTime(-500, 20);  // over the time: more used than given
  EXPECT_EQ(clock.accumulated, 30000 + 11 * 100 + 500);
}

}  // namespace
}  // namespace torvy
