#include "mainwindow/SentenceWords.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <array>
#include <utility>

namespace {

constexpr auto context = "Sentences";

/// What the readers say. A place such as %1 stands for any words; those are translated too. The first pattern
/// that fits is taken.
constexpr std::array patterns{
    QT_TRANSLATE_NOOP("Sentences", "not a picture but text"),
    QT_TRANSLATE_NOOP("Sentences", "not a picture but an HTML page; save the picture itself"),
    QT_TRANSLATE_NOOP("Sentences", "not a picture but %1; %2"),
    QT_TRANSLATE_NOOP("Sentences", "not a picture but %1"),
    QT_TRANSLATE_NOOP("Sentences", "%1 is not read here; %2"),
    QT_TRANSLATE_NOOP("Sentences", "not a picture of a known format (%1)"),
    QT_TRANSLATE_NOOP("Sentences", "the file is empty"),
    QT_TRANSLATE_NOOP("Sentences", "the %1 picture is truncated or damaged (%2)"),
    QT_TRANSLATE_NOOP("Sentences", "the file was changed while it was read"),
    QT_TRANSLATE_NOOP("Sentences", "No such file or directory"),
    QT_TRANSLATE_NOOP("Sentences", "Permission denied"),
    QT_TRANSLATE_NOOP("Sentences", "Is a directory"),
    QT_TRANSLATE_NOOP("Sentences", "Not a regular file"),
    QT_TRANSLATE_NOOP("Sentences", "save it as SVG or PNG"),
    QT_TRANSLATE_NOOP("Sentences", "save it as PNG"),
    QT_TRANSLATE_NOOP("Sentences", "save one frame as PNG"),
    QT_TRANSLATE_NOOP("Sentences", "unpack it and take the picture in it"),
    QT_TRANSLATE_NOOP("Sentences", "a video"),
    QT_TRANSLATE_NOOP("Sentences", "a sound"),
    QT_TRANSLATE_NOOP("Sentences", "a sound or video"),
    QT_TRANSLATE_NOOP("Sentences", "a program"),
    QT_TRANSLATE_NOOP("Sentences", "a font"),
    QT_TRANSLATE_NOOP("Sentences", "a Windows cursor"),
    QT_TRANSLATE_NOOP("Sentences", "a camera's raw picture"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 picture"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 picture"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 document"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 document"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 archive"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 archive"),
};

/// The pattern as an expression: its places are groups.
QRegularExpression expression(const QString& pattern) {
    static const QRegularExpression place(QStringLiteral("%[12]"));
    QStringList parts;
    for (const QString& part : pattern.split(place))
        parts << QRegularExpression::escape(part);
    return QRegularExpression(QRegularExpression::anchoredPattern(parts.join(QStringLiteral("(.+)"))));
}

} // namespace

QString inUsersLanguage(const QString& sentence) {
    for (const char* pattern : patterns) {
        const QRegularExpressionMatch match = expression(QString::fromUtf8(pattern)).match(sentence);
        if (!match.hasMatch())
            continue;
        // In English it would be the same sentence again.
        QString words = QCoreApplication::translate(context, pattern);
        if (match.lastCapturedIndex() == 1)
            words = words.arg(inUsersLanguage(match.captured(1)));
        else if (match.lastCapturedIndex() == 2)
            words = words.arg(inUsersLanguage(match.captured(1)), inUsersLanguage(match.captured(2)));
        return words;
    }
    return sentence;
}
