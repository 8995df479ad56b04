// The commands that start, set up, play and take back a game.
#include <string>

#include "board/fen.h"
#include "board/move_text.h"
#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handleNew(const Arguments&) {
  player.newGame();
  gameOver = false;
  forceMode = false;
  autoMode = false;
  player.randGame = false;
  clock.resetForNewGame();
  // A new game under analysis is analysed from its first move; otherwise the engine waits as Black.
  if (analyzeMode) {
    clock.timeLimited = false;
    engineColor = sideToMove();
  } else {
    engineColor = opposite(sideToMove());
  }
  showBoard();
  return true;
}

bool WBEngine::handleForce(const Arguments&) {
  clock.stopClock();
  engineColor = NoColor;
  forceMode = true;
  autoMode = false;
  return true;
}

bool WBEngine::handleUsermove(const Arguments& args) {
  const std::string& text = args[0];
  if (gameOver) {
    out() << "Error (cannot make a move at end of game)" << std::endl;
    return false;
  }
  if (player.recordFull()) {
    out() << RecordFullError << ": " << text << std::endl;
    return false;
  }
  if (text.size() != 4 && text.size() != 5) {
    out() << "Error (illegal argument to 'usermove' command): " << text << std::endl;
    return false;
  }
  Move move = NoMove;
  if (!parseCoordinateMove(player.board, text.c_str(), move)) {
    out() << "Error (illegal move): " << text << std::endl;
    return false;
  }
  out() << "# making user move: " << text << std::endl;
  player.commitMove(move);
  // Whichever side the engine held, a user move hands it the move, unless it only records moves.
  if (!forceMode || analyzeMode) engineColor = sideToMove();
  showBoard();
  return true;
}

bool WBEngine::handleGo(const Arguments&) {
  if (gameOver) {
    out() << "Error (cannot make a move at end of game)" << std::endl;
    return false;
  }
  if (!canSearch()) return false;
  engineColor = sideToMove();
  forceMode = false;
  analyzeMode = false;
  return true;
}

bool WBEngine::handlePlayother(const Arguments&) {
  engineColor = opposite(sideToMove());
  forceMode = false;
  analyzeMode = false;
  return true;
}

bool WBEngine::handleAnalyze(const Arguments&) {
  if (analyzeMode) return true;
  if (!canSearch()) return false;
  analyzeMode = true;
  engineColor = sideToMove();
  clock.timeLimited = false;
  clock.depthLimited = false;
  return true;
}

bool WBEngine::handleExit(const Arguments&) {
  if (!analyzeMode) return false;
  analyzeMode = false;
  engineColor = NoColor;
  clock.timeLimited = true;
  clock.depthLimited = false;
  return true;
}

// The engine plays both sides until "force" or "new"; any argument is ignored.
bool WBEngine::handleAuto(const Arguments&) {
  const std::lock_guard lock(gameMutex);
  if (!canSearch()) return false;
  autoMode = true;
  forceMode = false;
  analyzeMode = false;
  engineColor = sideToMove();
  return true;
}

bool WBEngine::handleSetboard(const Arguments& args) {
  std::string fen = args[0];
  for (std::size_t i = 1; i < args.size(); ++i) fen += ' ' + args[i];
  const bool ok = player.setPosition(fen.c_str());
  // The state changes even when the text was refused; there is then no board to show.
  if (analyzeMode) {
    engineColor = sideToMove();
  } else {
    engineColor = NoColor;
    forceMode = true;
  }
  gameOver = false;
  boardChanged = ok;
  return ok;
}

bool WBEngine::takeBack(std::uint32_t plies) {
  if (!player.takeBack(plies)) return false;
  boardChanged = true;
  gameOver = false;
  if (analyzeMode) engineColor = sideToMove();
  return true;
}

bool WBEngine::handleUndo(const Arguments&) { return takeBack(1); }

bool WBEngine::handleRemove(const Arguments&) { return takeBack(2); }

}  // namespace torvy
