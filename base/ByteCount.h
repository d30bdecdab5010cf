#pragma once

#include <QtEndian>

#include <concepts>
#include <limits>
#include <utility>

/// A number of bytes: an offset or a length. It is made from an integer of any type, also from one that was
/// read from a file. A negative number, or one larger than qsizetype can hold, is out of range. Every sum and
/// product with such a number is out of range too; nothing wraps around.
class ByteCount {
  public:
    // NOLINTBEGIN(google-explicit-constructor): a number can stand wherever a ByteCount is expected.
    template <std::integral Number>
    constexpr ByteCount(Number number)
        : m_count(std::in_range<qsizetype>(number) && std::cmp_greater_equal(number, 0)
                      ? static_cast<qsizetype>(number)
                      : outOfReach) {}
    /// From a field of a record.
    template <typename Storage>
    ByteCount(QSpecialInteger<Storage> field)
        : ByteCount(static_cast<typename Storage::StorageType>(field)) {}
    // NOLINTEND(google-explicit-constructor)

    constexpr bool isAtMost(qsizetype limit) const { return m_count != outOfReach && m_count <= limit; }

    /// The number; negative if it is out of range.
    constexpr qsizetype value() const { return m_count; }

    friend constexpr ByteCount operator+(ByteCount a, ByteCount b) {
        return a.isAtMost(most) && b.isAtMost(most - a.m_count) ? a.m_count + b.m_count : outOfReach;
    }

    friend constexpr ByteCount operator*(ByteCount a, ByteCount b) {
        if (!a.isAtMost(most) || !b.isAtMost(most))
            return outOfReach;
        return a.m_count == 0 || b.m_count <= most / a.m_count ? a.m_count * b.m_count : outOfReach;
    }

  private:
    static constexpr qsizetype outOfReach = -1;
    static constexpr qsizetype most = std::numeric_limits<qsizetype>::max();

    qsizetype m_count;
};
