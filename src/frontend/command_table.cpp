#include "frontend/command_table.h"

#include "frontend/wb_engine.h"

namespace torvy {

// The rows, in the order they are searched; the handlers are private to WBEngine.
struct CommandTable {
  using E = WBEngine;
  static constexpr CommandRow rows[] = {
      {"quit", &E::handleQuit, 0, 0, true},
      {"xboard", &E::handleXboard, 0, 0, false},
      {"protover", &E::handleProtover, 1, 1, false},
      {"new", &E::handleNew, 0, 0, true},
      {"force", &E::handleForce, 0, 0, true},
      {"ping", &E::handlePing, 1, 1, false},
      {"usermove", &E::handleUsermove, 1, 1, true},
      {"go", &E::handleGo, 0, 0, true},
      {"playother", &E::handlePlayother, 0, 0, true},
      {"setboard", &E::handleSetboard, 4, 6, true},
      {"level", &E::handleLevel, 3, 3, false},
      {"sd", &E::handleSd, 1, 1, true},
      {"time", &E::handleTime, 1, 1, false},
      {"undo", &E::handleUndo, 0, 0, true},
      {"remove", &E::handleRemove, 0, 0, true},
      {"analyze", &E::handleAnalyze, 0, 0, true},
      {"exit", &E::handleExit, 0, 0, true},
      {"auto", &E::handleAuto, 0, 1, false},
      {"post", &E::handlePost, 0, 0, false},
      {"nopost", &E::handleNopost, 0, 0, false},
      {"cores", &E::handleCores, 1, 1, false},
      {"egtpath", &E::handleEgtpath, 2, 2, false},
      {"option", &E::handleOption, 1, 1, false},
      {"book", &E::handleBook, 0, 0, false},
      {"nobook", &E::handleNobook, 0, 0, false},
      {"perft", &E::handlePerft, 1, 1, true},
      {"divide", &E::handleDivide, 1, 1, true},
      {"selftest", &E::handleSelftest, 0, 0, true},
      {"eval", &E::handleEval, 0, 0, false},
      {"tune", &E::handleTune, 1, 2, false},
      {"randpos", &E::handleRandpos, 0, 0, false},
      {"randgame", &E::handleRandgame, 0, 0, false},
      {"norandgame", &E::handleNorandgame, 0, 0, false},
      {"randgames", &E::handleRandgames, 1, 1, false},
  };
};

const CommandRow* findCommand(std::string_view name) {
  for (const CommandRow& row : CommandTable::rows)
    if (row.name == name) return &row;
  return nullptr;
}

}  // namespace torvy
