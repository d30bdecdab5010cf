#pragma once

#include "imaging/deflate/BitWriter.h"
#include "imaging/deflate/PrefixCode.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// The codes of a block's single bytes, written four at a time.
class ByteCodes {
  public:
    /// The most bits of a code: four codes fit between two flushes.
    static constexpr unsigned longest = 14;
    static constexpr std::size_t byteCount = 256;

    /// Keeps `codes` by reference.
    explicit ByteCodes(std::span<const PrefixCode::Code, byteCount> codes) : m_codes(codes) {}

    /// Writes the codes of `size` bytes, rounded down to a multiple of four.
    void write(BitWriter& writer, const std::uint8_t* bytes, std::size_t size) const {
        for (; size >= 4; size -= 4, bytes += 4) {
            // In two pairs, which the processor can join at the same time.
            const Joined first(m_codes[bytes[0]], m_codes[bytes[1]]);
            const Joined second(m_codes[bytes[2]], m_codes[bytes[3]]);
            writer.put(first.bits | second.bits << first.length, first.length + second.length);
            writer.flush();
        }
    }

  private:
    struct Joined {
        std::uint64_t bits;
        unsigned length;

        Joined(const PrefixCode::Code& a, const PrefixCode::Code& b)
            : bits(a.bits | std::uint64_t{b.bits} << a.length), length(unsigned{a.length} + b.length) {}
    };

    std::span<const PrefixCode::Code, byteCount> m_codes;
};
