#pragma once

#include "base/ByteCount.h"
#include "base/FourCharCode.h"

#include <QByteArrayView>
#include <QtEndian>

#include <bit>
#include <concepts>
#include <cstring>
#include <optional>
#include <type_traits>

/// Reads numbers and records from bytes and checks the bounds of each access: a read that is not completely
/// inside the bytes gives no value. It is a view: the bytes must outlive it and every slice taken from it.
class ByteReader {
  public:
    explicit ByteReader(QByteArrayView bytes) : m_bytes(bytes) {}

    QByteArrayView view() const { return m_bytes; }
    qsizetype size() const { return m_bytes.size(); }
    bool isEmpty() const { return m_bytes.isEmpty(); }

    /// The `length` bytes from `at` on. With a `length` of 0, `at` may be the end.
    std::optional<ByteReader> slice(ByteCount at, ByteCount length) const {
        if (!at.isAtMost(size()) || !length.isAtMost(size() - at.value()))
            return std::nullopt;
        return ByteReader(m_bytes.sliced(at.value(), length.value()));
    }

    /// All bytes from `at` on; empty at the end.
    std::optional<ByteReader> from(ByteCount at) const {
        if (!at.isAtMost(size()))
            return std::nullopt;
        return ByteReader(m_bytes.sliced(at.value()));
    }

    /// The integer that is stored in the given byte order.
    template <std::integral Number>
    std::optional<Number> number(ByteCount at, std::endian order) const {
        const std::optional<ByteReader> found = slice(at, sizeof(Number));
        if (!found)
            return std::nullopt;
        return order == std::endian::big ? qFromBigEndian<Number>(found->m_bytes.data())
                                         : qFromLittleEndian<Number>(found->m_bytes.data());
    }

    /// The integer that is stored with its most significant byte first.
    template <std::integral Number>
    std::optional<Number> bigEndian(ByteCount at) const {
        return number<Number>(at, std::endian::big);
    }

    /// The integer that is stored with its least significant byte first.
    template <std::integral Number>
    std::optional<Number> littleEndian(ByteCount at) const {
        return number<Number>(at, std::endian::little);
    }

    /// The unsigned integer that is stored in `width` bytes, at most eight, in the given byte order.
    std::optional<quint64> number(ByteCount at, ByteCount width, std::endian order) const {
        constexpr qsizetype widest = sizeof(quint64);
        const std::optional<ByteReader> found = width.isAtMost(widest) ? slice(at, width) : std::nullopt;
        if (!found)
            return std::nullopt;
        quint64 value = 0;
        for (qsizetype i = 0; i < found->size(); ++i) {
            const qsizetype place = order == std::endian::big ? i : found->size() - 1 - i;
            value = value << 8U | static_cast<quint8>(found->m_bytes[place]);
        }
        return value;
    }

    std::optional<FourCharCode> fourCharCode(ByteCount at) const {
        const std::optional<quint32> code = bigEndian<quint32>(at);
        return code ? std::optional(FourCharCode(*code)) : std::nullopt;
    }

    /// A struct whose fields have a fixed byte order (quint32_be and the like) and no padding.
    template <typename Record>
    std::optional<Record> record(ByteCount at) const {
        static_assert(std::is_trivially_copyable_v<Record> &&
                      std::has_unique_object_representations_v<Record>);
        const std::optional<ByteReader> found = slice(at, sizeof(Record));
        if (!found)
            return std::nullopt;
        Record result{};
        std::memcpy(&result, found->m_bytes.data(), sizeof result);
        return result;
    }

    /// Record number `index`, counted from 0, of the consecutive records that start at `at`.
    template <typename Record>
    std::optional<Record> record(ByteCount at, std::integral auto index) const {
        return record<Record>(at + ByteCount(index) * ByteCount(sizeof(Record)));
    }

  private:
    QByteArrayView m_bytes;
};
