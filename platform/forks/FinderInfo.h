#pragma once

#include "base/FourCharCode.h"

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <array>

/// The 32 bytes that the file browser of macOS keeps of a file or folder, big-endian. Of a file the first
/// four are its type and the next four its creator; the flags stand in the same place for both. Source:
/// Inside Macintosh: Macintosh Toolbox Essentials, chapter 7, "Finder Interface Reference".
class FinderInfo {
  public:
    static constexpr qsizetype size = 32;

    // Flags.
    static constexpr quint16 hasBeenInited = 0x0100;
    static constexpr quint16 hasCustomIcon = 0x0400;
    static constexpr quint16 isInvisible = 0x4000;

    /// All zero.
    FinderInfo() = default;
    /// The first 32 of `bytes`; what is missing is zero.
    explicit FinderInfo(QByteArrayView bytes) {
        std::copy_n(bytes.begin(), std::min(size, bytes.size()), m_bytes.begin());
    }

    QByteArray bytes() const { return {m_bytes.data(), size}; }

    FourCharCode type() const { return FourCharCode(qFromBigEndian<quint32>(m_bytes.data())); }
    void setType(FourCharCode type) { qToBigEndian(type.value, m_bytes.data()); }
    FourCharCode creator() const { return FourCharCode(qFromBigEndian<quint32>(m_bytes.data() + creatorAt)); }
    void setCreator(FourCharCode creator) { qToBigEndian(creator.value, m_bytes.data() + creatorAt); }
    quint16 flags() const { return qFromBigEndian<quint16>(m_bytes.data() + flagsAt); }
    void setFlags(quint16 flags) { qToBigEndian(flags, m_bytes.data() + flagsAt); }

    bool operator==(const FinderInfo&) const = default;

  private:
    static constexpr std::size_t creatorAt = 4;
    static constexpr std::size_t flagsAt = 8;

    std::array<char, size> m_bytes{};
};
