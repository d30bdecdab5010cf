#include "mainwindow/BorderImageView.h"
#include "mainwindow/ProjectSheet.h"
#include "shell/AboutBox.h"
#include "shell/ApplicationIcon.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QClipboard>
#include <QFileDialog>
#include <QHash>
#include <QMainWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>
#include <QTreeWidget>
#include <QUndoCommand>

namespace {

class MainMenuTest : public AppDelegateFixture {
  protected:
    MainMenuTest() {
        QGuiApplication::clipboard()->clear();
        delegate.setupInitialController();
        Events::settle();
    }

    QMainWindow* window() { return qobject_cast<QMainWindow*>(delegate.window()); }
    MainWindowController& controller() { return *delegate.mainWindowController(); }

    static QString plain(QString text) { return text.remove(QLatin1Char('&')); }

    QAction* action(const QString& menu, const QString& item) {
        for (const QAction* top : window()->menuBar()->actions()) {
            if (plain(top->text()) != menu)
                continue;
            for (QAction* candidate : top->menu()->actions()) {
                if (plain(candidate->text()) == item)
                    return candidate;
            }
        }
        ADD_FAILURE() << "no " << menu.toStdString() << " > " << item.toStdString();
        return nullptr;
    }

    void arrive() { controller().imgViewIcon->takePicture(picture()); }

    static QByteArray picture() {
        return "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' "
               "height='9'/></svg>";
    }

    template <class Sheet>
    Sheet* sheet() {
        for (Sheet* candidate : window()->findChildren<Sheet*>()) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }
};

const QString file = QStringLiteral("File");
const QString edit = QStringLiteral("Edit");
const QString view = QStringLiteral("View");
const QString help = QStringLiteral("Help");

TEST_F(MainMenuTest, has_the_menus_that_people_expect) {
    QStringList menus;
    for (const QAction* top : window()->menuBar()->actions())
        menus << plain(top->text());
    EXPECT_EQ(menus, QStringList({file, edit, view, QStringLiteral("Window"), help}));
}

TEST_F(MainMenuTest, every_letter_and_shortcut_is_used_once) {
    QStringList shortcuts;
    for (const QAction* top : window()->menuBar()->actions()) {
        QStringList letters;
        for (const QAction* item : top->menu()->actions()) {
            const QKeySequence letter = QKeySequence::mnemonic(item->text());
            if (!letter.isEmpty())
                letters << letter.toString();
            if (!item->shortcut().isEmpty())
                shortcuts << item->shortcut().toString();
        }
        EXPECT_EQ(letters.removeDuplicates(), 0) << top->text().toStdString();
    }
    EXPECT_GE(shortcuts.size(), 9);
    EXPECT_EQ(shortcuts.removeDuplicates(), 0);
    // The letters of the menus and of the window's controls differ too.
    QStringList letters;
    for (const QAction* top : window()->menuBar()->actions())
        letters << QKeySequence::mnemonic(top->text()).toString();
    for (const QObject* child : window()->findChildren<QObject*>()) {
        const QVariant text = child->property("text");
        const bool isControl = child->isWidgetType() && text.isValid();
        const QKeySequence letter = isControl ? QKeySequence::mnemonic(text.toString()) : QKeySequence();
        if (!letter.isEmpty())
            letters << letter.toString();
    }
    EXPECT_GE(letters.size(), 12);
    EXPECT_EQ(letters.removeDuplicates(), 0) << letters.join(QLatin1Char(' ')).toStdString();
}

TEST_F(MainMenuTest, open_picture_asks_for_a_file) {
    action(file, QStringLiteral("Open Picture…"))->trigger();
    ASSERT_NE(sheet<QFileDialog>(), nullptr);
    EXPECT_EQ(sheet<QFileDialog>()->fileMode(), QFileDialog::ExistingFile);
}

TEST_F(MainMenuTest, generate_is_the_button) {
    QAction* generate = action(file, QStringLiteral("Generate…"));
    EXPECT_FALSE(generate->isEnabled());
    arrive();
    EXPECT_TRUE(generate->isEnabled());
    generate->trigger();
    ASSERT_NE(sheet<QFileDialog>(), nullptr);
    EXPECT_EQ(sheet<QFileDialog>()->fileMode(), QFileDialog::Directory);
}

TEST_F(MainMenuTest, generate_for_a_project_needs_a_picture) {
    QAction* project = action(file, QStringLiteral("Generate for a Project…"));
    EXPECT_EQ(project->shortcut(), QKeySequence(QStringLiteral("Ctrl+Shift+G")));
    EXPECT_FALSE(project->isEnabled());
    controller().imgViewIcon->takePicture("no picture");
    EXPECT_FALSE(project->isEnabled());
    arrive();
    EXPECT_TRUE(project->isEnabled());
    project->trigger();
    ASSERT_NE(sheet<ProjectSheet>(), nullptr);
    Events::key(sheet<ProjectSheet>(), Qt::Key_Escape);
    Events::settle();
    EXPECT_EQ(sheet<ProjectSheet>(), nullptr);
    controller().imgViewIcon->takePicture("no picture");
    EXPECT_FALSE(project->isEnabled());
}

TEST_F(MainMenuTest, copy_and_paste_are_offered_when_there_is_something) {
    QAction* copy = action(edit, QStringLiteral("Copy"));
    QAction* paste = action(edit, QStringLiteral("Paste"));
    auto* menu = qobject_cast<QMenu*>(copy->parent());
    const auto offered = [&](const QAction* item) {
        menu->popup(QPoint(0, 0));
        const bool isOffered = item->isEnabled();
        menu->hide();
        EXPECT_TRUE(item->isEnabled()) << "for its shortcut";
        return isOffered;
    };
    EXPECT_FALSE(offered(copy));
    EXPECT_FALSE(offered(paste));
    copy->trigger();
    paste->trigger();
    EXPECT_FALSE(controller().platformSelection->isEnabled());
    QGuiApplication::clipboard()->setText(QStringLiteral("words"));
    EXPECT_FALSE(offered(paste));
    auto* drawing = new QMimeData;
    drawing->setData(QStringLiteral("image/svg+xml"), picture());
    QGuiApplication::clipboard()->setMimeData(drawing);
    EXPECT_TRUE(offered(paste));
    paste->trigger();
    EXPECT_FALSE(controller().sourceImage().isNull());
    EXPECT_TRUE(offered(copy));
    copy->trigger();
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasImage());
}

TEST_F(MainMenuTest, undo_and_redo_are_the_saved_datas_and_make_it_only_when_asked) {
    const QString store = AppDelegate::applicationDocumentsDirectory();
    EXPECT_FALSE(QFileInfo::exists(store));
    QAction* undo = action(edit, QStringLiteral("Undo"));
    QAction* redo = action(edit, QStringLiteral("Redo"));
    QMenu* menu = qobject_cast<QMenu*>(undo->parent());
    ASSERT_NE(menu, nullptr);
    menu->popup(QPoint(0, 0));
    EXPECT_TRUE(QFileInfo::exists(store)) << "the menu asks for it";
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_FALSE(redo->isEnabled());
    menu->hide();
    EXPECT_TRUE(undo->isEnabled()) << "for its shortcut";
    int changes = 0;
    class Count final : public QUndoCommand {
      public:
        explicit Count(int& count) : m_count(count) {}
        void redo() override { ++m_count; }
        void undo() override { --m_count; }

      private:
        int& m_count;
    };
    delegate.windowWillReturnUndoManager(nullptr)->push(new Count(changes));
    menu->popup(QPoint(0, 0));
    EXPECT_TRUE(undo->isEnabled());
    EXPECT_FALSE(redo->isEnabled());
    menu->hide();
    undo->trigger();
    EXPECT_EQ(changes, 0);
    redo->trigger();
    EXPECT_EQ(changes, 1);
}

TEST_F(MainMenuTest, saving_the_data_is_the_delegates_and_no_way_to_icons) {
    QAction* save = action(file, QStringLiteral("Save Application Data"));
    EXPECT_TRUE(save->isEnabled());
    EXPECT_TRUE(save->shortcut().isEmpty());
    save->trigger();
    EXPECT_TRUE(QFileInfo::exists(AppDelegate::applicationDocumentsDirectory()));
    EXPECT_TRUE(presented.empty());
}

TEST_F(MainMenuTest, the_promotion_window_is_opened_from_the_help_menu) {
    delegate.promotionWindowSetup();
    action(QStringLiteral("Help"), QStringLiteral("More from Varnholt…"))->trigger();
    EXPECT_TRUE(delegate.windowPromotion()->isVisible());
}

TEST_F(MainMenuTest, the_view_menu_is_the_check_boxes) {
    QAction* rounded = action(view, QStringLiteral("Rounded Corner"));
    EXPECT_FALSE(rounded->isEnabled());
    arrive();
    ASSERT_TRUE(rounded->isEnabled());
    rounded->trigger();
    EXPECT_TRUE(controller().roundedCheckButton->isChecked());
    EXPECT_TRUE(controller().imgViewIcon->isRoundCorner()) << "as a click on the box does";
    EXPECT_TRUE(rounded->isChecked());
    controller().roundedCheckButton->click();
    EXPECT_FALSE(rounded->isChecked());
    action(view, QStringLiteral("Border"))->trigger();
    EXPECT_TRUE(controller().imgViewIcon->isBorder());
    action(view, QStringLiteral("Border Colour…"))->trigger();
    EXPECT_NE(controller().colorPicker->panel(), nullptr);
}

TEST_F(MainMenuTest, help_opens_the_guide_and_the_makers_site) {
    QAction* guide = action(help, QStringLiteral("Tobrimax Guide"));
    EXPECT_EQ(guide->shortcut(), QKeySequence(QKeySequence::HelpContents));
    action(help, QStringLiteral("Tobrimax Web Site"))->trigger();
    ASSERT_EQ(workspace.asked.size(), 1);
    EXPECT_EQ(workspace.asked.last().scheme(), QStringLiteral("http"));
    const QString installed = folder.filePath(QStringLiteral("guide.md"));
    bundle.documents[QStringLiteral("docs/guide.md")] = installed;
    guide->trigger();
    ASSERT_EQ(workspace.asked.size(), 2);
    EXPECT_EQ(workspace.asked.last(), QUrl::fromLocalFile(installed));
    bundle.documents.clear();
    guide->trigger();
    ASSERT_EQ(workspace.asked.size(), 3);
    EXPECT_EQ(workspace.asked.last(), workspace.asked.first()) << "without a guide";
}

TEST_F(MainMenuTest, quit_and_save_stand_at_the_end_of_the_file_menu_and_about_under_help) {
    QStringList items;
    for (const QAction* item :
         qobject_cast<QMenu*>(action(file, QStringLiteral("Close"))->parent())->actions())
        items << plain(item->text());
    EXPECT_EQ(items.mid(items.size() - 3), QStringList({QStringLiteral("Save Application Data"), QString(),
                                                        QStringLiteral("Quit Tobrimax")}));
    EXPECT_EQ(action(help, QStringLiteral("About Tobrimax"))->menuRole(), QAction::AboutRole);
}

TEST_F(MainMenuTest, ctrl_and_a_digit_choose_a_platform) {
    const QList<QAction*> platforms = action(view, QStringLiteral("Platform"))->menu()->actions();
    ASSERT_EQ(platforms.size(), 6);
    EXPECT_TRUE(platforms[0]->isChecked());
    window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    const auto press = [&](Qt::Key digit) {
        QTest::keyClick(window(), digit, Qt::ControlModifier);
        Events::settle();
        return controller().platformIndex();
    };
    EXPECT_EQ(press(Qt::Key_4), 0) << "disabled as the list is";
    arrive();
    ASSERT_TRUE(log.lines().isEmpty());
    for (int index = 5; index >= 0; --index) {
        EXPECT_EQ(press(static_cast<Qt::Key>(Qt::Key_1 + index)), index);
        EXPECT_TRUE(platforms[index]->isChecked());
        EXPECT_EQ(platforms[index]->text(), controller().platformSelection->itemText(index));
    }
    EXPECT_EQ(log.lines().first(), QStringLiteral("platform selected index:5")) << "as a choice in the list";
    EXPECT_EQ(log.lines().size(), 6);
    controller().platformSelection->setCurrentIndex(3);
    EXPECT_TRUE(platforms[3]->isChecked());
}

TEST_F(MainMenuTest, what_was_opened_can_be_opened_again_where_the_desktop_keeps_a_list) {
    const QString list = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/recently-used.xbel");
    QFile::remove(list);
    QAction* recent = action(file, QStringLiteral("Open Recent"));
    auto* fileMenu = qobject_cast<QMenu*>(action(file, QStringLiteral("Close"))->parent());
    const QString path = folder.filePath(QStringLiteral("salt & pepper.svg"));
    const auto write = [](const QString& name, const QByteArray& bytes) {
        QFile written(name);
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        written.write(bytes);
    };
    write(path, picture());
    controller().openFile(path);
    Q_EMIT fileMenu->aboutToShow();
    EXPECT_FALSE(recent->isEnabled());
    EXPECT_FALSE(QFile::exists(list)) << "the list is the desktop's";
    write(
        list,
        "<xbel version=\"1.0\" xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\"/>");
    controller().openFile(path);
    controller().imgViewIcon->setImage({});
    Q_EMIT fileMenu->aboutToShow();
    ASSERT_TRUE(recent->isEnabled());
    ASSERT_EQ(recent->menu()->actions().size(), 1);
    EXPECT_EQ(recent->menu()->actions().first()->text(), QStringLiteral("salt && pepper.svg"));
    recent->menu()->actions().first()->trigger();
    EXPECT_FALSE(controller().sourceImage().isNull());
    QFile::remove(list);
}

TEST_F(MainMenuTest, minimise_and_bring_back) {
    action(QStringLiteral("Window"), QStringLiteral("Minimise"))->trigger();
    EXPECT_TRUE(window()->isMinimized());
    action(QStringLiteral("Window"), QStringLiteral("Tobrimax"))->trigger();
    EXPECT_FALSE(window()->isMinimized());
    EXPECT_TRUE(window()->isVisible());
}

/// The name in the about box of a shared library "lib…so". Empty for what comes with the compiler and the
/// system.
QString nameOfLibrary(const QString& part) {
    static const QStringList system{QStringLiteral("stdc++"), QStringLiteral("m"),
                                    QStringLiteral("gcc_s"),  QStringLiteral("c"),
                                    QStringLiteral("asan"),   QStringLiteral("ubsan")};
    static const QHash<QString, QString> names{
        {QStringLiteral("plist-2"), QStringLiteral("libplist")},
        {QStringLiteral("z"), QStringLiteral("zlib")},
        {QStringLiteral("deflate"), QStringLiteral("libdeflate")},
        {QStringLiteral("isal"), QStringLiteral("ISA-L")},
        {QStringLiteral("expat"), QStringLiteral("Expat")},
        {QStringLiteral("png16"), QStringLiteral("libpng")},
        {QStringLiteral("lcms2"), QStringLiteral("Little CMS")},
        {QStringLiteral("gif"), QStringLiteral("giflib")},
        {QStringLiteral("jpeg"), QStringLiteral("libjpeg-turbo")},
        {QStringLiteral("tiff"), QStringLiteral("libtiff")},
        {QStringLiteral("openjp2"), QStringLiteral("OpenJPEG")},
        {QStringLiteral("hwy"), QStringLiteral("Highway")},
    };
    if (system.contains(part))
        return {};
    return part.startsWith(QStringLiteral("Qt6")) ? QStringLiteral("Qt") : names.value(part, part);
}

TEST_F(MainMenuTest, the_about_box_names_the_libraries_and_their_licences) {
    action(help, QStringLiteral("About Tobrimax"))->trigger();
    auto* box = sheet<AboutBox>();
    ASSERT_NE(box, nullptr);
    const auto* table = box->findChild<QTreeWidget*>();
    ASSERT_NE(table, nullptr);
    QStringList named;
    for (int i = 0; i < table->topLevelItemCount(); ++i) {
        for (int column = 0; column < 3; ++column)
            EXPECT_FALSE(table->topLevelItem(i)->text(column).isEmpty());
        // Qt is named with its version.
        const QString name = table->topLevelItem(i)->text(0);
        named << (name.startsWith(QStringLiteral("Qt ")) ? QStringLiteral("Qt") : name);
    }
    EXPECT_GE(named.size(), 12);
#ifdef Q_OS_LINUX
    // This program is linked with the same libraries as the application.
    QProcess readelf;
    readelf.start(QStringLiteral("readelf"), {QStringLiteral("-d"), QCoreApplication::applicationFilePath()});
    ASSERT_TRUE(readelf.waitForFinished());
    const QString linked = QString::fromUtf8(readelf.readAllStandardOutput());
    static const QRegularExpression library(QStringLiteral("NEEDED.*\\[lib([A-Za-z0-9_+-]+)\\.so"));
    QStringList unnamed;
    for (const QRegularExpressionMatch& match : library.globalMatch(linked))
        unnamed << nameOfLibrary(match.captured(1));
    ASSERT_GE(unnamed.size(), 10) << linked.toStdString();
    unnamed.removeIf([&](const QString& name) { return name.isEmpty() || named.contains(name); });
    EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(QStringLiteral(", ")).toStdString();
#endif
}

TEST_F(MainMenuTest, the_application_has_an_icon_for_each_size) {
    const QIcon icon = applicationIcon();
    for (const int size : {16, 32, 48, 64, 128})
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size)));
    EXPECT_GT(icon.pixmap(48).toImage().pixelColor(20, 20).alpha(), 0);
}

} // namespace
