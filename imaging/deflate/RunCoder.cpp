#include "imaging/deflate/RunCoder.h"

#include "imaging/deflate/BitWriter.h"
#include "imaging/deflate/ByteCodes.h"
#include "imaging/deflate/PrefixCode.h"
#include "imaging/deflate/RunBlock.h"
#include "imaging/deflate/RunSymbols.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using PrefixCode::Code;
using RunSymbols::distances;
using RunSymbols::distanceSymbolCount;
using RunSymbols::symbolCount;

/// A step in the list of a block's code lengths (RFC 1951, section 3.2.7): a length, or a symbol for repeated
/// lengths.
struct LengthStep {
    std::uint8_t symbol;
    std::uint8_t extraCount;
    std::uint8_t extraBits;
};

constexpr std::size_t lengthSymbolCount = 19;
constexpr std::array<std::uint8_t, lengthSymbolCount> lengthOrder{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                  11, 4,  12, 3, 13, 2, 14, 1, 15};

/// How many equal values stand from `at` on, at most `most`.
std::size_t runAt(std::span<const std::uint8_t> lengths, std::size_t at, std::size_t most) {
    std::size_t run = 1;
    while (run < most && at + run < lengths.size() && lengths[at + run] == lengths[at])
        ++run;
    return run;
}

constexpr std::size_t mostLengths = symbolCount + distanceSymbolCount;

/// The steps that list the lengths of all codes.
struct LengthSteps {
    std::array<LengthStep, mostLengths> steps{};
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

/// A block's codes, and the bits that the block takes with them.
struct Codes {
    std::array<Code, symbolCount> symbols{};
    std::array<Code, distanceSymbolCount> distances{};
    std::size_t symbolsTold = symbolCount; ///< the symbols after these have no code
    std::size_t distancesTold = 1;         ///< likewise; at least one is listed
    LengthSteps lengths;
    std::array<Code, lengthSymbolCount> lengthSymbols{};
    std::size_t lengthsTold = lengthSymbolCount; ///< of `lengthSymbols`, in `lengthOrder`
    std::uint64_t bits = 0;

    explicit Codes(const RunBlock& block) {
        const auto counts = block.symbolCounts();
        const auto distanceCounts = block.distanceCounts();
        PrefixCode::assign(counts, ByteCodes::longest, symbols);
        while (symbols[symbolsTold - 1].length == 0)
            --symbolsTold;
        if (!block.runs().empty()) {
            PrefixCode::assign(distanceCounts, ByteCodes::longest, distances);
            distancesTold = distanceSymbolCount;
            while (distances[distancesTold - 1].length == 0)
                --distancesTold;
        }
        tellLengths();
        addBits(counts, distanceCounts);
    }

  private:
    void tellLengths() {
        std::array<std::uint8_t, mostLengths> told{};
        const auto length = [](const Code& code) { return static_cast<std::uint8_t>(code.length); };
        const auto behindSymbols =
            std::ranges::transform(std::span(symbols).first(symbolsTold), told.begin(), length).out;
        std::ranges::transform(std::span(distances).first(distancesTold), behindSymbols, length);
        lengths = lengthSteps(std::span(told).first(symbolsTold + distancesTold));
        std::array<std::uint32_t, lengthSymbolCount> counts{};
        for (const LengthStep& step : lengths.all())
            ++counts[step.symbol];
        constexpr unsigned longest = 7;
        PrefixCode::assign(counts, longest, lengthSymbols);
        while (lengthSymbols[lengthOrder[lengthsTold - 1]].length == 0)
            --lengthsTold;
    }

    void addBits(std::span<const std::uint32_t> counts, std::span<const std::uint32_t> distanceCounts) {
        bits = 3 + 5 + 5 + 4 + 3 * lengthsTold;
        for (const LengthStep& step : lengths.all())
            bits += lengthSymbols[step.symbol].length + std::uint64_t{step.extraCount};
        for (std::size_t i = 0; i < symbolCount; ++i)
            bits += std::uint64_t{counts[i]} * symbols[i].length;
        for (std::size_t i = 0; i < RunSymbols::lengthCount; ++i)
            bits += std::uint64_t{counts[RunSymbols::firstLength + i]} * RunSymbols::extraCountOf(i);
        for (const RunSymbols::Distance& distance : RunSymbols::distances)
            bits += std::uint64_t{distanceCounts[distance.extra.symbol]} *
                    (distances[distance.extra.symbol].length + std::uint64_t{distance.extra.count});
    }
};

constexpr std::size_t longestStored = 65535;

/// The length in bits of a stream of `bits` bits after `length` stored bytes are appended.
std::uint64_t withStored(std::uint64_t bits, std::size_t length) {
    do {
        const std::size_t part = std::min(length, longestStored);
        length -= part;
        bits = (bits + 3 + 7) / 8 * 8 + 32 + 8 * static_cast<std::uint64_t>(part);
    } while (length > 0);
    return bits;
}

/// Whether a block is stored without codes: that takes no more bits, at whatever bit of a byte it begins.
bool isStored(const Codes& codes, const RunBlock& block) {
    constexpr std::uint64_t worstPlace = 6;
    return codes.bits >= withStored(worstPlace, block.bytes().size()) - worstPlace;
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
    writer.put(codes.symbolsTold - 257, 5);
    writer.put(codes.distancesTold - 1, 5);
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

/// Codes and extra bits, joined.
struct Joined {
    std::uint64_t bits = 0;
    unsigned length = 0;

    void add(std::uint64_t moreBits, unsigned count) {
        bits |= moreBits << length;
        length += count;
    }
    void add(const Code& code) { add(code.bits, code.length); }
};

/// The bits of every possible run: the length's code and the distance's code, each with its extra bits.
class RunBits {
  public:
    explicit RunBits(const Codes& codes) {
        for (std::size_t i = 0; i < distances.size(); ++i) {
            const RunSymbols::Extra& distance = distances[i].extra;
            const Code& distanceCode = codes.distances[distance.symbol];
            if (distanceCode.length == 0)
                continue;
            for (std::size_t length = RunSymbols::leastRun; length <= RunSymbols::longest; ++length) {
                const RunSymbols::Extra& extra = RunSymbols::lengthOf(length);
                Joined run;
                run.add(codes.symbols[RunSymbols::firstLength + extra.symbol]);
                run.add(extra.bits, extra.count);
                run.add(distanceCode);
                run.add(distance.bits, distance.count);
                m_runs[i][length] = {static_cast<std::uint32_t>(run.bits), run.length};
            }
        }
    }

    void put(BitWriter& writer, const Run& run) const {
        const Bits& bits = m_runs[run.distance][run.length];
        writer.put(bits.bits, bits.count);
    }

  private:
    struct Bits {
        std::uint32_t bits;
        std::uint32_t count;
    };
    std::array<std::array<Bits, RunSymbols::longest + 1>, distances.size()> m_runs{};
};

/// Returns the writer as it is after the block. It is passed by value for speed: by reference it would be
/// read again after each code, since for the compiler the written bytes could be those of the writer itself.
BitWriter write(BitWriter writer, const RunBlock& block, bool isLast) {
    const Codes codes(block);
    if (isStored(codes, block)) {
        writeStored(writer, block.bytes(), isLast);
        return writer;
    }
    writeCodes(writer, codes, isLast);
    const RunBits runBits(codes);
    const ByteCodes byteCodes(std::span(codes.symbols).first<ByteCodes::byteCount>());
    constexpr Code nothing;
    const std::uint8_t* at = block.bytes().data();
    for (const Run& run : block.runs()) {
        byteCodes.write(writer, at, run.bytesBefore);
        const std::size_t left = run.bytesBefore % 4;
        at += run.bytesBefore - left;
        // The last three bytes or fewer, without branches. at[0] to at[2] can be read: the run's bytes
        // follow.
        writer.put(left > 0 ? codes.symbols[at[0]] : nothing);
        writer.put(left > 1 ? codes.symbols[at[1]] : nothing);
        writer.put(left > 2 ? codes.symbols[at[2]] : nothing);
        writer.flush();
        runBits.put(writer, run);
        writer.flush();
        at += left + run.length;
    }
    const std::uint8_t* const end = block.bytes().data() + block.bytes().size();
    const auto behind = static_cast<std::size_t>(end - at);
    byteCodes.write(writer, at, behind);
    for (at = end - behind % 4; at < end; ++at) {
        writer.put(codes.symbols[*at]);
        writer.flush();
    }
    writer.put(codes.symbols[RunSymbols::endOfBlock]);
    writer.flush();
    return writer;
}

} // namespace

std::size_t RunCoder::bound(std::size_t length) {
    const std::size_t blocks = length / RunBlock::mostBytes + 1;
    const std::size_t flushedTooFar = 8;
    return length + 6 * (blocks + length / longestStored + 1) + flushedTooFar;
}

std::size_t RunCoder::length(std::span<const std::uint8_t> bytes) {
    std::uint64_t bits = 0;
    RunBlock block;
    std::size_t begin = 0;
    do {
        block.take(bytes, begin);
        begin += block.bytes().size();
        const Codes codes(block);
        bits = isStored(codes, block) ? withStored(bits, block.bytes().size()) : bits + codes.bits;
    } while (begin < bytes.size());
    return static_cast<std::size_t>((bits + 7) / 8);
}

RunCoder::RunCoder(std::size_t length, std::size_t largestPart)
    : m_bytes(std::make_unique_for_overwrite<std::uint8_t[]>(
          std::min(length, RunSymbols::farthest + RunBlock::mostBytes + largestPart))) {}

std::size_t RunCoder::addPart(std::size_t size, std::uint8_t* out) {
    m_writer.continueAt(out);
    m_end += size;
    // Some bytes stay, so that `finish` has a last block.
    while (m_end - m_begin > RunBlock::mostBytes)
        writeBlock(false);
    return static_cast<std::size_t>(m_writer.end() - out);
}

std::size_t RunCoder::finish(std::uint8_t* out) {
    m_writer.continueAt(out);
    writeBlock(true);
    m_writer.fillByte();
    return static_cast<std::size_t>(m_writer.end() - out);
}

void RunCoder::writeBlock(bool isLast) {
    m_block.take({m_bytes.get(), m_end}, m_begin);
    m_writer = write(m_writer, m_block, isLast);
    m_begin += m_block.bytes().size();
    const std::size_t kept = std::min(m_begin, RunSymbols::farthest);
    std::memmove(m_bytes.get(), m_bytes.get() + m_begin - kept, kept + m_end - m_begin);
    m_end -= m_begin - kept;
    m_begin = kept;
}
