// Random games: the counters against each other, the report's sums, and the command around them.
#include "diagnostics/random_games.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <numeric>

#include "board/board_helpers.h"
#include "frontend/line_reader.h"
#include "frontend/wb_engine.h"

namespace torvy {
namespace {

std::uint64_t sum(const std::uint64_t* values, std::size_t n) { return std::accumulate(values, values + n, 0ull); }

struct PlayedGames {
  RandomGameStats stats;
  std::string progress;
};

const PlayedGames& thousandGames() {
  static const PlayedGames played = [] {
    PlayedGames p;
    std::srand(7);
    Board_0x88 board;
    std::ostringstream out;
    playRandomGames(board, 1000, p.stats, out);
    p.stats.gatherLengths();
    p.progress = out.str();
    return p;
  }();
  return played;
}

// Exact, where the report's rounded percentages could hide a position or two.
TEST(RandomGames, CountersAddUpAndNeverCountTheImpossible) {
  const RandomGameStats& s = thousandGames().stats;
  std::uint64_t plies = 0;
  for (std::uint32_t i = 0; i <= MaxRandomGamePlies; ++i) plies += i * s.gameLength[i];
  std::uint64_t backRankPawns = 0;
  for (Color c : {White, Black}) backRankPawns += sum(s.presence[c][Pawn], 8) + sum(s.presence[c][Pawn] + 56, 8);
  struct Sum {
    const char* name;
    std::uint64_t value, expected;
  };
  const Sum sums[] = {
      {"games", s.games, 1000},
      {"game lengths", sum(s.gameLength, MaxRandomGamePlies + 1), 1000},
      {"length buckets", sum(s.lengthBucket, LengthBuckets), 1000},
      {"plies", plies, s.positions},
      {"moves of pieces", sum(s.movesOfPiece, 7), s.positions},
      {"captures of pieces", sum(s.capturesOfPiece, 7), s.captures + s.epCaptures},
      {"promotions into pieces", sum(s.promotionsIntoPiece, 7), s.promotions},
      {"white piece counts", sum(s.pieceCount[White], 17), s.positions},
      {"black piece counts", sum(s.pieceCount[Black], 17), s.positions},
      {"white kings", sum(s.presence[White][King], 64), s.positions},
      {"black kings", sum(s.presence[Black][King], 64), s.positions},
      // What random play can never do.
      {"moves of no piece", s.movesOfPiece[NoPiece], 0},
      {"kings captured", s.capturesOfPiece[King], 0},
      {"promotions into pawns and kings", s.promotionsIntoPiece[Pawn] + s.promotionsIntoPiece[King], 0},
      {"pawns on the back ranks", backRankPawns, 0},
      {"sides without a piece", s.pieceCount[White][0] + s.pieceCount[Black][0], 0},
      {"games without a move", s.gameLength[0], 0},
  };
  for (const Sum& c : sums) EXPECT_EQ(c.value, c.expected) << c.name;
  EXPECT_GT(std::min({s.captures, s.doubleSteps, s.castlings}), 0u) << "what a thousand games always contain";

  EXPECT_EQ(thousandGames().progress, std::string(50, '#'));
  std::ostringstream out;
  RandomGameStats few;
  Board_0x88 board;
  playRandomGames(board, 7, few, out);
  EXPECT_EQ(out.str(), std::string(7, '#')) << "fewer than fifty games: a mark for each";
}

// The numbers behind a line's last colon, brackets dropped.
std::vector<double> numbers(std::string line) {
  std::replace(line.begin(), line.end(), '[', ' ');
  std::replace(line.begin(), line.end(), ']', ' ');
  std::istringstream in(line.substr(line.rfind(':') + 1));
  std::vector<double> values;
  for (double v; in >> v;) values.push_back(v);
  return values;
}

double sumOfNumbers(const std::vector<std::string>& lines, std::size_t first, std::size_t end) {
  double total = 0;
  for (std::size_t i = first; i < end; ++i)
    for (double v : numbers(lines[i])) total += v;
  return total;
}

TEST(RandomGames, ReportHasItsBlocksInOrderAndItsPercentagesAddUp) {
  std::ostringstream out;
  printRandomGamesReport(thousandGames().stats, out);
  std::vector<std::string> lines = split(out.str(), '\n');
  ASSERT_EQ(lines.back(), "");
  lines.pop_back();
  ASSERT_EQ(lines.size(), 11u + 12 * 10 + 2 * 3 + 41);
  char total[80];
  std::snprintf(total, sizeof total, "Total games:                        %10d", 1000);
  EXPECT_EQ(lines[0], total);
  EXPECT_EQ(numbers(lines[9]).at(5), 0.0) << "no king is taken, in the sixth column: " << lines[9];
  // Ten lines of presence per colour and piece, 0 1 (White's pawns) first.
  auto presence = [&](int colour, int piece) { return std::size_t(11 + 10 * (6 * colour + piece - 1)); };
  for (int colour : {0, 1}) {
    EXPECT_EQ(lines[presence(colour, 1)], "Avg. presence of " + std::to_string(colour) + " 1:");
    EXPECT_EQ(lines[presence(colour, 6) + 9], "[100.0]") << "a king in every position";
    EXPECT_LT(numbers(lines[presence(colour, 1) + 9]).at(0), 100.0) << "pawns leave the board in some games";
  }
  EXPECT_EQ(lines[131], "Frequency of positions with given number of white pieces:");
  EXPECT_NEAR(sumOfNumbers(lines, 132, 134), 100.0, 0.5);
  EXPECT_EQ(lines[134], "Frequency of positions with given number of black pieces:");
  EXPECT_NEAR(sumOfNumbers(lines, 135, 137), 100.0, 0.5);
  EXPECT_EQ(lines[137], "Game length:");
  EXPECT_EQ(lines[138].substr(0, 12), "   0 ..   19");
  EXPECT_EQ(lines.back().substr(0, 12), " 780 ..  799");
  EXPECT_NEAR(sumOfNumbers(lines, 138, lines.size()), 100.0, 0.5);
}

// "randgames" plays on a board of its own: the game, the engine's colour and the random-move
// switch stay, and the start position is set up afterwards.
TEST(RandomGames, CommandLeavesTheStartPositionTheColourAndTheSwitch) {
  std::ostringstream out;
  WBEngine engine{out, stdin};
  for (const char* line : {"randgames 0", "randgames x"}) EXPECT_FALSE(engine.dispatch(line)) << line;
  EXPECT_EQ(out.str(), "");
  ASSERT_TRUE(engine.dispatch("setboard 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
  ASSERT_TRUE(engine.dispatch("usermove e2e4"));
  ASSERT_TRUE(engine.dispatch("randgame"));
  engine.engineColor = Black;
  out.str("");
  EXPECT_TRUE(engine.dispatch("randgames 3"));
  EXPECT_EQ(out.str().rfind("# Playing 3 random games ...\n###\ncalculate average values ...\nTotal games:", 0), 0u);
  EXPECT_EQ(engine.player.board.key(), testing::boardFrom(StartFen)->key());
  EXPECT_EQ(engine.player.gamePly, 0u);
  EXPECT_FALSE(engine.dispatch("undo")) << "the game before is gone";
  EXPECT_TRUE(engine.player.randGame);
  EXPECT_EQ(engine.engineColor.load(), Black);
}

}  // namespace
}  // namespace torvy
