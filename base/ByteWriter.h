#pragma once

#include "base/ByteCount.h"
#include "base/FourCharCode.h"

#include <QByteArray>
#include <QtEndian>

#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <type_traits>

/// The bytes of an integer, the most significant first.
template <std::integral Number>
std::array<std::uint8_t, sizeof(Number)> bigEndianBytes(std::type_identity_t<Number> value) {
    return std::bit_cast<std::array<std::uint8_t, sizeof(Number)>>(qToBigEndian<Number>(value));
}

/// The bytes of an integer, the least significant first.
template <std::integral Number>
std::array<std::uint8_t, sizeof(Number)> littleEndianBytes(std::type_identity_t<Number> value) {
    return std::bit_cast<std::array<std::uint8_t, sizeof(Number)>>(qToLittleEndian<Number>(value));
}

/// Appends numbers and records to bytes, in a stated byte order. The caller names the number's type, so the
/// count of written bytes does not depend on how the number was calculated. Throws std::bad_alloc.
class ByteWriter {
  public:
    /// Appends to `bytes`, which must outlive it.
    explicit ByteWriter(QByteArray& bytes) : m_bytes(bytes) {}

    template <std::integral Number>
    ByteWriter& bigEndian(std::type_identity_t<Number> value) {
        return bytes(bigEndianBytes<Number>(value));
    }

    template <std::integral Number>
    ByteWriter& littleEndian(std::type_identity_t<Number> value) {
        return bytes(littleEndianBytes<Number>(value));
    }

    ByteWriter& fourCharCode(FourCharCode code) { return bigEndian<quint32>(code.value); }

    /// A struct whose fields have a fixed byte order (quint32_be and the like) and no padding.
    template <typename Record>
    ByteWriter& record(const Record& fields) {
        static_assert(std::is_trivially_copyable_v<Record> &&
                      std::has_unique_object_representations_v<Record>);
        return bytes({reinterpret_cast<const char*>(&fields), qsizetype{sizeof fields}});
    }

    ByteWriter& bytes(QByteArrayView more) {
        m_bytes.append(more);
        return *this;
    }

    /// Overwrites existing bytes with a number. If the bytes are not all there, it changes nothing and
    /// returns false.
    template <std::integral Number>
    bool replaceBigEndian(ByteCount at, std::type_identity_t<Number> value) {
        if (!(at + sizeof(Number)).isAtMost(m_bytes.size()))
            return false;
        qToBigEndian<Number>(value, m_bytes.data() + at.value());
        return true;
    }

  private:
    QByteArray& m_bytes;
};
