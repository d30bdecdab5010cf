#pragma once

#include "imaging/deflate/BitWriter.h"
#include "imaging/deflate/PrefixCode.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The codes of a block's single bytes, written many at a time.
class ByteCodes {
  public:
    /// The longest that a code may be: four of them fit between two flushes.
    static constexpr unsigned longest = 14;
    static constexpr std::size_t byteCount = 256;

    /// Keeps `codes` by reference.
    explicit ByteCodes(std::span<const PrefixCode::Code, byteCount> codes);

    /// Writes the codes of the whole fours in `size` bytes; by vectors of 64 bytes where the processor has
    /// AVX-512 VBMI.
    void write(BitWriter& writer, const std::uint8_t* bytes, std::size_t size) const {
        if (size >= vectorLength && m_hasVectors) {
            writer = writeVectors(writer, m_tables, bytes, size);
            bytes += size - size % vectorLength;
            size %= vectorLength;
        }
        writeFours(writer, bytes, size);
    }

    /// The same bits without vectors.
    void writeFours(BitWriter& writer, const std::uint8_t* bytes, std::size_t size) const {
        for (; size >= 4; size -= 4, bytes += 4) {
            // In pairs, neither of which waits for the other.
            const Joined first(m_codes[bytes[0]], m_codes[bytes[1]]);
            const Joined second(m_codes[bytes[2]], m_codes[bytes[3]]);
            writer.put(first.bits | second.bits << first.length, first.length + second.length);
            writer.flush();
        }
    }

  private:
    static constexpr std::size_t vectorLength = 64;

    struct Joined {
        std::uint64_t bits;
        unsigned length;

        Joined(const PrefixCode::Code& a, const PrefixCode::Code& b)
            : bits(a.bits | std::uint64_t{b.bits} << a.length), length(unsigned{a.length} + b.length) {}
    };

    /// The same codes as tables of bytes.
    struct alignas(64) Tables {
        std::array<std::uint8_t, byteCount> lengths;
        std::array<std::uint8_t, byteCount> low;
        std::array<std::uint8_t, byteCount> high;
    };
    /// Of the whole vectors in `size` bytes.
    static BitWriter writeVectors(BitWriter writer, const Tables& tables, const std::uint8_t* bytes,
                                  std::size_t size);

    std::span<const PrefixCode::Code, byteCount> m_codes;
    bool m_hasVectors;
    Tables m_tables; ///< filled where there are vectors
};
