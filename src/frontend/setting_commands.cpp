// The small switches and answers that change no game.
#include <cstdlib>

#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handleQuit(const Arguments&) {
  quit = true;
  return true;
}

bool WBEngine::handleXboard(const Arguments&) {
  out() << std::endl;
  xboardMode = true;
  return true;
}

bool WBEngine::handlePing(const Arguments& args) {
  out() << "pong " << std::atoi(args[0].c_str()) << std::endl;
  return true;
}

bool WBEngine::handlePost(const Arguments&) {
  player.post = true;
  return true;
}

bool WBEngine::handleNopost(const Arguments&) {
  player.post = false;
  return true;
}

bool WBEngine::handleBook(const Arguments&) {
  player.useBook = true;
  return true;
}

bool WBEngine::handleNobook(const Arguments&) {
  player.useBook = false;
  return true;
}

// Accepted for front ends that send them; they have nothing to do here.
bool WBEngine::handleTune(const Arguments&) { return true; }

bool WBEngine::handleRandpos(const Arguments&) { return true; }

}  // namespace torvy
