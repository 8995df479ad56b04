// Scheme 1: a code tree written into the bit stream, followed by one code per output byte.
#include <array>

#include "tablebase/block_decoder.h"

namespace torvy {
namespace {

// Bits come out of each byte from the lowest upwards.
class BitReader {
 public:
  explicit BitReader(BlockInput bytes) : bytes_(bytes) {}

  bool read(unsigned& bit) {
    if (position_ >= bytes_.size() * 8) return false;
    bit = (bytes_[position_ >> 3] >> (position_ & 7)) & 1;
    ++position_;
    return true;
  }

  bool readByte(std::uint8_t& value) {
    value = 0;
    for (unsigned i = 0; i < 8; ++i) {
      unsigned bit;
      if (!read(bit)) return false;
      value |= std::uint8_t(bit << i);
    }
    return true;
  }

 private:
  BlockInput bytes_;
  std::size_t position_ = 0;
};

class HuffmanTree {
 public:
  static constexpr int MaxNodes = 512;

  // Reads the tree in preorder: bit 1 and eight bits make a leaf, bit 0 an inner node followed by
  // its two children. An explicit stack of unfinished inner nodes keeps a damaged tree from
  // recursing deeply.
  bool read(BitReader& bits) {
    std::array<int, MaxNodes> pending;  // inner nodes still waiting for a child
    int pendingCount = 0;
    do {
      if (count_ == MaxNodes) return false;
      const int node = count_++;
      unsigned isLeaf;
      if (!bits.read(isLeaf)) return false;
      nodes_[node].leaf = isLeaf != 0;
      if (isLeaf && !bits.readByte(nodes_[node].value)) return false;
      if (pendingCount > 0) attach(pending, pendingCount, node);
      if (!isLeaf) pending[pendingCount++] = node;
    } while (pendingCount > 0);
    return true;
  }

  bool decodeSymbol(BitReader& bits, std::uint8_t& symbol) const {
    // At least one bit per symbol, so that a tree of a single leaf still spends one on each.
    int node = 0;
    do {
      unsigned bit;
      if (!bits.read(bit)) return false;
      if (!nodes_[node].leaf) node = nodes_[node].child[bit];
    } while (!nodes_[node].leaf);
    symbol = nodes_[node].value;
    return true;
  }

 private:
  struct Node {
    std::int16_t child[2];
    std::uint8_t value;
    bool leaf;
  };

  // The newest unfinished inner node takes the next child; once it has both it is done.
  void attach(std::array<int, MaxNodes>& pending, int& pendingCount, int node) {
    Node& parent = nodes_[pending[pendingCount - 1]];
    if (parent.child[0] < 0) {
      parent.child[0] = std::int16_t(node);
    } else {
      parent.child[1] = std::int16_t(node);
      --pendingCount;
    }
  }

  std::array<Node, MaxNodes> nodes_ = filledWith({{-1, -1}, 0, false});
  int count_ = 0;

  static constexpr std::array<Node, MaxNodes> filledWith(Node node) {
    std::array<Node, MaxNodes> nodes{};
    nodes.fill(node);
    return nodes;
  }
};

}  // namespace

bool decodeHuffman(BlockInput input, BlockOutput output) {
  if (input.size() < 4) return false;
  const std::uint32_t length = input[0] | input[1] << 8 | input[2] << 16 | std::uint32_t(input[3]) << 24;
  if (length > output.size()) return false;
  BitReader bits(input.subspan(4));
  HuffmanTree tree;
  if (!tree.read(bits)) return false;
  for (std::uint32_t i = 0; i < length; ++i)
    if (!tree.decodeSymbol(bits, output[i])) return false;
  return true;
}

}  // namespace torvy
