// The UCI mode as a GUI sees it: searches with exactly one "bestmove" each, refused input that
// leaves a usable position, and a stop or quit mid-search. The handshake is a transcript.
#include <gtest/gtest.h>

#include <string>

#include "board/board_helpers.h"
#include "frontend/transcript.h"

namespace torvy::testing {
namespace {

// The handshake, the steps and everything they are answered with.
Lines uciSession(std::vector<ScriptStep> steps) {
  steps.insert(steps.begin(), {"uci\n", 0, "uciok"});
  return session(steps);
}

bool legalIn(const std::string& fen, const std::string& moves, const std::string& move) {
  auto board = boardFrom(fen.c_str());
  std::istringstream played(moves);
  for (std::string text; played >> text;) {
    UndoRecord undo;  // never taken back
    play(*board, text.c_str(), undo);
  }
  Move m = NoMove;
  return parseCoordinateMove(*board, move.c_str(), m);
}

// Run one after another: a refused position keeps the one before it, whose move must come.
struct SearchCase {
  std::string commands;
  std::string line;     // a line that must come before the move
  std::string heldFen;  // the position the engine must hold, and its moves
  std::string heldMoves;
  std::string bestMove;  // expected exactly, or empty for any legal move
};

TEST(ProtocolUci, SearchesAndRefusedPositions) {
  std::string longGame = "position startpos moves";
  for (int i = 0; i < 248; ++i) longGame += " g1f3 g8f6 f3g1 f6g8";
  const SearchCase cases[] = {
      {"position startpos moves e2e4\ngo depth 3\n", "info depth 3 score cp ", StartFen, "e2e4", ""},
      {"position fen 7k/8/6K1/8/8/8/8/R7 w - - 0 1\ngo depth 3\n", "info depth 1 score mate 1 ",
       "7k/8/6K1/8/8/8/8/R7 w - - 0 1", "", "a1a8"},
      {"position fen 7k/p7/6K1/8/8/8/8/1R6 b - - 0 1\ngo depth 3\n", "info depth 2 score mate -1 ",
       "7k/p7/6K1/8/8/8/8/1R6 b - - 0 1", "", ""},
      {"position fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1\ngo depth 3\n", "", "", "", "0000"},
      {"position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1\ngo wtime 1000 btime 1000\n", "", "", "", "0000"},
      {"position startpos\nposition fen garbage\ngo depth 2\n",
       "info string unreadable position, kept the last one: fen garbage", StartFen, "", ""},
      {"position\ngo movetime 50\n", "info string unreadable position, kept the last one: ", StartFen, "", ""},
      {"position startpos moves e2e4 e7e5 e1e3 g1f3\ngo depth 2\n",
       "info string illegal move: e1e3, kept the position before it", StartFen, "e2e4 e7e5", ""},
      {"position fen 8/8/8/8/8/8/8/K7 w - - 0 1\ngo wtime 500 btime 500 winc 20 binc 20 movestogo 5\n",
       "info string Error (illegal position): a king is missing", StartFen, "e2e4 e7e5", ""},
      {"position fen 4k3/8/8/8/8/8/4R3/4K3 w - - 0 1\ngo depth 2\n",
       "info string Error (illegal position): the side not to move is in check", StartFen, "e2e4 e7e5", ""},
      {std::string(5000, 'x') + "\ngo depth 2\n", "info string unknown command: " + std::string(64, 'x'), StartFen,
       "e2e4 e7e5", ""},
      {longGame + "\ngo depth 2\n", "info depth 2 ", StartFen, "", ""},
  };
  std::vector<ScriptStep> steps;
  for (const SearchCase& c : cases) steps.push_back({c.commands, 0, "bestmove "});
  steps.push_back({"quit\n"});
  const Lines out = uciSession(steps);
  std::size_t at = 0;
  for (const SearchCase& c : cases) {
    SCOPED_TRACE(c.commands.substr(0, 80));
    const std::size_t best = findLine(out, "bestmove ", at);
    ASSERT_LT(best, out.size());
    if (!c.line.empty()) {
      EXPECT_LT(findLine(out, c.line, at), best);
    }
    const std::string move = out[best].substr(9, out[best].find(' ', 9) - 9);
    if (!c.bestMove.empty()) {
      EXPECT_EQ(move, c.bestMove);
    }
    if (!c.heldFen.empty()) {
      EXPECT_TRUE(legalIn(c.heldFen, c.heldMoves, move)) << out[best];
    }
    at = best + 1;
  }
  EXPECT_EQ(countStarting(out, "bestmove "), long(std::size(cases)));
  EXPECT_EQ(countStarting(out, "#"), 0);
}

// "isready" is answered beside an unlimited search, whose move waits for "stop"; "quit" ends a
// search at once, after its move.
TEST(ProtocolUci, StopAndQuitDuringASearch) {
  const Lines out = uciSession({{"position startpos moves d2d4\ngo infinite\n", 300},
                                {"isready\n", 0, "readyok"},
                                {"stop\n", 0, "bestmove "},
                                {"go ponder\n", 300},
                                {"ponderhit\n", 0, "bestmove "},
                                {"go\n", 300},
                                {"quit\n", 0}});
  const std::size_t ready = findLine(out, "readyok");
  ASSERT_LT(ready, out.size());
  EXPECT_LT(findLine(out, "info depth "), ready);
  EXPECT_LT(ready, findLine(out, "bestmove "));
  EXPECT_EQ(countStarting(out, "bestmove "), 3);
  for (std::size_t best = findLine(out, "bestmove "); best < out.size(); best = findLine(out, "bestmove ", best + 1))
    EXPECT_TRUE(legalIn(StartFen, "d2d4", out[best].substr(9, 4))) << out[best];
}

}  // namespace
}  // namespace torvy::testing
