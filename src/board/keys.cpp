#include "board/keys.h"

#include <cstdlib>
#include <initializer_list>

namespace torvy {

KeyTables keys;

Key random64() {
  Key result = 0;
  int shift = 0;
  for (int call = 0; call < 6; ++call) {
    int bits = call < 5 ? 11 : 9;
    result |= Key(std::rand() & ((1 << bits) - 1)) << shift;
    shift += bits;
  }
  return result;
}

void initKeys() {
  static bool initialised = false;
  if (initialised) return;
  initialised = true;
  std::srand(327641845);
  keys = KeyTables{};
  for (auto& colour : keys.pieceKeys)
    for (auto& piece : colour)
      for (Key& key : piece) key = random64();
  for (CastlingRights right : SingleCastlingRights) keys.castlingKeys[right] = random64();
  for (Key& key : keys.enPassantKeys) key = random64();
  keys.sideKey = random64();
}

}  // namespace torvy
