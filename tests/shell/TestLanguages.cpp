#include "mainwindow/PictureCaption.h"
#include "mainwindow/PlanCaption.h"
#include "platform/widgets/Alert.h"
#include "shell/AboutBox.h"
#include "shell/Languages.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

const QStringList codes{QStringLiteral("de"), QStringLiteral("ja")};

struct Message {
    QString source;
    QString translation;
    bool isFinished = false;
};

/// The messages of a catalogue, as the tree has them.
std::vector<Message> messages(const QString& code) {
    QFile file(QStringLiteral(RESOURCES_DIR "/translations/tobrimax_%1.ts").arg(code));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    std::vector<Message> found;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QStringLiteral("source"))
            found.push_back({reader.readElementText(), {}, false});
        else if (reader.name() == QStringLiteral("translation")) {
            found.back().isFinished = !reader.attributes().hasAttribute(QStringLiteral("type"));
            found.back().translation = reader.readElementText();
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return found;
}

/// The places for arguments in `text`, such as "%1", in alphabetical order.
QStringList places(const QString& text) {
    static const QRegularExpression place(QStringLiteral("%[0-9]"));
    QStringList found;
    for (const QRegularExpressionMatch& match : place.globalMatch(text))
        found << match.captured();
    found.sort();
    return found;
}

/// The keys that `text` has for the keyboard: "f" of "&File".
QStringList keys(const QString& text) {
    static const QRegularExpression key(QStringLiteral("&(\\w)"),
                                        QRegularExpression::UseUnicodePropertiesOption);
    QStringList found;
    for (const QRegularExpressionMatch& match : key.globalMatch(text))
        found << match.captured(1).toLower();
    return found;
}

class LanguagesTest : public AppDelegateFixture {
  protected:
    /// A delegate of its own, made in the language that is installed. The window is shown.
    std::unique_ptr<AppDelegate> started() {
        auto made =
            std::make_unique<AppDelegate>(AppDelegate::Surroundings{application,
                                                                    {bundle, screen, workspace},
                                                                    defaults,
                                                                    [](const QString&) { return false; },
                                                                    [](const StoreError&) { return false; }});
        made->setupInitialController();
        made->promotionWindowSetup();
        made->showPromotionWindow();
        Events::settle();
        return made;
    }
};

TEST_F(LanguagesTest, the_first_wanted_language_that_is_there_is_taken) {
    const auto taken = [](const QStringList& wanted) { return Languages(wanted).code(); };
    const auto words = [](const char* text) { return QString::fromLatin1(text).split(u' '); };
    EXPECT_EQ(taken(words("de-AT en")), QStringLiteral("de"));
    EXPECT_EQ(taken(words("fr-FR ja-JP de")), QStringLiteral("ja"));
    EXPECT_EQ(taken(words("en-GB de")), QStringLiteral("en")) << "English is no catalogue, but wanted";
    EXPECT_EQ(taken(words("fr C")), QStringLiteral("en"));
    EXPECT_EQ(taken({}), QStringLiteral("en"));
}

TEST_F(LanguagesTest, windows_speak_a_language_as_long_as_it_is_installed) {
    {
        const Languages german({QStringLiteral("de")});
        EXPECT_EQ(PictureCaption::tr("Pasted picture"), QStringLiteral("Eingefügtes Bild"));
    }
    EXPECT_EQ(PictureCaption::tr("Pasted picture"), QStringLiteral("Pasted picture"));
}

TEST_F(LanguagesTest, catalogues_are_complete) {
    for (const QString& code : codes) {
        const std::vector<Message> all = messages(code);
        ASSERT_GE(all.size(), 100U);
        for (const Message& message : all) {
            const std::string text = (code + QStringLiteral(": ") + message.source).toStdString();
            EXPECT_TRUE(message.isFinished) << text;
            EXPECT_FALSE(message.translation.isEmpty()) << text;
            EXPECT_EQ(places(message.translation), places(message.source)) << text;
            EXPECT_EQ(keys(message.translation).size(), keys(message.source).size()) << text;
            EXPECT_EQ(message.translation.contains(u'…'), message.source.contains(u'…')) << text;
        }
    }
}

TEST_F(LanguagesTest, each_key_means_one_thing_in_a_window_and_in_a_menu) {
    for (const QString& code : codes) {
        const Languages language({code});
        const auto made = started();
        auto* window = qobject_cast<QMainWindow*>(made->mainWindowController()->window());
        QStringList inWindow;
        for (const QAction* menu : window->menuBar()->actions()) {
            inWindow << keys(menu->text());
            QStringList inMenu;
            for (const QAction* item : menu->menu()->actions())
                inMenu << keys(item->text());
            EXPECT_EQ(inMenu.removeDuplicates(), 0) << menu->text().toStdString();
        }
        for (const QLabel* label : window->findChildren<QLabel*>())
            inWindow << (label->buddy() != nullptr ? keys(label->text()) : QStringList());
        for (const QAbstractButton* button : window->findChildren<QAbstractButton*>())
            inWindow << keys(button->text());
        EXPECT_GE(inWindow.size(), 12);
        EXPECT_EQ(inWindow.removeDuplicates(), 0) << code.toStdString() << inWindow.join(u' ').toStdString();
        QStringList inCard;
        for (const QAbstractButton* button : made->windowPromotion()->findChildren<QAbstractButton*>())
            inCard << keys(button->text());
        EXPECT_EQ(inCard.size(), 4);
        EXPECT_EQ(inCard.removeDuplicates(), 0) << inCard.join(u' ').toStdString();
    }
}

TEST_F(LanguagesTest, values_are_written_as_the_language_does_from_the_start) {
    const Languages japanese({QStringLiteral("ja")});
    const auto made = started();
    for (const char* name : {"cornerRadiusValue", "borderWidthValue"}) {
        const auto* value =
            made->mainWindowController()->window()->findChild<QLabel*>(QString::fromLatin1(name));
        EXPECT_TRUE(value->text().endsWith(u'%') && !value->text().contains(u' '))
            << value->text().toStdString();
    }
}

TEST_F(LanguagesTest, the_window_says_in_its_language_why_a_picture_could_not_be_read) {
    auto german = std::make_unique<Languages>(QStringList(QStringLiteral("de")));
    const auto made = started();
    const auto said = [&](const QByteArray& bytes) {
        made->mainWindowController()->imgViewIcon->takePicture(bytes);
        return made->mainWindowController()->window()->findChild<PictureCaption*>()->text().section(u'\n', 1);
    };
    EXPECT_EQ(said({}), QStringLiteral("Die Datei ist leer."));
    EXPECT_EQ(said("words"), QStringLiteral("Kein Bild, sondern Text."));
    EXPECT_EQ(said("%PDF-1.7"),
              QStringLiteral("Kein Bild, sondern ein PDF-Dokument; bitte als SVG oder PNG sichern."));
    EXPECT_EQ(said("....ftypavif"),
              QStringLiteral("Ein AVIF-Bild kann nicht gelesen werden; bitte als PNG sichern."));
    EXPECT_EQ(
        said("PK\3\4"),
        QStringLiteral("Kein Bild, sondern ein ZIP-Archiv; bitte entpacken und das Bild darin nehmen."));
    EXPECT_EQ(said("fLaC"), QStringLiteral("Kein Bild, sondern eine Tondatei."));
    EXPECT_TRUE(
        said("GIF89a").startsWith(QStringLiteral("Das GIF-Bild ist unvollständig oder beschädigt (")));
    german.reset();
    const Languages japanese({QStringLiteral("ja")});
    EXPECT_EQ(said("words"), QStringLiteral("画像ではなくテキストです。"));
}

TEST_F(LanguagesTest, the_window_says_in_its_language_what_a_drawing_lacks) {
    QByteArray links;
    for (const char* name : {"a", "b", "c", "d", "e"})
        links += QByteArray("<image href='") + name + ".png' width='9' height='9'/>";
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='1024' height='1024'>"
                               "<rect width='9' height='9' style='fill: var(--ink)'/>"
                               "<foreignObject/><text y='50' font-family='No Such Font'>A</text>" +
                               links + "</svg>";
    const Languages german({QStringLiteral("de")});
    const auto made = started();
    made->mainWindowController()->imgViewIcon->takePicture(drawing);
    const QStringList lines =
        made->mainWindowController()->window()->findChild<PictureCaption*>()->text().split(u'\n');
    for (const QString& line :
         {QStringLiteral(
              "Das Bild zeigt nichts von den Dateien, auf die es verweist: a.png, b.png, c.png und 2 "
              "weitere."),
          QStringLiteral("Im Bild wird foreignObject weggelassen."),
          QStringLiteral("Das Bild hat Stile mit var(); diese werden weggelassen."),
          QStringLiteral(
              "Der Text des Bildes wird mit anderen Schriften gezeichnet, da diese nicht installiert "
              "sind: No Such Font.")})
        EXPECT_TRUE(lines.contains(line)) << line.toStdString() << "\nin\n"
                                          << lines.join(u'\n').toStdString();
}

TEST_F(LanguagesTest, alerts_and_questions_stay_english) {
    const Languages german({QStringLiteral("de")});
    const auto made = started();
    made->mainWindowController()->actionGenerateIcons(nullptr);
    auto* alert = made->mainWindowController()->window()->findChild<Alert*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("Icon File Error"));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("Please drag and drop icon file first!"));
    EXPECT_EQ(alert->buttons().value(0)->text().remove(u'&'), QStringLiteral("Ok"));
    for (const char* key : {"Could not save changes while quitting. Quit anyway?",
                            "Quitting now will lose any changes you have made since the last successful save",
                            "Quit anyway", "Cancel"})
        EXPECT_EQ(Bundle::localizedStringForKey(QString::fromLatin1(key), {}, {}), QString::fromLatin1(key));
}

/// Expects that every label and button in `window` has the room for its text.
void expectRoom(const QWidget& window, const std::string& where) {
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty())
            continue;
        const QRect bounds = label->fontMetrics().boundingRect(
            QRect(0, 0, label->width(), 10000), label->wordWrap() ? Qt::TextWordWrap : Qt::TextShowMnemonic,
            label->text());
        // Whole numbers around a text may be larger than the text by a part of a point.
        EXPECT_LE(bounds.width(), label->width() + 1) << where << label->text().toStdString();
        EXPECT_LE(bounds.height(), label->height() + 1) << where << label->text().toStdString();
    }
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (!button->isVisible())
            continue;
        EXPECT_GE(button->width(), button->sizeHint().width()) << where << button->text().toStdString();
    }
}

TEST_F(LanguagesTest, nothing_is_clipped_in_a_font_twice_as_large) {
    const QFont usual = QApplication::font();
    QImage small(30, 20, QImage::Format_ARGB32);
    small.fill(Qt::transparent);
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    ASSERT_TRUE(small.save(path));
    for (const QString& code : {QStringLiteral("en"), QStringLiteral("de"), QStringLiteral("ja")}) {
        const Languages language({code});
        for (const double factor : {1.0, 2.0}) {
            QFont larger = usual;
            larger.setPointSizeF(usual.pointSizeF() * factor);
            QApplication::setFont(larger);
            const auto made = started();
            MainWindowController& controller = *made->mainWindowController();
            controller.openFile(path);
            const std::string where = code.toStdString() + " at " + std::to_string(factor) + ": ";
            for (int platform = 0; platform < controller.platformSelection->count(); ++platform) {
                controller.platformSelection->setCurrentIndex(platform);
                Events::settle();
                expectRoom(*controller.window(), where);
            }
            for (int app = 0; app < 8; ++app) {
                expectRoom(*made->windowPromotion(), where);
                made->changeAppDetail();
                Events::settle();
            }
            AboutBox about(nullptr);
            about.setAttribute(Qt::WA_DeleteOnClose, false);
            about.show();
            Events::settle();
            expectRoom(about, where);
        }
    }
    QApplication::setFont(usual);
}

} // namespace
