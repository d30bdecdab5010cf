#include "shell/SuggestedApp.h"

#include <QCoreApplication>

namespace {

QString words(const char* text) {
    return QCoreApplication::translate("SuggestedApp", text);
}

/// The address of a store page. The identifiers are placeholders until the applications have their own.
QString storePage(int identifier) {
    return QStringLiteral("macappstore://itunes.apple.com/app/id%1?mt=12").arg(identifier);
}

} // namespace

std::array<SuggestedApp, 8> suggestedApps() {
    return {{
        {QStringLiteral("lumenfold"), QStringLiteral("Lumenfold"), storePage(100000001),
         words(QT_TRANSLATE_NOOP(
             "SuggestedApp",
             "Folds a paper model of any shape that you draw, and prints the sheets to cut out."))},
        {QStringLiteral("quillbox"), QStringLiteral("Quillbox"), storePage(100000002),
         words(QT_TRANSLATE_NOOP(
             "SuggestedApp",
             "A quiet place to write: one page, one font, and a word count when you ask for it."))},
        {QStringLiteral("tidemark"), QStringLiteral("Tidemark"), storePage(100000003),
         words(QT_TRANSLATE_NOOP("SuggestedApp",
                                 "Tides and daylight for every harbour of your coast, for the week ahead."))},
        {QStringLiteral("patchbay"), QStringLiteral("Patchbay"), storePage(100000004),
         words(QT_TRANSLATE_NOOP(
             "SuggestedApp",
             "Connects the sound of one program with the input of another, cable by cable."))},
        {QStringLiteral("rowan"), QStringLiteral("Rowan"), storePage(100000005),
         words(QT_TRANSLATE_NOOP(
             "SuggestedApp",
             "Keeps your garden's diary: what was sown, where it stands, and when to pick it."))},
        {QStringLiteral("meridian"), QStringLiteral("Meridian"), storePage(100000006),
         words(QT_TRANSLATE_NOOP("SuggestedApp",
                                 "The time wherever your friends are, on one small globe in the menu bar."))},
        {QStringLiteral("kettle"), QStringLiteral("Kettle"), storePage(100000007),
         words(QT_TRANSLATE_NOOP("SuggestedApp",
                                 "Timers with names. Start three at once and know which one is ringing."))},
        {QStringLiteral("stencil"), QStringLiteral("Stencil"), storePage(100000008),
         words(QT_TRANSLATE_NOOP(
             "SuggestedApp", "Lays out labels, badges and name tags from a list, ready for the printer."))},
    }};
}
