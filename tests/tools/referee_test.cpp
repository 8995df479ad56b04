// The referee against scripted stand-in engines: each fault must be charged to the side that made
// it, and each game end found on our own board.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "scratch_folder.h"

namespace torvy {
namespace {

namespace fs = std::filesystem;

// A stand-in engine: it answers "ping", and once told "go" it answers each "go" or "usermove"
// with the next of its moves, after running the given shell step (a pause, an exit, a hang).
std::string scriptedEngine(const std::string& moves, const std::string& beforeMove = "") {
  return "#!/bin/bash\n"
         "set -- " + moves + "\n"
         "started=0\n"
         "answer() { " + (beforeMove.empty() ? ":" : beforeMove) + "; echo \"move $1\"; }\n"
         "while read -r command argument; do\n"
         "  case \"$command\" in\n"
         "    ping) echo \"pong $argument\" ;;\n"
         "    go) started=1; answer \"$1\"; shift ;;\n"
         "    usermove) if [ $started = 1 ]; then answer \"$1\"; shift; fi ;;\n"
         "    quit) exit 0 ;;\n"
         "  esac\n"
         "done\n";
}

// The same over UCI: it answers the handshake, checks that "position" sends the whole game so
// far, and answers "go" with "bestmove", after the given shell step.
std::string scriptedUciEngine(const std::string& game, const std::string& move, const std::string& beforeMove) {
  return "#!/bin/bash\n"
         "while read -r command argument; do\n"
         "  case \"$command\" in\n"
         "    uci) echo uciok ;;\n"
         "    isready) echo readyok ;;\n"
         "    position) [ \"$argument\" = \"startpos moves " + game + "\" ] || exit 3 ;;\n"
         "    go) " + beforeMove + "; echo \"bestmove " + move + " ponder a2a3\" ;;\n"
         "    quit) exit 0 ;;\n"
         "  esac\n"
         "done\n";
}

struct RefereeRun {
  std::string output;
  int exitCode = -1;
};

class RefereeTest : public ::testing::Test {
 protected:
  std::string write(const std::string& file, const std::string& text, bool executable = false) {
    folder_.write(file, text);
    if (executable) chmod(folder_.file(file).c_str(), 0755);
    return folder_.file(file);
  }

  // One game from the opening, engine A White; times in seconds.
  RefereeRun play(const std::string& opening, const std::string& white, const std::string& black,
                  const std::string& clock = "--time 2 --inc 0 --grace 0.5") {
    const fs::path referee = fs::path(TORVY_BINARY).parent_path() / "tools" / "referee";
    EXPECT_TRUE(fs::exists(referee)) << referee;
    const std::string command = referee.string() + " --games 1 --openings " + write("openings.txt", opening + "\n") +
                                " --engine " + write("white.sh", white, true) + " --engine2 " +
                                write("black.sh", black, true) + " --dir " + folder_.path() + " " + clock + " 2>&1";
    RefereeRun run;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.output.append(buffer, n);
    const int status = pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
  }

  testing::ScratchFolder folder_;
};

bool has(const RefereeRun& run, const std::string& text) { return run.output.find(text) != std::string::npos; }

TEST_F(RefereeTest, GameEndsAreFoundOnTheBoard) {
  // Fool's mate: Black mates at once, and the mated side's engine is never asked again.
  const RefereeRun mate = play("f2f3 e7e5 g2g4", scriptedEngine(""), scriptedEngine("d8h4"));
  EXPECT_TRUE(has(mate, "0-1 checkmate")) << mate.output;
  EXPECT_TRUE(has(mate, "games=1 wins=0 draws=0 losses=1 illegal=0 timeouts=0 crashes=0")) << mate.output;

  // The knights go home and out again until a position stands on the board for the third time.
  const RefereeRun repetition = play("g1f3 g8f6", scriptedEngine("f3g1 g1f3 f3g1 g1f3 f3g1 g1f3"),
                                     scriptedEngine("f6g8 g8f6 f6g8 g8f6 f6g8 g8f6"));
  EXPECT_TRUE(has(repetition, "1/2-1/2 threefold repetition")) << repetition.output;
  EXPECT_TRUE(has(repetition, "draws=1")) << repetition.output;
  EXPECT_EQ(repetition.exitCode, 0);

  const RefereeRun stalemate =
      play("e2e3 a7a5 d1h5 a8a6 h5a5 h7h5 h2h4 a6h6 a5c7 f7f6 c7d7 e8f7 d7b7 d8d3 b7b8 d3h7 b8c8 f7g6",
           scriptedEngine("c8e6"), scriptedEngine(""));
  EXPECT_TRUE(has(stalemate, "1/2-1/2 stalemate")) << stalemate.output;
}

TEST_F(RefereeTest, FaultsLoseAndAreChargedToTheFaultySide) {
  const RefereeRun illegal = play("e2e4", scriptedEngine(""), scriptedEngine("e7e4"));
  EXPECT_TRUE(has(illegal, "1-0 illegal move (engine B played e7e4)")) << illegal.output;
  EXPECT_TRUE(has(illegal, "illegal=1")) << illegal.output;
  EXPECT_EQ(illegal.exitCode, 1);

  const RefereeRun crash = play("e2e4", scriptedEngine(""), scriptedEngine("e7e5", "exit 3"));
  EXPECT_TRUE(has(crash, "1-0 crash (engine B exited with code 3)")) << crash.output;

  const RefereeRun hang = play("e2e4", scriptedEngine(""), scriptedEngine("e7e5", "exec sleep 30"),
                               "--time 0.3 --inc 0 --grace 0.3");
  EXPECT_TRUE(has(hang, "1-0 crash (engine B gave no move, killed)")) << hang.output;

  const RefereeRun slow = play("e2e4", scriptedEngine(""), scriptedEngine("e7e5", "sleep 0.6"),
                               "--time 0.3 --inc 0 --grace 5");
  EXPECT_TRUE(has(slow, "1-0 loss on time")) << slow.output;
  EXPECT_TRUE(has(slow, "timeouts=1")) << slow.output;
}

TEST_F(RefereeTest, MovesBeyondTheAnnouncedTimeAreCounted) {
  // 300 ms against 10 centiseconds breaks the allowance of maxTime plus 5% and 2 centiseconds.
  const std::string slowBlack = scriptedEngine("d8h4", "echo '# set maxTime = 10'; sleep 0.3");
  const RefereeRun run = play("f2f3 e7e5 g2g4", scriptedEngine(""), slowBlack, "--time 1 --inc 0 --grace 1");
  EXPECT_TRUE(has(run, "0-1 checkmate")) << run.output;
  EXPECT_TRUE(has(run, "overruns=1")) << run.output;
  EXPECT_EQ(run.exitCode, 1);
}

TEST_F(RefereeTest, AnEngineOverUciIsJudgedAlike) {
  // Its info strings are read as the comment lines they stand for.
  const std::string slowBlack =
      scriptedUciEngine("f2f3 e7e5 g2g4", "d8h4", "echo 'info string set maxTime = 10'; sleep 0.3");
  const RefereeRun run = play("f2f3 e7e5 g2g4", scriptedEngine(""), slowBlack, "--time 1 --inc 0 --grace 1 --protocol2 uci");
  EXPECT_TRUE(has(run, "0-1 checkmate")) << run.output;
  EXPECT_TRUE(has(run, "overruns=1")) << run.output;
}

}  // namespace
}  // namespace torvy
