#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <string>

#include "board/fen.h"
#include "eval_fixture.h"

namespace torvy {
namespace {

struct Reference {
  const char* fen;
  int score;
};

class EvaluateTest : public EvalFixture {};

TEST_F(EvaluateTest, ReferenceValuesWithFullWindow) {
  const Reference references[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1", 24},
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - - 0 1", -127},
      {"r1bq1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R1BQ1RK1 w - - 0 1", 82},
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", -38},
      {"8/8/8/4k3/8/3KP3/8/8 w - - 0 1", 87},
      {"8/8/4k3/8/8/3BN3/4K3/8 b - - 10 1", -564},
      {"8/8/8/8/3k4/8/8/K6R w - - 0 1", 475},
      {"8/P5k1/8/8/8/B7/8/K7 w - - 0 1", 362},
      {"7k/8/8/8/8/8/1p6/K6Q w - - 0 1", 1188},
      {"8/5k2/8/8/3R4/2K5/5b2/8 w - - 0 1", 201},
      {"4k3/8/8/8/8/8/4P3/4K3 b - - 99 1", -1},
  };
  for (const Reference& r : references) {
    // A cold and then a warm pawn hash must agree.
    EXPECT_EQ(score(r.fen), r.score) << r.fen;
    EXPECT_EQ(score(r.fen), r.score) << r.fen << " (pawn hash hit)";
  }
}

}  // namespace
}  // namespace torvy
