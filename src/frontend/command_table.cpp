#include "frontend/command_table.h"

#include "frontend/wb_engine.h"

namespace torvy {

// The rows, in the order they are searched; the handlers are private to WBEngine. The last
// column marks the commands that work on the game's position.
struct CommandTable {
  using E = WBEngine;
  static constexpr CommandRow rows[] = {
      {"quit", &E::handleQuit, 0, 0, true, false},
      {"xboard", &E::handleXboard, 0, 0, false, false},
      {"protover", &E::handleProtover, 1, 1, false, false},
      {"new", &E::handleNew, 0, 0, true, false},
      {"force", &E::handleForce, 0, 0, true, false},
      {"ping", &E::handlePing, 1, 1, false, false},
      {"usermove", &E::handleUsermove, 1, 1, true, true},
      {"go", &E::handleGo, 0, 0, true, true},
      {"playother", &E::handlePlayother, 0, 0, true, true},
      {"setboard", &E::handleSetboard, 4, 6, true, false},
      {"level", &E::handleLevel, 3, 3, false, false},
      {"sd", &E::handleSd, 1, 1, true, false},
      {"time", &E::handleTime, 1, 1, false, false},
      {"undo", &E::handleUndo, 0, 0, true, true},
      {"remove", &E::handleRemove, 0, 0, true, true},
      {"analyze", &E::handleAnalyze, 0, 0, true, true},
      {"exit", &E::handleExit, 0, 0, true, false},
      {"auto", &E::handleAuto, 0, 1, false, true},
      {"post", &E::handlePost, 0, 0, false, false},
      {"nopost", &E::handleNopost, 0, 0, false, false},
      {"cores", &E::handleCores, 1, 1, false, false},
      {"egtpath", &E::handleEgtpath, 2, 2, false, false},
      {"option", &E::handleOption, 1, 1, false, false},
      {"book", &E::handleBook, 0, 0, false, false},
      {"nobook", &E::handleNobook, 0, 0, false, false},
      {"perft", &E::handlePerft, 1, 1, true, true},
      {"divide", &E::handleDivide, 1, 1, true, true},
      {"selftest", &E::handleSelftest, 0, 0, true, false},
      {"eval", &E::handleEval, 0, 0, false, true},
      {"tune", &E::handleTune, 1, 2, false, false},
      {"randpos", &E::handleRandpos, 0, 0, false, false},
      {"randgame", &E::handleRandgame, 0, 0, false, false},
      {"norandgame", &E::handleNorandgame, 0, 0, false, false},
      {"randgames", &E::handleRandgames, 1, 1, false, false},
  };
};

const CommandRow* findCommand(std::string_view name) {
  for (const CommandRow& row : CommandTable::rows)
    if (row.name == name) return &row;
  return nullptr;
}

}  // namespace torvy
