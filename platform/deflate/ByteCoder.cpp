#include "platform/deflate/ByteCoder.h"

#include "platform/deflate/PrefixCode.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using PrefixCode::Code;

/// Each has codes of its own: long enough for what these take, short enough to follow the picture.
constexpr std::size_t blockBytes = std::size_t{128} << 10;

constexpr std::size_t byteCount = 256;
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t symbolCount = 257;

/// How the lengths of a block's codes are told: lengths, and symbols for repeated ones.
struct LengthStep {
    std::uint8_t symbol;
    std::uint8_t extraCount;
    std::uint8_t extraBits;
};

constexpr std::size_t lengthSymbolCount = 19;
constexpr std::array<std::uint8_t, lengthSymbolCount> lengthOrder{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                  11, 4,  12, 3, 13, 2, 14, 1, 15};

/// How often the same value stands from `at` on, at most `most` times.
std::size_t runAt(std::span<const std::uint8_t> lengths, std::size_t at, std::size_t most) {
    std::size_t run = 1;
    while (run < most && at + run < lengths.size() && lengths[at + run] == lengths[at])
        ++run;
    return run;
}

/// The steps that tell the lengths of all symbols and that of the one distance, which is never used.
struct LengthSteps {
    std::array<LengthStep, symbolCount + 1> steps{};
    std::size_t count = 0;

    std::span<const LengthStep> all() const { return {steps.data(), count}; }
};

LengthSteps lengthSteps(std::span<const std::uint8_t> lengths) {
    constexpr std::uint8_t again = 16;
    constexpr std::uint8_t zeros = 17;
    constexpr std::uint8_t manyZeros = 18;
    const auto byte = [](std::size_t value) { return static_cast<std::uint8_t>(value); };
    LengthSteps result;
    const auto add = [&](LengthStep step) { result.steps[result.count++] = step; };
    for (std::size_t at = 0; at < lengths.size();) {
        const std::size_t zeroRun = lengths[at] == 0 ? runAt(lengths, at, 138) : 0;
        const std::size_t sameRun = at > 0 && lengths[at] == lengths[at - 1] ? runAt(lengths, at, 6) : 0;
        if (zeroRun >= 11) {
            add({manyZeros, 7, byte(zeroRun - 11)});
            at += zeroRun;
        } else if (zeroRun >= 3) {
            add({zeros, 3, byte(zeroRun - 3)});
            at += zeroRun;
        } else if (sameRun >= 3) {
            add({again, 2, byte(sameRun - 3)});
            at += sameRun;
        } else {
            add({lengths[at], 0, 0});
            ++at;
        }
    }
    return result;
}

/// A block's codes, and what the block takes with them.
struct Codes {
    std::array<Code, symbolCount> symbols{};
    LengthSteps lengths;
    std::array<Code, lengthSymbolCount> lengthSymbols{};
    std::size_t lengthsTold = lengthSymbolCount; ///< of those symbols, in the format's own order
    std::uint64_t bits = 0;

    explicit Codes(std::span<const std::uint32_t> counts) {
        // Four codes fit between two flushes.
        constexpr unsigned longest = 14;
        PrefixCode::assign(counts, longest, symbols);
        std::array<std::uint8_t, symbolCount + 1> told{};
        std::ranges::transform(symbols, told.begin(),
                               [](const Code& code) { return static_cast<std::uint8_t>(code.length); });
        lengths = lengthSteps(told);
        std::array<std::uint32_t, lengthSymbolCount> lengthCounts{};
        for (const LengthStep& step : lengths.all())
            ++lengthCounts[step.symbol];
        constexpr unsigned longestOfLengths = 7;
        PrefixCode::assign(lengthCounts, longestOfLengths, lengthSymbols);
        while (lengthSymbols[lengthOrder[lengthsTold - 1]].length == 0)
            --lengthsTold;
        bits = 3 + 5 + 5 + 4 + 3 * lengthsTold;
        for (const LengthStep& step : lengths.all())
            bits += lengthSymbols[step.symbol].length + std::uint64_t{step.extraCount};
        for (std::size_t i = 0; i < symbolCount; ++i)
            bits += std::uint64_t{counts[i]} * symbols[i].length;
    }
};

/// How often each byte of a block occurs, and its end.
std::array<std::uint32_t, symbolCount> countsOf(std::span<const std::uint8_t> bytes) {
    // Several tables: a byte that stands twice in a row need not wait for its own count.
    std::array<std::array<std::uint32_t, byteCount>, 4> tables{};
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4) {
        for (std::size_t n = 0; n < 4; ++n)
            ++tables[n][bytes[i + n]];
    }
    for (; i < bytes.size(); ++i)
        ++tables[0][bytes[i]];
    std::array<std::uint32_t, symbolCount> counts{};
    for (std::size_t byte = 0; byte < byteCount; ++byte)
        counts[byte] = tables[0][byte] + tables[1][byte] + tables[2][byte] + tables[3][byte];
    counts[endOfBlock] = 1;
    return counts;
}

/// Writes bits, the first one into the lowest place of a byte.
class BitWriter {
  public:
    explicit BitWriter(std::uint8_t* out) : m_out(out) {}

    /// Up to 56 bits between two flushes.
    void put(std::uint64_t bits, unsigned count) {
        m_bits |= bits << m_count;
        m_count += count;
    }
    void put(const Code& code) { put(code.bits, code.length); }

    /// Writes the whole bytes, and up to eight more that do not count yet.
    void flush() {
        const std::uint64_t little = qToLittleEndian(m_bits);
        std::memcpy(m_out, &little, sizeof little);
        const unsigned whole = m_count / 8;
        m_out += whole;
        m_bits >>= 8 * whole;
        m_count %= 8;
    }

    /// Fills the last byte up with zeros.
    void fillByte() {
        put(0, (8 - m_count % 8) % 8);
        flush();
    }

    void putBytes(std::span<const std::uint8_t> bytes) {
        if (!bytes.empty())
            std::memcpy(m_out, bytes.data(), bytes.size());
        m_out += bytes.size();
    }

    const std::uint8_t* end() const { return m_out; }

  private:
    std::uint8_t* m_out;
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};

constexpr std::size_t longestStored = 65535;

std::uint64_t storedBits(std::size_t length) {
    const std::size_t blocks = std::max<std::size_t>(1, (length + longestStored - 1) / longestStored);
    return 8 * static_cast<std::uint64_t>(length) + blocks * (3 + 7 + 32);
}

void writeStored(BitWriter& writer, std::span<const std::uint8_t> bytes, bool isLast) {
    do {
        const std::span<const std::uint8_t> part = bytes.first(std::min(bytes.size(), longestStored));
        bytes = bytes.subspan(part.size());
        writer.put(isLast && bytes.empty() ? 1 : 0, 3);
        writer.fillByte();
        const auto length = static_cast<std::uint16_t>(part.size());
        writer.put(length, 16);
        writer.put(static_cast<std::uint16_t>(~length), 16);
        writer.flush();
        writer.putBytes(part);
    } while (!bytes.empty());
}

void writeCodes(BitWriter& writer, const Codes& codes, bool isLast) {
    constexpr unsigned dynamicCodes = 2;
    writer.put(isLast ? 1 : 0, 1);
    writer.put(dynamicCodes, 2);
    writer.put(symbolCount - 257, 5);
    writer.put(0, 5); // one distance
    writer.put(codes.lengthsTold - 4, 4);
    writer.flush();
    for (std::size_t i = 0; i < codes.lengthsTold; ++i) {
        writer.put(codes.lengthSymbols[lengthOrder[i]].length, 3);
        writer.flush();
    }
    for (const LengthStep& step : codes.lengths.all()) {
        writer.put(codes.lengthSymbols[step.symbol]);
        writer.put(step.extraBits, step.extraCount);
        writer.flush();
    }
}

/// Two codes, one behind the other.
struct Joined {
    Joined(const Code& a, const Code& b)
        : bits(a.bits | std::uint64_t{b.bits} << a.length), length(unsigned{a.length} + b.length) {}

    std::uint64_t bits;
    unsigned length;
};

void writeBlock(BitWriter& writer, std::span<const std::uint8_t> bytes, bool isLast) {
    const Codes codes(countsOf(bytes));
    if (codes.bits >= storedBits(bytes.size())) {
        writeStored(writer, bytes, isLast);
        return;
    }
    writeCodes(writer, codes, isLast);
    std::size_t i = 0;
    for (; i + 4 <= bytes.size(); i += 4) {
        // In pairs, neither of which waits for the other.
        const Joined first(codes.symbols[bytes[i]], codes.symbols[bytes[i + 1]]);
        const Joined second(codes.symbols[bytes[i + 2]], codes.symbols[bytes[i + 3]]);
        writer.put(first.bits | second.bits << first.length, first.length + second.length);
        writer.flush();
    }
    for (; i < bytes.size(); ++i) {
        writer.put(codes.symbols[bytes[i]]);
        writer.flush();
    }
    writer.put(codes.symbols[endOfBlock]);
    writer.flush();
}

} // namespace

std::size_t ByteCoder::bound(std::size_t length) {
    const std::size_t blocks = length / blockBytes + 1;
    const std::size_t flushedTooFar = 8;
    return length + 6 * (blocks + length / longestStored + 1) + flushedTooFar;
}

std::size_t ByteCoder::write(std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    BitWriter writer(out);
    do {
        const std::span<const std::uint8_t> block = bytes.first(std::min(bytes.size(), blockBytes));
        bytes = bytes.subspan(block.size());
        writeBlock(writer, block, bytes.empty());
    } while (!bytes.empty());
    writer.fillByte();
    return static_cast<std::size_t>(writer.end() - out);
}
