#include "search/search_clock.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace torvy {
namespace {

// The time given so far, less the time on the clock: full move 41 opens a second session, and
// without sessions the increments count for every full move.
TEST(SearchClock, RemainingTimeReplacesTheUsedTime) {
  SearchClock clock;
  clock.setRemainingTime(30000, 0);
  EXPECT_EQ(clock.accumulated, 0);
  clock.setRemainingTime(12345, 1);  // still full move 1
  EXPECT_EQ(clock.accumulated, 30000 - 12345);
  clock.setRemainingTime(20000, 80);
  EXPECT_EQ(clock.accumulated, 60000 - 20000);

  clock.movesPerSession = 0;
  clock.increment = 100;
  clock.setRemainingTime(30100, 0);
  EXPECT_EQ(clock.accumulated, 0);
  clock.setRemainingTime(-500, 20);  // over the time: more used than given
  EXPECT_EQ(clock.accumulated, 30000 + 11 * 100 + 500);
}

// The last budget line's number: "# set maxTime = N".
std::int32_t budget(SearchClock& clock, std::uint32_t gamePly, std::string* lines = nullptr) {
  std::ostringstream out;
  clock.computeMaxTime(gamePly, out);
  if (lines) *lines = out.str();
  return clock.maxTime;
}

// The first move's budget, 675 of 30000 centiseconds for 40 moves, shows in the protocol's game.
TEST(SearchClock, BudgetIsAnEqualShareOfTheSessionWithTenPercentHeldBack) {
  SearchClock clock;
  std::string lines;
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

// The protocol's game shows the first correction, 675 to 1012; none comes again, nor when fewer
// than ten moves of the session are left.
TEST(SearchClock, OutOfBookCorrectionOnlyOnceAndNotNearTheSessionEnd) {
  SearchClock clock;
  std::ostringstream out;
  bool outOfBook = true;
  clock.maxTime = 675;
  clock.correctMaxTimeOutOfBook(0, outOfBook, out);
  EXPECT_EQ(clock.maxTime, 675);
  outOfBook = false;
  clock.correctMaxTimeOutOfBook(70, outOfBook, out);  // full move 36: five moves left in the session
  EXPECT_EQ(clock.maxTime, 675);
  EXPECT_TRUE(outOfBook);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace torvy
