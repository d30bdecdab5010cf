#pragma once

#include "base/FourCharCode.h"

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

/// The 32 bytes that the macOS file browser keeps for a file or folder, big-endian. For a file, the first
/// four bytes are its type and the next four its creator. The flags are in the same place for files and
/// folders. Source: Inside Macintosh: Macintosh Toolbox Essentials, chapter 7, "Finder Interface Reference".
class FinderInfo {
  public:
    static constexpr qsizetype size = 32;

    // Flags.
    static constexpr quint16 hasBeenInited = 0x0100;
    static constexpr quint16 hasCustomIcon = 0x0400;
    static constexpr quint16 isInvisible = 0x4000;

    /// All zero.
    FinderInfo() = default;
    /// Takes the first 32 of `bytes`; missing bytes are zero.
    explicit FinderInfo(QByteArrayView bytes) {
        if (!bytes.isEmpty())
            std::memcpy(&m_fields, bytes.data(), static_cast<std::size_t>(std::min(size, bytes.size())));
    }

    QByteArray bytes() const { return {reinterpret_cast<const char*>(&m_fields), size}; }

    FourCharCode type() const { return FourCharCode(m_fields.type); }
    void setType(FourCharCode type) { m_fields.type = type.value; }
    FourCharCode creator() const { return FourCharCode(m_fields.creator); }
    void setCreator(FourCharCode creator) { m_fields.creator = creator.value; }
    quint16 flags() const { return m_fields.flags; }
    void setFlags(quint16 flags) { m_fields.flags = flags; }

    bool operator==(const FinderInfo&) const = default;

  private:
    struct Fields {
        quint32_be type;
        quint32_be creator;
        quint16_be flags;
        std::array<char, 22> others;

        bool operator==(const Fields&) const = default;
    };
    static_assert(sizeof(Fields) == size);

    Fields m_fields{};
};
