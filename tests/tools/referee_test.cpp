// The referee's rules and tally on their own, then a match between stand-in engines over either
// protocol: each game end must be found on our own board, each fault charged to the side that made it.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "data_table.h"
#include "scratch_folder.h"
#include "tools/match.h"

namespace torvy {
namespace {

// The ending of that name, or none for "-".
std::optional<Ending> endingNamed(const std::string& name) {
  for (int e = 0; e <= int(Ending::Crash); ++e)
    if (name == endingName(Ending(e))) return Ending(e);
  return std::nullopt;
}

TEST(RefereeGame, EachMoveIsCheckedAndTheGameEndedOnTheBoard) {
  for (const testing::DataRow& row : testing::dataTable("referee_games.txt")) {
    SCOPED_TRACE(row[0] + " " + row[1]);
    GameBoard board(1000, 100);
    std::istringstream opening(row[0]);
    for (std::string move; opening >> move;) ASSERT_TRUE(board.place(move));
    const Color mover = board.sideToMove();
    const Millis used = std::stoi(row[2]);
    const std::optional<Ending> fault = endingNamed(row[3]);
    EXPECT_EQ(board.play(row[1], used), fault);
    if (fault) continue;
    EXPECT_EQ(board.clockMs(mover), 1100 - used);
    Color winner = White;
    EXPECT_EQ(board.end(winner), endingNamed(row[4]));
    EXPECT_EQ(winner, row[5] == "white" ? White : row[5] == "black" ? Black : NoColor);
  }
}

TEST(RefereeTally, EachResultAndOverrunCountsForTheEngineThatMadeIt) {
  // Rows of data/referee_tallies.txt: engine A's and B's wins, draws, losses, illegal moves,
  // losses on time and crashes after one game.
  auto counts = [](const EngineTally& t) {
    return std::vector{t.wins, t.draws, t.losses, t.illegal, t.timeouts, t.crashes};
  };
  auto numbers = [](const std::string& text) {
    std::vector<int> values;
    for (const std::string& number : split(text, ' ')) values.push_back(std::stoi(number));
    return values;
  };
  for (const testing::DataRow& row : testing::dataTable("referee_tallies.txt")) {
    SCOPED_TRACE(row[2]);
    GameResult result;
    result.winner = row[1] == "white" ? White : row[1] == "black" ? Black : NoColor;
    result.ending = endingNamed(row[2]).value();
    Tally tally;
    tally.count(result, std::stoi(row[0]));
    EXPECT_EQ(counts(tally.engines[0]), numbers(row[3]));
    EXPECT_EQ(counts(tally.engines[1]), numbers(row[4]));
    EXPECT_EQ(tally.clean(), row[5] == "clean");
    EXPECT_EQ(tally.tooLong, result.ending == Ending::Length ? 1 : 0);
  }

  // A move beyond maxTime plus 5% and 2 centiseconds is an overrun, and a fault as our clock
  // measures it; the engine's own search time is reported, not judged.
  const struct {
    Millis usedMs;
    int maxTimeCs;
    bool overrun;
  } moves[] = {{125, 10, false}, {126, 10, true}, {20, 0, false}, {21, 0, true}, {1070, 100, false}, {1073, 100, true}};
  TimeUse use;
  for (const auto& move : moves)
    EXPECT_EQ(use.record(move.usedMs, move.maxTimeCs, "here"), move.overrun) << move.usedMs;
  EXPECT_EQ(std::tuple(use.overruns, use.worstExcessMs), std::tuple(3, Millis(3)));
  GameResult result;
  result.searchTime[1] = use;
  Tally tally;
  tally.count(result, 0);
  EXPECT_TRUE(tally.clean());
  result.time[1] = use;
  tally.count(result, 0);
  EXPECT_FALSE(tally.clean());
}

TEST(RefereeReply, TheEnginesLinesAreReadAlikeOverEitherProtocol) {
  // The last line ends the reply.
  struct Case {
    bool uci;
    const char* lines;
    Reply::Kind kind;
    std::string text;
    int maxTimeCs, searchCs;
  };
  const Case cases[] = {
      {false, "# set maxTime = 12|# total nodes = 500, QS nodes = 9 (1%), time = 9, nps = 5|move e2e4",
       Reply::Kind::Move, "e2e4", 12, 9},
      {false, "# set maxTime = 12|# out of book: corrected maxTime = 30|move e7e8q", Reply::Kind::Move, "e7e8q", 30,
       -1},
      {false, "Error (unknown command): level", Reply::Kind::Refused, "Error (unknown command): level", 0, -1},
      {true,
       "info string set maxTime = 12|info depth 3 pv g1f3|info string total nodes = 5, time = 9|bestmove g1f3 ponder "
       "g8f6",
       Reply::Kind::Move, "g1f3", 12, 9},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines);
    Reply reply;
    std::istringstream lines(c.lines);
    for (std::string line; std::getline(lines, line, '|');)
      EXPECT_EQ(readReplyLine(line, c.uci, reply), lines.peek() == EOF) << line;
    EXPECT_EQ(std::tuple(reply.kind, reply.text, reply.maxTimeCs, reply.searchCs),
              std::tuple(c.kind, c.text, c.maxTimeCs, c.searchCs));
  }
}

// Engine A over xboard hangs when asked; B over UCI checks that it is sent the whole game and
// mates, over its announced time and in two pieces. Fool's mate twice, colours reversed.
TEST(RefereeMatch, StandInEnginesOverEitherProtocolAreJudged) {
  const testing::ScratchFolder folder;
  auto engine = [&](const std::string& name, const std::string& cases) {
    folder.write(name, "#!/bin/bash\nwhile read -r command argument; do case \"$command\" in\n" + cases +
                           "quit) exit 0 ;;\nesac; done\n");
    chmod(folder.file(name).c_str(), 0755);
    return folder.file(name);
  };
  Options options;
  options.engines[0] = engine("a.sh", "ping) echo \"pong $argument\" ;;\ngo) exec sleep 30 ;;\n");
  options.engines[1] =
      engine("b.sh",
             "uci) echo uciok ;;\nisready) echo readyok ;;\n"
             "position) [ \"$argument\" = \"startpos moves f2f3 e7e5 g2g4\" ] || exit 3 ;;\n"
             "go) echo 'info string set maxTime = 10'; sleep 0.3; printf 'bestmove d8'; sleep 0.05; echo h4 ;;\n");
  options.uci[1] = true;
  options.workDir = folder.path();
  options.games = 2;  // at 1 second a game, a second and a fifth for a move that never comes
  options.baseMs = 1000;
  options.incrementMs = 0;
  options.graceMs = 200;
  std::ostringstream out;
  Match match(options, {{"fool", {"f2f3", "e7e5", "g2g4"}}}, out);
  match.run();
  EXPECT_FALSE(match.report(out));
  for (const char* expected :
       {"game 1/2 [fool] A-B: 0-1 checkmate, 4 plies", "game 2/2 [fool] B-A: 1-0 crash (engine A gave no move, killed)",
        "games=2 wins=0 draws=0 losses=2 illegal=0 timeouts=0 crashes=1", " overruns=1 "})
    EXPECT_NE(out.str().find(expected), std::string::npos) << expected << " in\n" << out.str();
}

}  // namespace
}  // namespace torvy
