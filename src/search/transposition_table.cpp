#include "search/transposition_table.h"

namespace torvy {

namespace {

int scoreFromTable(int s, int ply) {
  if (s > MateThreshold) return s - ply;
  if (s < -MateThreshold) return s + ply;
  return s;
}

int scoreToTable(int s, int ply) {
  if (s > MateThreshold) return s + ply;
  if (s < -MateThreshold) return s - ply;
  return s;
}

}  // namespace

bool probeTT(const Board_0x88& board, TranspositionTable& table, int alpha, int beta, int ply, int depth, int& score,
             Move& move, bool& found) {
  const Key key = board.key();
  TTEntry* cluster = table.cluster(key);
  for (int i = 0; i < 4; ++i) {
    if (cluster[i].key.load(std::memory_order_relaxed) != key) continue;
    const TTData data = TTData::unpack(cluster[i].data.load(std::memory_order_relaxed));
    found = true;
    if (data.move != NoMove) move = data.move;
    if (data.depth < depth) return false;
    const int s = scoreFromTable(data.score, ply);
    const bool accepted =
        data.bound == BoundExact || (data.bound == BoundLower && s >= beta) || (data.bound == BoundUpper && s <= alpha);
    if (!accepted) return false;
    score = s;
    return true;
  }
  return false;
}

void storeTT(const Board_0x88& board, TranspositionTable& table, int lower, int upper, int alpha, int beta, int ply,
             int depth, int score, Move move) {
  TTData data;
  if (score >= beta && score < upper)
    data.bound = BoundLower;
  else if (score <= alpha && score > lower)
    data.bound = BoundUpper;
  else
    data.bound = BoundExact;
  data.score = std::int16_t(scoreToTable(score, ply));
  data.age = std::uint8_t(board.historyIndex - ply);
  data.depth = std::uint8_t(depth);
  data.move = move;

  const Key key = board.key();
  TTEntry* cluster = table.cluster(key);
  TTEntry* slot = nullptr;
  for (int i = 0; i < 4 && slot == nullptr; ++i)
    if (cluster[i].key.load(std::memory_order_relaxed) == key) slot = &cluster[i];
  for (int i = 0; i < 4 && slot == nullptr; ++i)
    if (cluster[i].isEmpty()) slot = &cluster[i];
  if (slot == nullptr) {
    int lowestValue = 0;
    for (int i = 0; i < 4; ++i) {
      const TTData old = TTData::unpack(cluster[i].data.load(std::memory_order_relaxed));
      const int value = old.depth * 256 + 256 - old.age;
      if (slot == nullptr || value < lowestValue) {
        slot = &cluster[i];
        lowestValue = value;
      }
    }
  }
  slot->key.store(key, std::memory_order_relaxed);
  slot->data.store(data.pack(), std::memory_order_relaxed);
}

}  // namespace torvy
