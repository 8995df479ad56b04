// "protover", "option", "cores" and "egtpath" through the protocol, as a front end sees them.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <utility>

#include "frontend/line_reader.h"
#include "frontend/transcript.h"
#include "search/chess_player.h"

namespace torvy::testing {
namespace {

// The features in the order they are sent, one to a line.
Lines featureList(const std::string& tt, const std::string& pawn, const std::string& gtbCache,
                  const std::string& gtbPath, const std::string& bookPath) {
  Lines list;
  for (const std::string& feature :
       split("ping=1|setboard=1|playother=1|usermove=1|colors=0|sigint=0|sigterm=0|analyze=1|name=0|nps=0|debug=1|"
             "egt=\"gaviota\"|smp=1|variants=\"normal\"|option=\"ttHashSizeMB -spin " +
                 tt + " 1 2048\"|option=\"pawnHashSizeMB -spin " + pawn + " 1 2048\"|option=\"gtbCacheSizeMB -spin " +
                 gtbCache + " 0 256\"|option=\"gtbPath -path " + gtbPath + "\"|option=\"bookFilePath -path " +
                 bookPath + "\"|myname=\"Torvy 0.6.51\"|done=1",
             '|'))
    list.push_back("feature " + feature);
  return list;
}

Lines defaultFeatures() { return featureList("256", "32", "16", "C:/gtb", "book.bin"); }

// The features show the number asked for, not the table's size; a path takes the text up to a
// second "=", or nothing, and is cut to 255 characters.
TEST(ProtocolProtover, AnnouncesTheDefaultsAndThenTheCurrentValues) {
  const std::string longPath(300, 'b');
  const Lines lines = xboardSession(
      "protover 2\n"
      "option ttHashSizeMB=100\noption pawnHashSizeMB=2\noption gtbCacheSizeMB=0\n"
      "option gtbPath\negtpath gaviota /nonexistent;/none\n"
      "option bookFilePath=a=b\noption bookFilePath=" +
      longPath +
      "\n"
      "protover 2\n");
  const Lines expected = joined({
      defaultFeatures(),
      {"# setting option: ttHashSizeMB=100", "# new size of TT hash: 64 MB"},
      {"# setting option: pawnHashSizeMB=2", "# new size of Pawn hash: 2 MB"},
      {"# setting option: gtbCacheSizeMB=0"},
      {"# setting option: gtbPath=", "# initializing TB: type=gaviota path=/nonexistent;/none"},
      {"# setting option: bookFilePath=a", "# setting option: bookFilePath=" + longPath},
      featureList("100", "2", "0", "/nonexistent;/none", longPath.substr(0, 255)),
  });
  EXPECT_EQ(lines, expected);
}

// Each refusal is an error line and the command's failure; the values stay the defaults.
TEST(ProtocolOption, RefusesValuesOutOfRangeUnknownNamesAndOtherTablebases) {
  const std::pair<std::string, std::string> refusals[] = {
      {"option ttHashSizeMB=0", "Error (illegal value for 'ttHashSizeMB' option): 0"},
      {"option ttHashSizeMB=3000", "Error (illegal value for 'ttHashSizeMB' option): 3000"},
      {"option pawnHashSizeMB=abc", "Error (illegal value for 'pawnHashSizeMB' option): abc"},
      {"option gtbCacheSizeMB=257", "Error (illegal value for 'gtbCacheSizeMB' option): 257"},
      {"option gtbCacheSizeMB=-1", "Error (illegal value for 'gtbCacheSizeMB' option): -1"},
      {"option gtbCacheSizeMB", "Error (illegal value for 'gtbCacheSizeMB' option): "},
      {"option nosuch=1", "Error (unknown option name): nosuch"},
      {"option TTHashSizeMB=8", "Error (unknown option name): TTHashSizeMB"},
      {"option ttHashSizeMB=8 x", "Error (too many arguments, expected at most 1): option ttHashSizeMB=8 x"},
      {"egtpath syzygy /tb", "# invalid TB type: syzygy"},
      {"egtpath gaviota", "Error (missing arguments, expected at least 2): egtpath gaviota"},
  };
  std::string commands;
  Lines expected;
  for (const auto& [command, error] : refusals) {
    commands += command + "\n";
    expected.push_back(error);
    expected.push_back(refused(command)[0]);
  }
  EXPECT_EQ(xboardSession(commands + "protover 2\n"), joined({expected, defaultFeatures()}));
}

// "cores" needs a positive number and is capped by the hardware. Before "feature done=1" the
// pool is made, so the core count of "cores" shows in the "current" of the next report.
TEST(ProtocolCores, RefusesNonPositiveCountsAndTheAnnouncementBuildsThePool) {
  const std::string max = std::to_string(usableCores(std::thread::hardware_concurrency()));
  const Lines expected = joined({
      refused("cores 0"),
      refused("cores x"),
      {"# will now use " + max + " cores (requested=1000, current=1, max=" + max + ")"},
      {"Error (missing arguments, expected at least 1): cores"},
      refused("cores"),
      defaultFeatures(),
      {"# will now use 1 cores (requested=1, current=" + max + ", max=" + max + ")"},
  });
  EXPECT_EQ(xboardSession("cores 0\ncores x\ncores 1000\ncores\nprotover 2\ncores 1\n"), expected);
}

// A resize under a running search stops it first; the loop then starts it again on the new
// table, which shows as a second thinking line of depth 1. No stopped search gives a move.
TEST(ProtocolOption, ResizeDuringASearchRestartsTheSearch) {
  const auto run = runEngineScripted({{"xboard\nlevel 40 600 0\ngo\n", 0, "1 "},
                                      {"option ttHashSizeMB=8\negtpath gaviota /nonexistent\n", 0, "1 "},
                                      {"force\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const std::size_t resized = findLine(run.lines, "# new size of TT hash: 8 MB");
  ASSERT_LT(resized, run.lines.size());
  EXPECT_EQ(run.lines[resized - 1], "# setting option: ttHashSizeMB=8");
  EXPECT_LT(findLine(run.lines, "# initializing TB: type=gaviota path=/nonexistent", resized), run.lines.size());
  EXPECT_LT(findLine(run.lines, "1 ", resized), run.lines.size());
  EXPECT_EQ(countStarting(run.lines, "move "), 0);
}

// The report needs both kings, but the side not to move may be in check; no search runs there.
TEST(ProtocolEval, ReportsWhereNoSearchRuns) {
  const Lines lines = xboardSession(
      "setboard 7k/8/8/8/8/8/1p6/K6Q w - - 0 1\neval\ngo\nanalyze\n"
      "setboard 4k3/8/8/8/8/8/P7/8 w - -\neval\n");
  EXPECT_LT(findLine(lines, "Phase =   4          Scaling factor = 1.00          Total evaluation =   1188"),
            lines.size());
  const std::string capturable = "Error (illegal position): the side not to move is in check";
  const Lines refusals = joined({{capturable}, refused("go"), {capturable}, refused("analyze")});
  EXPECT_NE(std::search(lines.begin(), lines.end(), refusals.begin(), refusals.end()), lines.end());
  EXPECT_EQ(Lines(lines.end() - 2, lines.end()),
            joined({{"Error (illegal position): a king is missing"}, refused("eval")}));
}

}  // namespace
}  // namespace torvy::testing
