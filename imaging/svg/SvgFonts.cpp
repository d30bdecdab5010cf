#include "imaging/svg/SvgFonts.h"

#include "imaging/svgpipe/SvgMessages.h"

#include <QSet>

#include <algorithm>

namespace {

/// Whether any font will do, or the name is none.
bool isGeneric(const QString& name) {
    static const QSet<QString> generic{
        // CSS Fonts, and keywords of all properties.
        QStringLiteral("serif"), QStringLiteral("sans-serif"), QStringLiteral("monospace"),
        QStringLiteral("cursive"), QStringLiteral("fantasy"), QStringLiteral("system-ui"),
        QStringLiteral("emoji"), QStringLiteral("math"), QStringLiteral("fangsong"),
        QStringLiteral("ui-serif"), QStringLiteral("ui-sans-serif"), QStringLiteral("ui-monospace"),
        QStringLiteral("ui-rounded"), QStringLiteral("inherit"), QStringLiteral("initial"),
        QStringLiteral("unset"),
        // Names that fontconfig and editors use for them.
        QStringLiteral("sans"), QStringLiteral("sans serif"), QStringLiteral("mono")};
    return name.startsWith(QLatin1String("-apple-")) || generic.contains(name.toLower());
}

/// What the property `font` says of families: all that follows its size.
QByteArray familiesOfShorthand(const QByteArray& value) {
    const QList<QByteArray> words = value.simplified().split(' ');
    for (qsizetype i = 0; i < words.size(); ++i) {
        // A size has a unit; a weight such as 700 has none.
        const QByteArray size = words[i].split('/').front();
        const bool isSize = !size.isEmpty() && (size[0] == '.' || (size[0] >= '0' && size[0] <= '9')) &&
                            (size.back() == '%' || (size.back() >= 'a' && size.back() <= 'z'));
        if (isSize)
            return words.sliced(i + 1).join(' ');
    }
    return {};
}

/// Calls `take` with each part between separators that are not in quotes, and with the separator behind it.
template <typename Take>
void split(const QByteArray& text, QByteArrayView separators, Take take) {
    char quote = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const char c = i < text.size() ? text[i] : separators[0];
        if (i < text.size() && (quote != 0 ? c == quote : c == '"' || c == '\''))
            quote = quote != 0 ? '\0' : c;
        if (i == text.size() || (quote == 0 && separators.contains(c))) {
            take(text.sliced(start, i - start).trimmed());
            start = i + 1;
        }
    }
}

QByteArray withoutEntities(QByteArrayView text) {
    QByteArray plain = text.toByteArray();
    if (plain.contains('&'))
        plain.replace("&quot;", "\"").replace("&#34;", "\"").replace("&apos;", "'").replace("&#39;", "'");
    return plain;
}

} // namespace

std::vector<QByteArray> SvgFonts::ofStyle(QByteArrayView style) {
    QByteArray plain = withoutEntities(style);
    for (qsizetype at = plain.indexOf("/*"); at >= 0; at = plain.indexOf("/*", at)) {
        const qsizetype end = plain.indexOf("*/", at + 2);
        plain.remove(at, (end < 0 ? plain.size() : end + 2) - at);
    }
    std::vector<QByteArray> found;
    split(plain, ";{}", [&](const QByteArray& declaration) {
        const qsizetype colon = declaration.indexOf(':');
        if (colon < 0)
            return;
        const QByteArray name = declaration.first(colon).trimmed().toLower();
        const QByteArray value = declaration.sliced(colon + 1).trimmed();
        if (name == "font-family")
            found.push_back(value);
        else if (name == "font")
            found.push_back(familiesOfShorthand(value));
    });
    return found;
}

void SvgFonts::add(QByteArrayView families) {
    constexpr qsizetype mostNames = 8;
    constexpr qsizetype longestName = 100;
    QStringList names;
    bool isOver = false;
    split(withoutEntities(families), ",", [&](const QByteArray& part) {
        QByteArray bytes = part;
        if (const qsizetype priority = bytes.indexOf('!'); priority >= 0)
            bytes.truncate(priority);
        const QString name =
            QString::fromUtf8(bytes).remove(u'"').remove(u'\'').simplified().left(longestName);
        isOver = isOver || names.size() == mostNames || isGeneric(name);
        if (!isOver && !name.isEmpty())
            names << name;
    });
    add(names);
}

void SvgFonts::add(const QStringList& names) {
    if (!names.isEmpty() && m_lists.size() < SvgPipe::mostFontLists &&
        std::ranges::find(m_lists, names) == m_lists.end())
        m_lists.push_back(names);
}

QByteArray SvgFonts::message(const std::vector<QStringList>& lists) {
    QByteArray bytes;
    for (const QStringList& names : lists)
        bytes += names.join(u'\t').toUtf8() + '\n';
    return bytes;
}
