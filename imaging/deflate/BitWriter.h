#pragma once

#include "imaging/deflate/PrefixCode.h"

#include <QtEndian>

#include <cstdint>
#include <cstring>
#include <span>

/// Writes bits into bytes, from the lowest bit of each byte up (RFC 1951, section 3.1.1). The output needs
/// room for eight bytes after the last one.
class BitWriter {
  public:
    explicit BitWriter(std::uint8_t* out) : m_out(out) {}

    /// Takes up to 56 bits between two flushes.
    void put(std::uint64_t bits, unsigned count) {
        m_bits |= bits << m_count;
        m_count += count;
    }
    void put(const PrefixCode::Code& code) { put(code.bits, code.length); }

    /// Writes the whole bytes. It always writes eight bytes; later ones overwrite those after the whole
    /// bytes.
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

    /// The end of the whole bytes.
    const std::uint8_t* end() const { return m_out; }
    /// Goes on at `out`, where the caller moved the end of the whole bytes.
    void continueAt(std::uint8_t* out) { m_out = out; }

  private:
    std::uint8_t* m_out;
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};
