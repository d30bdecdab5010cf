#include "platform/services/PropertyListText.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <optional>

namespace {

enum class Encoding { Utf8, Utf16BigEndian, Utf16LittleEndian, Utf16, Latin1, Ascii };

struct Name {
    const char* name;
    Encoding encoding;
};

/// Upper and lower case make no difference.
constexpr Name names[] = {{"UTF-8", Encoding::Utf8},
                          {"UTF8", Encoding::Utf8},
                          {"UTF-16", Encoding::Utf16},
                          {"UTF-16BE", Encoding::Utf16BigEndian},
                          {"UTF-16LE", Encoding::Utf16LittleEndian},
                          {"ISO-8859-1", Encoding::Latin1},
                          {"ISO_8859-1", Encoding::Latin1},
                          {"ISO8859-1", Encoding::Latin1},
                          {"Latin1", Encoding::Latin1},
                          {"US-ASCII", Encoding::Ascii},
                          {"ASCII", Encoding::Ascii}};

/// In bytes. Every sensible XML declaration is shorter.
constexpr qsizetype longestDeclaration = 1024;

Error malformed(const QString& sentence) {
    return {ErrorCode::Malformed, sentence};
}

/// The encoding according to the first bytes, and the length of the byte order mark.
struct Start {
    std::optional<Encoding> encoding;
    qsizetype markLength = 0;
};

Start startOf(const QByteArray& list) {
    if (list.startsWith("\xEF\xBB\xBF"))
        return {Encoding::Utf8, 3};
    if (list.startsWith("\xFE\xFF"))
        return {Encoding::Utf16BigEndian, 2};
    if (list.startsWith("\xFF\xFE"))
        return {Encoding::Utf16LittleEndian, 2};
    // "<" in UTF-16.
    if (list.startsWith(QByteArray("\0<", 2)))
        return {Encoding::Utf16BigEndian, 0};
    if (list.startsWith(QByteArray("<\0", 2)))
        return {Encoding::Utf16LittleEndian, 0};
    return {};
}

/// The start of a list as text, to find its XML declaration. If the first bytes give no encoding, it is read
/// as Latin-1: the declaration is ASCII, and all encodings with single bytes share ASCII.
QString beginning(const QByteArray& list, std::optional<Encoding> encoding) {
    const QByteArray bytes = list.left(longestDeclaration);
    if (encoding == Encoding::Utf16BigEndian)
        return QStringDecoder(QStringConverter::Utf16BE).decode(bytes);
    if (encoding == Encoding::Utf16LittleEndian)
        return QStringDecoder(QStringConverter::Utf16LE).decode(bytes);
    return QString::fromLatin1(bytes);
}

/// Finds the name of the encoding in the XML declaration at the start of `text`.
QRegularExpressionMatch declaration(const QString& text) {
    static const QRegularExpression pattern(
        QStringLiteral("^<\\?xml\\s[^>]*?\\sencoding\\s*=\\s*[\"']([A-Za-z][A-Za-z0-9._-]*)[\"']"));
    return pattern.match(text.left(longestDeclaration));
}

std::optional<Encoding> encodingOf(const QString& name) {
    const auto found = std::ranges::find_if(names, [&](const Name& known) {
        return name.compare(QLatin1String(known.name), Qt::CaseInsensitive) == 0;
    });
    return found != std::end(names) ? std::optional(found->encoding) : std::nullopt;
}

QString nameOf(Encoding encoding) {
    const auto found = std::ranges::find(names, encoding, &Name::encoding);
    return QString::fromLatin1(found->name);
}

bool isUtf16(Encoding encoding) {
    return encoding == Encoding::Utf16 || encoding == Encoding::Utf16BigEndian ||
           encoding == Encoding::Utf16LittleEndian;
}

/// Decodes bytes without a byte order mark.
Result<QString> decoded(const QByteArray& bytes, Encoding encoding, const QString& name) {
    const Error wrong = malformed(QStringLiteral("a property list whose bytes are not %1").arg(name));
    const auto by = [&](QStringConverter::Encoding unicode) -> Result<QString> {
        QStringDecoder decoder(unicode, QStringDecoder::Flag::Stateless);
        QString text = decoder.decode(bytes);
        return decoder.hasError() ? Result<QString>(wrong) : text;
    };
    switch (encoding) {
    case Encoding::Utf8:
        return by(QStringConverter::Utf8);
    case Encoding::Utf16BigEndian:
        return by(QStringConverter::Utf16BE);
    case Encoding::Utf16LittleEndian:
        return by(QStringConverter::Utf16LE);
    case Encoding::Latin1:
        return QString::fromLatin1(bytes);
    case Encoding::Ascii:
        if (std::ranges::any_of(bytes, [](char c) { return static_cast<quint8>(c) > 0x7F; }))
            return wrong;
        return QString::fromLatin1(bytes);
    case Encoding::Utf16:
        break;
    }
    // The declaration was read in single bytes, so the list is not in UTF-16.
    return wrong;
}

} // namespace

Result<QByteArray> PropertyListText::inUtf8(const QByteArray& list) {
    const Start start = startOf(list);
    const QByteArray bytes = list.mid(start.markLength);
    const QString declared = declaration(beginning(bytes, start.encoding)).captured(1);
    const std::optional<Encoding> known = declared.isEmpty() ? Encoding::Utf8 : encodingOf(declared);
    if (!known)
        return malformed(
            QStringLiteral(
                "a property list in %1, where only UTF-8, UTF-16, ISO-8859-1 and US-ASCII are read")
                .arg(declared));
    // UTF-16 in a declaration that was read in single bytes is wrong.
    const Encoding encoding = start.encoding.value_or(isUtf16(*known) ? Encoding::Utf16 : *known);
    Result<QString> text = decoded(bytes, encoding, start.encoding ? nameOf(encoding) : nameOf(*known));
    if (!text)
        return text.error();
    if (const QRegularExpressionMatch match = declaration(*text); match.hasMatch())
        text->replace(match.capturedStart(1), match.capturedLength(1), QStringLiteral("UTF-8"));
    return text->toUtf8();
}
