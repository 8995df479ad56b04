// The feature list and the commands that change options: "protover", "cores", "egtpath", "option".
#include <cstdlib>
#include <string>

#include "frontend/engine_options.h"
#include "frontend/line_reader.h"
#include "frontend/wb_engine.h"

namespace torvy {

bool WBEngine::handleProtover(const Arguments&) {
  for (const char* feature :
       {"ping=1", "setboard=1", "playother=1", "usermove=1", "colors=0", "sigint=0", "sigterm=0", "analyze=1", "name=0",
        "nps=0", "debug=1", "egt=\"gaviota\"", "smp=1", "variants=\"normal\""})
    out() << "feature " << feature << std::endl;
  for (const SizeOption& option : SizeOptions)
    out() << "feature option=\"" << option.name << " -spin " << player.*(option.field) << ' ' << option.min << ' '
          << option.max << '"' << std::endl;
  for (const PathOption& option : PathOptions)
    out() << "feature option=\"" << option.name << " -path " << player.*(option.field) << '"' << std::endl;
  out() << "feature myname=\"" << ProgramName << ' ' << ProgramVersion << '"' << std::endl;
  // The front end waits for this line, so the tables and threads must be there before it.
  player.createMissingTables();
  player.syncThreads(false);
  out() << "feature done=1" << std::endl;
  return true;
}

bool WBEngine::handleCores(const Arguments& args) {
  const int wanted = std::atoi(args[0].c_str());
  if (wanted < 1) return false;
  player.setCores(std::uint32_t(wanted));
  return true;
}

bool WBEngine::handleEgtpath(const Arguments& args) {
  const std::string& type = args[0];
  if (type != "gaviota") {
    out() << "# invalid TB type: " << type << std::endl;
    return false;
  }
  // A running search ends before the report, so that its last lines come ahead of it.
  player.stopSearch();
  out() << "# initializing TB: type=" << type << " path=" << args[1] << std::endl;
  player.setupTablebases(type, args[1].c_str());
  return true;
}

// NAME=VALUE; a NAME without "=" has an empty value, which no size accepts (not even as the
// number 0) and which empties a path. Anything behind a second "=" is dropped. An accepted
// value stops a running search before its line, since every option replaces something the
// search uses; the command loop then starts the search again on what is new.
bool WBEngine::handleOption(const Arguments& args) {
  const Arguments parts = split(args[0], '=');
  const std::string& name = parts[0];
  const std::string value = parts.size() > 1 ? parts[1] : std::string();
  if (const SizeOption* size = findOption(SizeOptions, name)) {
    const int number = std::atoi(value.c_str());
    if (parts.size() == 1 || !size->accepts(number)) {
      out() << "Error (illegal value for '" << name << "' option): " << value << std::endl;
      return false;
    }
    player.stopSearch();
    out() << "# setting option: " << name << '=' << number << std::endl;
    (player.*(size->set))(std::uint32_t(number));
    return true;
  }
  if (const PathOption* path = findOption(PathOptions, name)) {
    player.stopSearch();
    out() << "# setting option: " << name << '=' << value << std::endl;
    (player.*(path->set))(value);
    return true;
  }
  out() << "Error (unknown option name): " << name << std::endl;
  return false;
}

}  // namespace torvy
