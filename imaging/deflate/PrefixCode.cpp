#include "imaging/deflate/PrefixCode.h"

#include <algorithm>
#include <array>

namespace {

/// A leaf of a tree (a symbol and how often it occurs), or an inner node.
struct Node {
    std::uint64_t count;
    std::uint16_t symbol; ///< of leaves only
    std::uint16_t parent;
};

constexpr unsigned longestPossible = 15;
using LengthCounts = std::array<unsigned, longestPossible + 1>;

/// Sorts by count, leaves of equal counts by symbol.
void sortByCount(std::span<Node> leaves) {
    std::ranges::sort(leaves, [](const Node& a, const Node& b) {
        return a.count != b.count ? a.count < b.count : a.symbol < b.symbol;
    });
}

/// Builds the tree and counts its codes of each length. The first `leaves` nodes are the leaves, in rising
/// order of their counts. After Moffat and Katajainen, "In-Place Calculation of Minimum-Redundancy Codes",
/// 1995, but inner nodes do not reuse the leaves' places. Codes longer than `longest` are counted as
/// `longest` bits long.
LengthCounts lengthsOf(std::span<Node> nodes, std::size_t leaves, unsigned longest) {
    // The two nodes of least count become one. Each of them is the next leaf or the next inner node.
    std::size_t leaf = 0;
    std::size_t inner = leaves;
    const std::size_t end = 2 * leaves - 1;
    for (std::size_t made = leaves; made < end; ++made) {
        nodes[made].count = 0;
        for (int child = 0; child < 2; ++child) {
            const bool takesLeaf =
                leaf < leaves && (inner == made || nodes[leaf].count <= nodes[inner].count);
            Node& least = nodes[takesLeaf ? leaf++ : inner++];
            least.parent = static_cast<std::uint16_t>(made);
            nodes[made].count += least.count;
        }
    }
    // From the root down, a node's count becomes its depth.
    LengthCounts lengths{};
    nodes[end - 1].count = 0;
    for (std::size_t i = end - 1; i > 0; --i) {
        Node& node = nodes[i - 1];
        node.count = nodes[node.parent].count + 1;
        if (i <= leaves)
            ++lengths[std::min<std::uint64_t>(node.count, longest)];
    }
    return lengths;
}

/// Makes codes longer until all of them fit: with lengths l the sum of 2^-l must be at most one.
void makeRoom(LengthCounts& lengths, unsigned longest) {
    unsigned used = 0;
    for (unsigned length = 1; length <= longest; ++length)
        used += lengths[length] << (longest - length);
    for (; used > 1U << longest; --used) {
        // A code of the longest length moves beside a shorter one, which becomes a bit longer.
        unsigned length = longest - 1;
        while (lengths[length] == 0)
            --length;
        --lengths[length];
        lengths[length + 1] += 2;
        --lengths[longest];
    }
}

/// The lowest `length` bits in the reverse order.
std::uint16_t reversed(unsigned bits, unsigned length) {
    bits = (bits & 0x5555U) << 1U | (bits >> 1U & 0x5555U);
    bits = (bits & 0x3333U) << 2U | (bits >> 2U & 0x3333U);
    bits = (bits & 0x0f0fU) << 4U | (bits >> 4U & 0x0f0fU);
    bits = (bits & 0x00ffU) << 8U | (bits >> 8U & 0x00ffU);
    return static_cast<std::uint16_t>(bits >> (16 - length));
}

} // namespace

void PrefixCode::assign(std::span<const std::uint32_t> counts, unsigned longest, std::span<Code> codes) {
    std::ranges::fill(codes, Code{});
    std::array<Node, 2 * maximumSymbols> nodes;
    std::size_t leaves = 0;
    for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
        if (counts[symbol] > 0)
            nodes[leaves++] = {counts[symbol], static_cast<std::uint16_t>(symbol), 0};
    }
    // Where fewer than two symbols occur, symbols 0 and 1 make up for the missing ones, unless they occur.
    constexpr std::size_t least = 2;
    for (std::size_t symbol = 0; symbol < least && leaves < least; ++symbol) {
        if (counts[symbol] == 0)
            nodes[leaves++] = {1, static_cast<std::uint16_t>(symbol), 0};
    }
    sortByCount(std::span(nodes).first(leaves));
    LengthCounts lengths = lengthsOf(nodes, leaves, longest);
    makeRoom(lengths, longest);

    // The rarest symbols get the longest codes.
    std::size_t next = 0;
    for (unsigned length = longest; length > 0; --length) {
        for (unsigned i = 0; i < lengths[length]; ++i)
            codes[nodes[next++].symbol].length = static_cast<std::uint16_t>(length);
    }
    // Codes of one length are numbered in the order of their symbols.
    std::array<unsigned, longestPossible + 2> first{};
    for (unsigned length = 1; length <= longest; ++length)
        first[length + 1] = (first[length] + lengths[length]) << 1U;
    for (Code& code : codes) {
        if (code.length > 0)
            code.bits = reversed(first[code.length]++, code.length);
    }
}
