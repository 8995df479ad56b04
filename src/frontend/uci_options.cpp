// The UCI options: the engine's own options under the names GUIs know, announced with the
// values the configuration file left, and "setoption", which refuses what they refuse.
#include <algorithm>
#include <cctype>
#include <charconv>

#include "frontend/engine_options.h"
#include "frontend/uci_engine.h"

namespace torvy {

namespace {

enum class UciOptionType { Spin, Check, String, Button };

struct UciOption {
  std::string_view name;
  UciOptionType type;
  std::string_view engineName;  // the size or path option behind it, if any
};

constexpr std::string_view ThreadsName = "Threads";
constexpr std::string_view OwnBookName = "OwnBook";
constexpr std::string_view ClearHashName = "Clear Hash";
constexpr std::string_view NameWord = "name ";
constexpr std::string_view ValueWord = " value ";

constexpr UciOption UciOptions[] = {
    {"Hash", UciOptionType::Spin, "ttHashSizeMB"},
    {ThreadsName, UciOptionType::Spin, ""},
    {"PawnHash", UciOptionType::Spin, "pawnHashSizeMB"},
    {OwnBookName, UciOptionType::Check, ""},
    {"BookFile", UciOptionType::String, "bookFilePath"},
    {"GaviotaTbPath", UciOptionType::String, "gtbPath"},
    {"GaviotaTbCache", UciOptionType::Spin, "gtbCacheSizeMB"},
    {ClearHashName, UciOptionType::Button, ""},
};

// GUIs may change the case of option names.
bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

bool readInt(std::string_view text, int& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

}  // namespace

void UciEngine::printOptions() {
  for (const UciOption& option : UciOptions) {
    out() << "option name " << option.name;
    if (option.name == ThreadsName) {
      out() << " type spin default " << player.cores << " min " << MinCores << " max " << player.maxCores;
    } else if (option.type == UciOptionType::Spin) {
      const SizeOption& size = *findOption(SizeOptions, option.engineName);
      out() << " type spin default " << player.*(size.field) << " min " << size.min << " max " << size.max;
    } else if (option.type == UciOptionType::Check) {
      out() << " type check default " << (player.useBook ? "true" : "false");
    } else if (option.type == UciOptionType::String) {
      const char* value = player.*(findOption(PathOptions, option.engineName)->field);
      // UCI writes an empty string as "<empty>".
      out() << " type string default " << (*value == '\0' ? "<empty>" : value);
    } else {
      out() << " type button";
    }
    out() << '\n';
  }
}

// "setoption name NAME [value VALUE]": the name may hold blanks, the value is the rest of the line.
void UciEngine::handleSetoption(std::string_view arguments) {
  if (!arguments.starts_with(NameWord)) {
    out() << UciInfoString << "setoption without a name, ignored" << std::endl;
    return;
  }
  arguments.remove_prefix(NameWord.size());
  const std::size_t cut = arguments.find(ValueWord);
  const std::string_view name = arguments.substr(0, cut);
  const std::string_view value =
      cut == std::string_view::npos ? std::string_view() : arguments.substr(cut + ValueWord.size());
  setOption(name, value);
}

void UciEngine::setOption(std::string_view name, std::string_view value) {
  const auto option = std::find_if(std::begin(UciOptions), std::end(UciOptions),
                                   [&](const UciOption& o) { return sameName(o.name, name); });
  if (option == std::end(UciOptions)) {
    out() << UciInfoString << "unknown option: " << name.substr(0, MaxEchoedLength) << std::endl;
    return;
  }
  auto refuse = [&] {
    out() << UciInfoString << "illegal value for " << option->name << ": " << value.substr(0, MaxEchoedLength)
          << std::endl;
  };
  int number = 0;
  if (option->name == ThreadsName) {
    if (!readInt(value, number) || number < MinCores || std::uint32_t(number) > player.maxCores) return refuse();
    player.setCores(std::uint32_t(number));
  } else if (option->type == UciOptionType::Spin) {
    const SizeOption& size = *findOption(SizeOptions, option->engineName);
    if (!readInt(value, number) || !size.accepts(number)) return refuse();
    (player.*(size.set))(std::uint32_t(number));
  } else if (option->type == UciOptionType::Check) {
    if (value != "true" && value != "false") return refuse();
    player.useBook = value == "true";
  } else if (option->type == UciOptionType::String) {
    (player.*(findOption(PathOptions, option->engineName)->set))(value == "<empty>" ? std::string_view() : value);
  } else {
    player.renewTables();
  }
}

}  // namespace torvy
