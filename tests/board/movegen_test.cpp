#include "board_helpers.h"
#include "data_table.h"

namespace torvy {
namespace {

using testing::boardFrom;
using testing::legalMoveTexts;
using Texts = std::vector<std::string>;

TEST(MoveGeneration, StartPositionOrderFollowsSlotsAndSteps) {
  auto board = boardFrom(StartFen);
  EXPECT_EQ(legalMoveTexts(*board),
            (Texts{"b1a3", "b1c3", "g1f3", "g1h3", "a2a3", "a2a4", "b2b3", "b2b4", "c2c3", "c2c4",
                   "d2d3", "d2d4", "e2e3", "e2e4", "f2f3", "f2f4", "g2g3", "g2g4", "h2h3", "h2h4"}));
}

TEST(MoveGeneration, PromotionsListCapturesFirstInQueenKnightRookBishopOrder) {
  auto board = boardFrom("3n1n2/4P3/8/8/8/8/8/K6k w - - 0 1");
  Texts all = legalMoveTexts(*board);
  Texts pawnMoves(all.begin() + 3, all.end());  // the king's three come first, from slot 0
  EXPECT_EQ(pawnMoves, (Texts{"e7d8q", "e7d8n", "e7d8r", "e7d8b", "e7f8q", "e7f8n", "e7f8r", "e7f8b", "e7e8q", "e7e8n",
                              "e7e8r", "e7e8b"}));
  MoveList captures;
  CheckInfo check;
  generateCaptures<White>(*board, computePinInfo<White>(*board, check), captures);
  Texts captureTexts;
  for (std::uint32_t i = 0; i < captures.count; ++i) captureTexts.push_back(moveToText(captures[i]));
  EXPECT_EQ(captureTexts, (Texts{"e7d8q", "e7f8q", "e7e8q"}));
  auto blocked = boardFrom("4n3/4P3/8/8/8/8/8/K6k w - - 0 1");
  EXPECT_EQ(legalMoveTexts(*blocked), (Texts{"a1a2", "a1b1", "a1b2"}));
}

TEST(MoveGeneration, EnPassantFirstAndCastlingLast) {
  auto board = boardFrom("4k3/8/8/3Pp3/8/8/8/R3K2R w KQ e6 0 2");
  Texts moves = legalMoveTexts(*board);
  ASSERT_GE(moves.size(), 3u);
  EXPECT_EQ(moves.front(), "d5e6");
  EXPECT_EQ(moves[moves.size() - 2], "e1g1");
  EXPECT_EQ(moves.back(), "e1c1");
}

// The published perft counts cover what generation lists; a stored move is checked on its own.
TEST(MoveGeneration, EnPassantThatBaresTheKingAlongTheRankIsNoLegalStoredMove) {
  EXPECT_FALSE(isLegal<White>(*boardFrom("8/8/8/K2pP2r/8/8/8/7k w - d6 0 1"), makeEnPassant(sq::e5, sq::d6)));
}

// The count of perft's last ply and the capture list of quiescence are both cut from the full
// list: in check (the king's steps, a capture of the checker, a block), with pins (a rook along
// its line, a pinned knight), promotions, en passant and castling.
TEST(MoveGeneration, CountAndCapturesAgreeWithTheFullList) {
  const char* fens[] = {
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "4k3/8/8/1b6/8/3N4/4R3/r3K2q w - - 0 1",
      "4k3/4r3/8/8/1b2R3/2N5/8/4K3 w - - 0 1",
      "3n1n2/4P3/8/8/8/8/8/K6k w - - 0 1",
      "4k3/8/8/3Pp3/8/8/8/R3K2R w KQ e6 0 2",
      "8/8/3k4/2pP4/8/8/8/4K2R w - c6 0 1",
  };
  for (const char* fen : fens) {
    auto board = boardFrom(fen);
    MoveList all;
    generateLegalMoves(*board, all);
    CheckInfo check;
    findCheck<White>(*board, check);
    EXPECT_EQ(countLegalMoves<White>(*board, check), all.count) << fen;
    if (check.checkers != 0) continue;
    MoveList captures;
    generateCaptures<White>(*board, computePinInfo<White>(*board, check), captures);
    Texts expected, got;
    for (std::uint32_t i = 0; i < all.count; ++i) {
      const Move m = all[i];
      const bool promotesToQueen = moveKind(m) == PromotionMove && promotionPiece(m) == Queen;
      if (moveKind(m) == NormalMove ? board->pieceOn[toSquare(m)] != NoPiece : promotesToQueen)
        expected.push_back(moveToText(m));
    }
    for (std::uint32_t i = 0; i < captures.count; ++i) got.push_back(moveToText(captures[i]));
    EXPECT_EQ(got, expected) << fen;
  }
}

TEST(MoveGeneration, FullListDropsTheRest) {
  MoveList list;
  for (int i = 0; i < 300; ++i) list.addMove(Move(i + 1));
  EXPECT_EQ(list.count, 255u);
}

TEST(Attacks, GivesCheck) {
  for (const testing::DataRow& row : testing::dataTable("checks.txt")) {
    auto board = boardFrom(row[0].c_str());
    const auto before = board->key();
    CheckInfo info;
    EXPECT_EQ(givesCheck<White>(*board, testing::legalMove(*board, row[1].c_str()), info), row[2] == "check") << row[0];
    if (row[3] != "-") {
      EXPECT_EQ(info.square, testing::squareNamed(row[3])) << row[0];
    }
    EXPECT_EQ(board->key(), before) << "the board is left as it was";
  }
}

TEST(Attacks, PseudoLegalityOfStoredMoves) {
  auto board = boardFrom("4k3/8/8/8/8/8/8/R3K2R w K - 0 1");
  EXPECT_TRUE(isPseudoLegal<White>(*board, makeNormalMove(sq::a1, sq::h8)));
  EXPECT_TRUE(isPseudoLegal<White>(*board, WhiteCastleKingSide));
  EXPECT_FALSE(isPseudoLegal<White>(*board, WhiteCastleQueenSide)) << "the right is gone";
  EXPECT_FALSE(isPseudoLegal<White>(*board, makeNormalMove(sq::e8, sq::e1)));
  EXPECT_FALSE(isPseudoLegal<White>(*board, makeNormalMove(sq::a1, sq::h1)));
  EXPECT_FALSE(isPseudoLegal<White>(*board, makeNormalMove(sq::e2, sq::e4, true)));
}

// Rows of data/piece_moves.txt.
TEST(Attacks, StoredMovesMustFitThePieceThatMakesThem) {
  auto board = boardFrom("4k3/8/8/8/8/2p5/1P6/R3K1NB w - - 0 1");
  for (const testing::DataRow& row : testing::dataTable("piece_moves.txt")) {
    const bool doubleStep = row[1] != "-";
    const Move move = makeNormalMove(testing::squareNamed(row[0]), testing::squareNamed(row[0].substr(2)), doubleStep);
    EXPECT_EQ(movesLikeItsPiece<White>(*board, move), row[2] == "fits") << row[0];
  }
}

// Generation and the walks keep a square plus a step in a byte: a step off any edge, below a1
// included, must still read as off the board, and one that stays on must land where it should.
// Steps of up to two files and two ranks cover the king's, the knight's and the pawn's.
TEST(Attacks, StepsOffTheBoardReadAsOffItInTheSquareByte) {
  constexpr int Files = 16;
  for (int rank = 0; rank < 8; ++rank)
    for (int file = 0; file < 8; ++file)
      for (int ranks = -2; ranks <= 2; ++ranks)
        for (int files = -2; files <= 2; ++files) {
          const Square88 to = makeSquare(file, rank) + (ranks * Files + files);
          const int toFile = file + files;
          const int toRank = rank + ranks;
          const bool stays = toFile >= 0 && toFile < 8 && toRank >= 0 && toRank < 8;
          ASSERT_EQ(onBoard(to), stays) << file << rank << " step " << files << ',' << ranks;
          if (stays) {
            ASSERT_EQ(to, makeSquare(toFile, toRank)) << file << rank << " step " << files << ',' << ranks;
          }
        }
}

}  // namespace
}  // namespace torvy
