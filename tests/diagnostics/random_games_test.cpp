// Random moves and random games: the counters against each other, the report's sums, and the
// commands around them.
#include "diagnostics/random_games.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <numeric>

#include "board/board_helpers.h"
#include "frontend/wb_engine.h"

namespace torvy {
namespace {

std::uint64_t sum(const std::uint64_t* values, std::size_t n) { return std::accumulate(values, values + n, std::uint64_t(0)); }

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

TEST(RandomGames, CountersAgreeWithEachOther) {
  const RandomGameStats& s = thousandGames().stats;
  EXPECT_EQ(s.games, 1000u);
  EXPECT_EQ(sum(s.movesOfPiece, 7), s.positions);
  EXPECT_EQ(sum(s.gameLength, MaxRandomGamePlies + 1), s.games);
  EXPECT_EQ(sum(s.lengthBucket, LengthBuckets), s.games);
  std::uint64_t plies = 0;
  for (std::uint32_t i = 0; i <= MaxRandomGamePlies; ++i) plies += i * s.gameLength[i];
  EXPECT_EQ(plies, s.positions);
  EXPECT_EQ(sum(s.capturesOfPiece, 7), s.captures + s.epCaptures);
  EXPECT_EQ(sum(s.promotionsIntoPiece, 7), s.promotions);
  for (Color c : {White, Black}) {
    EXPECT_EQ(sum(s.pieceCount[c], 17), s.positions);
    EXPECT_EQ(sum(s.presence[c][King], 64), s.positions);  // one king on every position
    EXPECT_EQ(s.pieceCount[c][0], 0u);
  }
  // What random play can never do.
  EXPECT_EQ(s.capturesOfPiece[King], 0u);
  EXPECT_EQ(s.promotionsIntoPiece[Pawn], 0u);
  EXPECT_EQ(s.promotionsIntoPiece[King], 0u);
  EXPECT_EQ(s.movesOfPiece[NoPiece], 0u);
  for (int file = 0; file < 8; ++file) {
    EXPECT_EQ(s.presence[White][Pawn][file], 0u);
    EXPECT_EQ(s.presence[White][Pawn][56 + file], 0u);
    EXPECT_EQ(s.presence[Black][Pawn][file], 0u);
    EXPECT_EQ(s.presence[Black][Pawn][56 + file], 0u);
  }
  // What a thousand games always contain.
  EXPECT_GT(s.captures, 0u);
  EXPECT_GT(s.doubleSteps, 0u);
  EXPECT_GT(s.castlings, 0u);
  EXPECT_EQ(s.gameLength[0], 0u);
}

TEST(RandomGames, ProgressMarksAboutFiftyTimes) {
  EXPECT_EQ(thousandGames().progress, std::string(50, '#'));
  std::ostringstream out;
  RandomGameStats stats;
  Board_0x88 board;
  playRandomGames(board, 7, stats, out);
  EXPECT_EQ(out.str(), std::string(7, '#'));  // fewer than fifty games: a mark for each
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
  const std::vector<std::string> lines = testing::linesOf(out.str());
  ASSERT_EQ(lines.size(), 11u + 12 * 10 + 2 * 3 + 41);
  char total[80];
  std::snprintf(total, sizeof total, "Total games:                        %10d", 1000);
  EXPECT_EQ(lines[0], total);
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
  double lengths = 0;
  for (std::size_t i = 138; i < lines.size(); ++i) lengths += numbers(lines[i]).at(0);
  EXPECT_NEAR(lengths, 100.0, 0.5);

  auto lineOf = [&](const std::string& label) {
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const auto& l) { return l.rfind(label, 0) == 0; });
    return found == lines.end() ? label : *found;
  };
  EXPECT_EQ(numbers(lineOf("Avg. captures of piece/game:")).at(5), 0.0) << "no king is taken";
  const std::vector<double> promotions = numbers(lineOf("Avg. promotions into piece/game:"));
  ASSERT_EQ(promotions.size(), 6u);
  EXPECT_EQ(promotions[0], 0.0);
  EXPECT_EQ(promotions[5], 0.0);
}

TEST(RandomMove, IsLegalAndFailsWithoutMoves) {
  auto board = testing::boardFrom("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");  // stalemate
  Move move = NoMove;
  EXPECT_FALSE(pickRandomMove(*board, move));
  board = testing::boardFrom(StartFen);
  MoveList legal;
  generateLegalMoves(*board, legal);
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(pickRandomMove(*board, move));
    bool found = false;
    for (std::uint32_t j = 0; j < legal.count; ++j) found |= legal[j] == move;
    EXPECT_TRUE(found) << moveToText(move);
  }
}

TEST(RandomCommands, RandgamesPlaysAndLeavesTheStartPositionAndTheSwitch) {
  std::ostringstream out;
  WBEngine engine{out, stdin};
  for (const char* line : {"randgames 0", "randgames -5", "randgames x"}) EXPECT_FALSE(engine.dispatch(line)) << line;
  EXPECT_EQ(out.str(), "");
  ASSERT_TRUE(engine.dispatch("setboard 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
  ASSERT_TRUE(engine.dispatch("usermove e2e4"));
  engine.engineColor = Black;
  out.str("");
  EXPECT_TRUE(engine.dispatch("randgames 3"));
  EXPECT_EQ(out.str().rfind("# Playing 3 random games ...\n###\ncalculate average values ...\nTotal games:", 0), 0u);
  EXPECT_EQ(engine.player.board.key(), testing::boardFrom(StartFen)->key());
  EXPECT_EQ(engine.player.gamePly, 0u);
  EXPECT_FALSE(engine.player.randGame);
  EXPECT_EQ(engine.engineColor.load(), Black);
  EXPECT_FALSE(engine.dispatch("undo"));  // the game before is gone
  EXPECT_TRUE(engine.dispatch("randgame"));
  EXPECT_TRUE(engine.dispatch("randgames 1"));
  EXPECT_TRUE(engine.player.randGame);
  EXPECT_TRUE(engine.dispatch("norandgame"));
  EXPECT_FALSE(engine.player.randGame);
}

}  // namespace
}  // namespace torvy
