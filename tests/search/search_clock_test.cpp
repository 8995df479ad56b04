#include "search/search_clock.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

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

namespace torvy {
namespace {

// The last budget line's number: "# set maxTime = N".
std::int32_t budget(SearchClock& clock, std::uint32_t gamePly, std::string* lines = nullptr) {
  std::ostringstream out;
  clock.computeMaxTime(gamePly, out);
  if (lines) *lines = out.str();
  return clock.maxTime;
}

TEST(SearchClock, BudgetIsAnEqualShareOfTheSessionWithTenPercentHeldBack) {
  SearchClock clock;
  std::string lines;
  EXPECT_EQ(budget(clock, 0, &lines), 675);
  EXPECT_EQ(lines,
            "# movesPerSession=40 timePerSession=30000 increment=0\n"
            "# ply=0 fullMoveNumber=1 remainingMoves=40 nSessions=1\n"
            "# total=30000 elapsed=0 remaining=30000 available=30000 max=675\n"
            "# set maxTime = 675\n");
  clock.accumulated = 29000;
  EXPECT_EQ(clock.remainingMovesAt(76), 2u) << "full move 39 is the one before the last";
  EXPECT_EQ(budget(clock, 78), 900) << "at the last move nearly all that remains may go";
  clock.accumulated = 0;
  EXPECT_EQ(clock.remainingMovesAt(80), 40u) << "full move 41 opens the second session";

  clock.movesPerSession = 0;
  clock.increment = 100;
  EXPECT_EQ(budget(clock, 0, &lines), 933);
  EXPECT_NE(lines.find("# total=30100 elapsed=0 remaining=30100 available=33200 max=933"), std::string::npos);

  clock.movesPerSession = 40;
  clock.increment = 0;
  clock.accumulated = 31000;
  EXPECT_LT(budget(clock, 10, &lines), 0) << "time used up";
  EXPECT_NE(lines.find("remaining=-1000"), std::string::npos) << lines;
}

TEST(SearchClock, FirstSearchOutOfBookGetsHalfAsMuchAgainOnce) {
  SearchClock clock;
  std::ostringstream out;
  bool outOfBook = false;
  clock.maxTime = 675;
  clock.correctMaxTimeOutOfBook(0, outOfBook, out);
  EXPECT_EQ(clock.maxTime, 1012);
  EXPECT_EQ(out.str(), "# out of book: corrected maxTime = 1012\n");
  EXPECT_TRUE(outOfBook);
  clock.correctMaxTimeOutOfBook(0, outOfBook, out);
  EXPECT_EQ(clock.maxTime, 1012);

  outOfBook = false;
  clock.maxTime = 100;
  clock.correctMaxTimeOutOfBook(70, outOfBook, out);  // full move 36: five moves left in the session
  EXPECT_EQ(clock.maxTime, 100);
  EXPECT_TRUE(outOfBook);
}

}  // namespace
}  // namespace torvy
