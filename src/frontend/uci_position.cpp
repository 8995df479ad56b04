// "position startpos|fen FEN [moves ...]": what can't be taken is named in an info line, and
// the engine keeps the last good position, or the moves up to the first it refuses.
#include "board/fen.h"
#include "board/move_text.h"
#include "frontend/line_reader.h"
#include "frontend/uci_engine.h"
#include "frontend/wb_engine.h"

namespace torvy {

namespace {

constexpr std::string_view StartposWord = "startpos";
constexpr std::string_view FenWord = "fen";
constexpr std::string_view MovesWord = "moves";
// e2e4, or e7e8q with a promotion.
constexpr std::size_t MinMoveLength = 4;
constexpr std::size_t MaxMoveLength = 5;

}  // namespace

void UciEngine::restoreHeldPosition() {
  player.setFreshPosition(heldFen.c_str());
  for (Move move : heldMoves) player.commitMove(move);
}

void UciEngine::handlePosition(std::string_view arguments) {
  std::vector<std::string> words;
  for (std::string& word : split(arguments, ' '))
    if (!word.empty()) words.push_back(std::move(word));
  std::size_t next = 1;
  std::string fen;
  if (!words.empty() && words[0] == StartposWord) {
    fen = StartFen;
  } else if (!words.empty() && words[0] == FenWord) {
    for (; next < words.size() && words[next] != MovesWord; ++next) fen += (fen.empty() ? "" : " ") + words[next];
  }
  if (fen.empty() || !player.setFreshPosition(fen.c_str())) {
    out() << UciInfoString << "unreadable position, kept the last one: " << arguments.substr(0, MaxEchoedLength)
          << std::endl;
    return restoreHeldPosition();
  }
  const char* refusal = player.kingMissing()      ? MissingKingError
                        : player.kingCapturable() ? KingCapturableError
                                                  : nullptr;
  if (refusal != nullptr) {
    out() << UciInfoString << refusal << ", kept the last position: " << fen << std::endl;
    return restoreHeldPosition();
  }
  heldFen = fen;
  heldMoves.clear();
  if (next < words.size() && words[next] == MovesWord) ++next;
  for (; next < words.size(); ++next) {
    Move move = NoMove;
    const bool room = !player.recordFull();
    const std::string& text = words[next];
    const bool readable = text.size() == MinMoveLength || text.size() == MaxMoveLength;
    if (!room || !readable || !parseCoordinateMove(player.board, text.c_str(), move)) {
      out() << UciInfoString << (room ? "illegal move" : RecordFullError) << ": " << text.substr(0, MaxMoveLength)
            << ", kept the position before it" << std::endl;
      return;
    }
    player.commitMove(move);
    heldMoves.push_back(move);
  }
}

}  // namespace torvy
