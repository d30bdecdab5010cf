#pragma once

#include <QtEndian>

#include <concepts>
#include <limits>
#include <utility>

/// A number of bytes: an offset or a length, from a whole number of any type, also from one that the bytes
/// themselves tell. One that is negative, or more than bytes in memory can be, is out of reach, and so is
/// every sum and product with it: nothing wraps.
class ByteCount {
  public:
    // NOLINTBEGIN(google-explicit-constructor): it stands for the number.
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

    /// Negative where it is out of reach.
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
