#pragma once

#include <QString>

/// A four-character code: 32 bits, the first character in the most significant byte.
struct FourCharCode {
    quint32 value = 0;

    constexpr FourCharCode() = default;
    constexpr explicit FourCharCode(quint32 code) : value(code) {}
    constexpr FourCharCode(const char (&text)[5]) // NOLINT(google-explicit-constructor): it is a literal
        : value(static_cast<quint32>(static_cast<unsigned char>(text[0])) << 24 |
                static_cast<quint32>(static_cast<unsigned char>(text[1])) << 16 |
                static_cast<quint32>(static_cast<unsigned char>(text[2])) << 8 |
                static_cast<quint32>(static_cast<unsigned char>(text[3]))) {}

    constexpr bool operator==(const FourCharCode&) const = default;

    QString text() const {
        const char characters[4] = {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
                                    static_cast<char>(value >> 8), static_cast<char>(value)};
        return QString::fromLatin1(characters, 4);
    }
};
