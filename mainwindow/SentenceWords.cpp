#include "mainwindow/SentenceWords.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

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
    // Warnings, and what a folder is refused for.
    QT_TRANSLATE_NOOP("Sentences", "the picture (%1) is %2 and will be enlarged"),
    QT_TRANSLATE_NOOP("Sentences", "smaller than the largest icon (%1)"),
    QT_TRANSLATE_NOOP("Sentences", "narrower than the widest icon (%1)"),
    QT_TRANSLATE_NOOP("Sentences", "lower than the highest icon (%1)"),
    QT_TRANSLATE_NOOP("Sentences", "drawn as large as %1"),
    QT_TRANSLATE_NOOP("Sentences", "the picture (%1) is not square and will be stretched"),
    QT_TRANSLATE_NOOP("Sentences",
                      "the picture (%1) is not square and is drawn whole, with two edges of its icons free"),
    QT_TRANSLATE_NOOP("Sentences", "the picture (%1) is not square and is cut off at two edges"),
    QT_TRANSLATE_NOOP("Sentences", "the picture is empty: all that icons show of it is transparent"),
    QT_TRANSLATE_NOOP("Sentences",
                      "the picture has transparent parts; where icons need a ground it is white"),
    QT_TRANSLATE_NOOP("Sentences", "the picture has several frames; the first is taken"),
    QT_TRANSLATE_NOOP("Sentences",
                      "the picture's colour profile could not be used; its colours are taken as sRGB"),
    QT_TRANSLATE_NOOP("Sentences", "the picture shows nothing of the files that it links to: %1"),
    QT_TRANSLATE_NOOP("Sentences", "the picture's foreignObject is left out"),
    QT_TRANSLATE_NOOP("Sentences", "the picture has styles with var(), which are left out"),
    QT_TRANSLATE_NOOP("Sentences",
                      "the picture's text is drawn with other fonts, since these are not installed: %1"),
    QT_TRANSLATE_NOOP("Sentences", "%1 and %2 more"),
    QT_TRANSLATE_NOOP("Sentences", "the picture takes more than %1 s to draw"),
    QT_TRANSLATE_NOOP("Sentences", "the picture takes more memory to draw than %1 GiB"),
    QT_TRANSLATE_NOOP("Sentences", "the SVG document is larger than %1 MiB"),
    QT_TRANSLATE_NOOP("Sentences", "the SVG document is nested deeper than %1 elements"),
    QT_TRANSLATE_NOOP("Sentences", "the SVG document declares an external entity"),
    QT_TRANSLATE_NOOP("Sentences", "icons that fill their square get rounded corners on the background, but "
                                   "stores and systems cut corners themselves"),
    QT_TRANSLATE_NOOP("Sentences", "the picture's corners leave the circle that every launcher shows, and "
                                   "may be cut off in adaptive and maskable icons"),
    QT_TRANSLATE_NOOP("Sentences",
                      "%1 is there already, and a build takes only one of the two; remove it first"),
    QT_TRANSLATE_NOOP("Sentences", "circle"),
    QT_TRANSLATE_NOOP("Sentences", "squircle"),
    QT_TRANSLATE_NOOP("Sentences", "rounded square"),
    QT_TRANSLATE_NOOP("Sentences", "teardrop"),
    // The titles of the built-in layouts.
    QT_TRANSLATE_NOOP("Sentences", "Android: launcher icons below res/, and Google Play's picture"),
    QT_TRANSLATE_NOOP("Sentences", "A Capacitor project: iOS and Android"),
    QT_TRANSLATE_NOOP("Sentences", "An Electron project: the build/ folder of electron-builder"),
    QT_TRANSLATE_NOOP("Sentences", "An Expo project: the pictures that app.json names"),
    QT_TRANSLATE_NOOP("Sentences", "A Flutter project: all platforms"),
    QT_TRANSLATE_NOOP("Sentences", "Linux: the hicolor icon theme"),
    QT_TRANSLATE_NOOP("Sentences", "A React Native project: iOS and Android"),
    QT_TRANSLATE_NOOP("Sentences", "A Tauri 2 project: desktop and mobile"),
    QT_TRANSLATE_NOOP("Sentences", "A web site: favicon, touch icon, web app manifest"),
    QT_TRANSLATE_NOOP("Sentences", "Windows: app.ico, and the pictures of a package"),
    QT_TRANSLATE_NOOP("Sentences", "macOS: an icon set with all sizes"),
    QT_TRANSLATE_NOOP("Sentences", "iPhone and iPad: an icon set with one 1024 for all sizes"),
    QT_TRANSLATE_NOOP("Sentences", "Apple Watch: an icon set with one 1024 for all sizes"),
    QT_TRANSLATE_NOOP("Sentences", "Apple Watch: an icon set with all sizes"),
    QT_TRANSLATE_NOOP("Sentences", "iPhone, iPad and the App Store: an icon set with all sizes"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 picture"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 picture"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 document"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 document"),
    QT_TRANSLATE_NOOP("Sentences", "a %1 archive"),
    QT_TRANSLATE_NOOP("Sentences", "an %1 archive"),
};

/// The pattern as an expression: its places are groups.
QRegularExpression expressionOf(const QString& pattern) {
    static const QRegularExpression place(QStringLiteral("%[12]"));
    QStringList parts;
    for (const QString& part : pattern.split(place))
        parts << QRegularExpression::escape(part);
    return QRegularExpression(QRegularExpression::anchoredPattern(parts.join(QStringLiteral("(.+)"))));
}

/// The expressions of all patterns. They are made once.
const std::vector<QRegularExpression>& expressions() {
    static const std::vector<QRegularExpression> all = [] {
        std::vector<QRegularExpression> made;
        made.reserve(patterns.size());
        for (const char* pattern : patterns)
            made.push_back(expressionOf(QString::fromUtf8(pattern)));
        return made;
    }();
    return all;
}

} // namespace

QString inUsersLanguage(const QString& sentence) {
    for (std::size_t i = 0; i < patterns.size(); ++i) {
        const QRegularExpressionMatch match = expressions()[i].match(sentence);
        if (!match.hasMatch())
            continue;
        // In English it would be the same sentence again.
        QString words = QCoreApplication::translate(context, patterns.at(i));
        if (match.lastCapturedIndex() == 1)
            words = words.arg(inUsersLanguage(match.captured(1)));
        else if (match.lastCapturedIndex() == 2)
            words = words.arg(inUsersLanguage(match.captured(1)), inUsersLanguage(match.captured(2)));
        return words;
    }
    return sentence;
}

QString asSentence(QString words) {
    if (!words.isEmpty())
        words[0] = words[0].toUpper();
    const bool isEnded = !words.isEmpty() && QStringLiteral(".)。）").contains(words.back());
    //: A sentence and its end.
    return isEnded ? words : QCoreApplication::translate("PictureCaption", "%1.").arg(words);
}
