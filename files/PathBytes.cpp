#include "files/PathBytes.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>

namespace {

constexpr char16_t firstRawUnit = 0xDC80;
constexpr char16_t lastRawUnit = 0xDCFF;
constexpr char16_t rawUnits = 0xDC00;

/// A decoder for UTF-8. It keeps a byte order mark at the start, which is a part of the name.
QStringDecoder utf8Decoder() {
    return QStringDecoder(QStringDecoder::Utf8,
                          QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
}

std::optional<QString> utf8Text(QByteArrayView bytes) {
    QStringDecoder decoder = utf8Decoder();
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

/// The length in UTF-8 of a character whose first byte is `first`.
qsizetype characterLength(quint8 first) {
    if (first < 0xC0)
        return 1;
    if (first < 0xE0)
        return 2;
    return first < 0xF0 ? 3 : 4;
}

bool isRaw(const QString& text, qsizetype at) {
    return PathBytes::rawByte(text[at]) && (at == 0 || !text[at - 1].isHighSurrogate());
}

bool hasRawBytes(const QString& text) {
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isRaw(text, at))
            return true;
    }
    return false;
}

/// The text in UTF-8, with the raw bytes as they are.
QByteArray mixedBytes(const QString& text) {
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!isRaw(text, at))
            continue;
        bytes += QStringView(text).mid(start, at - start).toUtf8();
        bytes += static_cast<char>(*PathBytes::rawByte(text[at]));
        start = at + 1;
    }
    return bytes + QStringView(text).mid(start).toUtf8();
}

} // namespace

std::optional<quint8> PathBytes::rawByte(QChar unit) {
    if (unit.unicode() < firstRawUnit || unit.unicode() > lastRawUnit)
        return std::nullopt;
    return static_cast<quint8>(unit.unicode() - rawUnits);
}

QString PathBytes::decoded(QByteArrayView path) {
    if (std::optional<QString> text = utf8Text(path))
        return std::move(*text);
    QString text;
    for (qsizetype at = 0; at < path.size();) {
        const auto first = static_cast<quint8>(path[at]);
        const qsizetype length = std::min(characterLength(first), path.size() - at);
        const std::optional<QString> character = utf8Text(path.sliced(at, length));
        text += character ? *character : QString(QChar(static_cast<char16_t>(rawUnits + first)));
        at += character ? length : 1;
    }
    return text;
}

QByteArray PathBytes::encoded(const QString& path) {
    return hasRawBytes(path) ? mixedBytes(path) : QFile::encodeName(path);
}

QString PathBytes::withReplacements(const QString& text) {
    if (!hasRawBytes(text))
        return text;
    return utf8Decoder().decode(mixedBytes(text));
}
