#include "game.h"

#include "board/attacks.h"
#include "board/draw_rules.h"
#include "board/fen.h"
#include "board/move_text.h"
#include "board/movegen.h"

namespace torvy {

const char* endingName(Ending ending) {
  switch (ending) {
    case Ending::Mate: return "checkmate";
    case Ending::Stalemate: return "stalemate";
    case Ending::Repetition: return "threefold repetition";
    case Ending::FiftyMoves: return "fifty-move rule";
    case Ending::Material: return "insufficient material";
    case Ending::Length: return "game too long";
    case Ending::Illegal: return "illegal move";
    case Ending::Time: return "loss on time";
    case Ending::Crash: return "crash";
  }
  return "?";
}

bool TimeUse::record(Millis usedMs, int maxTimeCs, const std::string& where) {
  ++moves;
  if (maxTimeCs > 0) {
    const double ratio = double(usedMs) / (maxTimeCs * 10.0);
    if (ratio > worstRatio) {
      worstRatio = ratio;
      worstWhere = where;
    }
  }
  const Millis excess = usedMs - allowanceMs(maxTimeCs);
  if (excess <= 0) return false;
  ++overruns;
  worstExcessMs = std::max(worstExcessMs, excess);
  return true;
}

void TimeUse::add(const TimeUse& other) {
  moves += other.moves;
  overruns += other.overruns;
  if (other.worstRatio > worstRatio) {
    worstRatio = other.worstRatio;
    worstWhere = other.worstWhere;
  }
  worstExcessMs = std::max(worstExcessMs, other.worstExcessMs);
}

GameBoard::GameBoard(Millis baseMs, Millis incrementMs)
    : board_(std::make_unique<Board_0x88>()),
      undo_(std::make_unique<UndoRecord[]>(HistorySize)),
      clockMs_{baseMs, baseMs},
      incrementMs_(incrementMs) {
  setStartPosition(*board_);
}

GameBoard::~GameBoard() = default;

Color GameBoard::sideToMove() const { return board_->sideToMove; }

bool GameBoard::place(std::string_view moveText) {
  // A move is four squares' letters and digits and perhaps a promotion piece, nothing more.
  Move move = NoMove;
  if (moveText.size() != 4 && moveText.size() != 5) return false;
  if (moves_.size() >= HistorySize || !parseCoordinateMove(*board_, std::string(moveText).c_str(), move)) return false;
  UndoRecord& undo = undo_[moves_.size()];
  if (board_->sideToMove == White)
    board_->makeMove<White>(move, undo);
  else
    board_->makeMove<Black>(move, undo);
  moves_.push_back(moveToText(move));
  // The draw test counts repetitions from what it found at earlier positions, so it sees them all.
  DrawCode code = NoDrawCode;
  drawStatus(*board_, code);
  return true;
}

std::optional<Ending> GameBoard::play(std::string_view moveText, Millis usedMs) {
  Millis& clock = clockMs_[sideToMove() == White ? 0 : 1];
  clock -= usedMs;
  if (clock < 0) return Ending::Time;
  if (!place(moveText)) return Ending::Illegal;
  clock += incrementMs_;
  return std::nullopt;
}

std::optional<Ending> GameBoard::end(Color& winner) {
  winner = NoColor;
  MoveList moves;
  generateLegalMoves(*board_, moves);
  if (moves.count == 0) {
    CheckInfo check;
    const bool inCheck =
        board_->sideToMove == White ? findCheck<White>(*board_, check) : findCheck<Black>(*board_, check);
    if (!inCheck) return Ending::Stalemate;
    winner = opposite(board_->sideToMove);
    return Ending::Mate;
  }
  DrawCode code = NoDrawCode;
  if (drawStatus(*board_, code) && code != NoDrawCode)
    return code == FiftyMoveDraw ? Ending::FiftyMoves : code == RepetitionDraw ? Ending::Repetition : Ending::Material;
  if (moves_.size() >= MaxGamePlies) return Ending::Length;
  return std::nullopt;
}

}  // namespace torvy
