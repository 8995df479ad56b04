// "protover", "option", "cores" and "egtpath" through the protocol, as a front end sees them.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "frontend/transcript.h"
#include "search/chess_player.h"

namespace torvy::testing {
namespace {

Lines refused(const std::string& command) { return {"# command \"" + command + "\" returned an error code "}; }

Lines featureList(const std::string& tt, const std::string& pawn, const std::string& gtbCache, const std::string& gtbPath,
                  const std::string& bookPath) {
  Lines list;
  for (const std::string& feature : std::initializer_list<std::string>
       {"ping=1", "setboard=1", "playother=1", "usermove=1", "colors=0", "sigint=0", "sigterm=0", "analyze=1", "name=0",
        "nps=0", "debug=1", "egt=\"gaviota\"", "smp=1", "variants=\"normal\"",
        "option=\"ttHashSizeMB -spin " + tt + " 1 2048\"", "option=\"pawnHashSizeMB -spin " + pawn + " 1 2048\"",
        "option=\"gtbCacheSizeMB -spin " + gtbCache + " 0 256\"", "option=\"gtbPath -path " + gtbPath + "\"",
        "option=\"bookFilePath -path " + bookPath + "\"", "myname=\"Torvy 0.6.51\"", "done=1"})
    list.push_back("feature " + feature);
  return list;
}

TEST(ProtocolProtover, AnnouncesTheDefaultsAndThenTheCurrentValues) {
  const Lines lines = xboardSession(
      "protover 2\n"
      "option ttHashSizeMB=100\noption pawnHashSizeMB=2\noption gtbCacheSizeMB=0\n"
      "option gtbPath=/tb/a;/tb/b\noption bookFilePath=my.bin\n"
      "protover 2\n");
  const Lines expected = joined({
      featureList("256", "32", "16", "C:/gtb", "book.bin"),
      {"# setting option: ttHashSizeMB=100", "# new size of TT hash: 64 MB"},
      {"# setting option: pawnHashSizeMB=2", "# new size of Pawn hash: 2 MB"},
      {"# setting option: gtbCacheSizeMB=0"},
      {"# setting option: gtbPath=/tb/a;/tb/b"},
      {"# setting option: bookFilePath=my.bin"},
      featureList("100", "2", "0", "/tb/a;/tb/b", "my.bin"),  // the number asked for, not the table's size
  });
  EXPECT_EQ(lines, expected);
}

// Before "feature done=1" the tables and the pool are made, so a changed core count shows in
// the "current" of the next report.
TEST(ProtocolProtover, BuildsThePoolBeforeItIsDone) {
  const std::uint32_t max = usableCores(std::thread::hardware_concurrency());
  const std::string used = std::to_string(std::min<std::uint32_t>(2, max));
  const Lines lines = xboardSession("cores 2\nprotover 2\ncores 1\n");
  ASSERT_EQ(lines.size(), 23u);
  EXPECT_EQ(lines.back(), "# will now use 1 cores (requested=1, current=" + used + ", max=" + std::to_string(max) + ")");
}

TEST(ProtocolOption, RefusesValuesOutOfRangeAndUnknownNames) {
  const Lines lines = xboardSession(
      "option ttHashSizeMB=0\noption ttHashSizeMB=3000\noption pawnHashSizeMB=abc\n"
      "option gtbCacheSizeMB=257\noption gtbCacheSizeMB=-1\noption ttHashSizeMB\n"
      "option nosuch=1\noption TTHashSizeMB=8\noption ttHashSizeMB=8 x\n"
      "protover 2\n");
  const Lines expected = joined({
      {"Error (illegal value for 'ttHashSizeMB' option): 0"}, refused("option ttHashSizeMB=0"),
      {"Error (illegal value for 'ttHashSizeMB' option): 3000"}, refused("option ttHashSizeMB=3000"),
      {"Error (illegal value for 'pawnHashSizeMB' option): abc"}, refused("option pawnHashSizeMB=abc"),
      {"Error (illegal value for 'gtbCacheSizeMB' option): 257"}, refused("option gtbCacheSizeMB=257"),
      {"Error (illegal value for 'gtbCacheSizeMB' option): -1"}, refused("option gtbCacheSizeMB=-1"),
      {"Error (illegal value for 'ttHashSizeMB' option): "}, refused("option ttHashSizeMB"),
      {"Error (unknown option name): nosuch"}, refused("option nosuch=1"),
      {"Error (unknown option name): TTHashSizeMB"}, refused("option TTHashSizeMB=8"),
      {"Error (too many arguments, expected at most 1): option ttHashSizeMB=8 x"}, refused("option ttHashSizeMB=8 x"),
      featureList("256", "32", "16", "C:/gtb", "book.bin"),
  });
  EXPECT_EQ(lines, expected);
}

TEST(ProtocolOption, PathsTakeTheTextUpToASecondEqualsOrNothing) {
  const std::string longPath(300, 'b');
  const Lines lines = xboardSession("option bookFilePath=a=b\noption gtbPath\noption bookFilePath=" + longPath +
                                    "\nprotover 2\n");
  ASSERT_EQ(lines.size(), 24u);
  EXPECT_EQ(lines[0], "# setting option: bookFilePath=a");
  EXPECT_EQ(lines[1], "# setting option: gtbPath=");
  EXPECT_EQ(lines[2], "# setting option: bookFilePath=" + longPath);
  EXPECT_EQ(lines[20], "feature option=\"gtbPath -path \"");
  EXPECT_EQ(lines[21], "feature option=\"bookFilePath -path " + longPath.substr(0, 255) + "\"");
}

TEST(ProtocolCores, NeedsAPositiveNumberAndIsCappedByTheHardware) {
  const std::uint32_t max = usableCores(std::thread::hardware_concurrency());
  const std::string m = std::to_string(max);
  const Lines lines = xboardSession("cores 0\ncores x\ncores 1000\ncores\n");
  const Lines expected = joined({
      refused("cores 0"),
      refused("cores x"),
      {"# will now use " + m + " cores (requested=1000, current=1, max=" + m + ")"},
      {"Error (missing arguments, expected at least 1): cores"},
      refused("cores"),
  });
  EXPECT_EQ(lines, expected);
}

TEST(ProtocolEgtpath, AcceptsOnlyGaviotaAndStoresThePath) {
  const Lines lines = xboardSession("egtpath syzygy /tb\negtpath gaviota\negtpath gaviota /nonexistent;/none\nprotover 2\n");
  const Lines head = joined({
      {"# invalid TB type: syzygy"},
      refused("egtpath syzygy /tb"),
      {"Error (missing arguments, expected at least 2): egtpath gaviota"},
      refused("egtpath gaviota"),
      {"# initializing TB: type=gaviota path=/nonexistent;/none"},
  });
  ASSERT_EQ(lines.size(), head.size() + 21);
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + std::ptrdiff_t(head.size())), head);
  EXPECT_EQ(lines[head.size() + 17], "feature option=\"gtbPath -path /nonexistent;/none\"");
}

// A resize under a running search stops it first; the loop then starts it again on the new
// table, which shows as a second thinking line of depth 1.
TEST(ProtocolOption, ResizeDuringASearchRestartsTheSearch) {
  const auto run = runEngineScripted({{"xboard\nlevel 40 600 0\ngo\n", 0, "1 "},
                                      {"option ttHashSizeMB=8\negtpath gaviota /nonexistent\n", 0, "1 "},
                                      {"force\n"}});
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const auto resized = std::find(run.lines.begin(), run.lines.end(), "# new size of TT hash: 8 MB");
  ASSERT_NE(resized, run.lines.end());
  EXPECT_EQ(*(resized - 1), "# setting option: ttHashSizeMB=8");
  EXPECT_NE(std::find(resized, run.lines.end(), "# initializing TB: type=gaviota path=/nonexistent"), run.lines.end());
  EXPECT_TRUE(std::any_of(resized, run.lines.end(), [](const std::string& l) { return l.rfind("1 ", 0) == 0; }));
  EXPECT_TRUE(std::none_of(run.lines.begin(), run.lines.end(), [](const std::string& l) { return l.rfind("move ", 0) == 0; }));
}

TEST(ProtocolEval, PrintsTheReportWithoutChangingTheGame) {
  const Lines lines = xboardSession("eval\n");
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.front(), "==============================================================================");
}

}  // namespace
}  // namespace torvy::testing
