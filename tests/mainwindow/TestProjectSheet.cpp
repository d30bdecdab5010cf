#include "tests/mainwindow/ProjectSheetFixture.h"

#include <QClipboard>
#include <QColorDialog>
#include <QTest>

namespace {

using namespace Qt::StringLiterals;

class ProjectSheetTest : public ProjectSheetFixture {
  protected:
    /// What the command line writes into another folder. The picture comes first in `arguments`.
    QMap<QString, QByteArray> ofCommandLine(QStringList arguments) {
        const QTemporaryDir folder;
        arguments.prepend(u"generate"_s);
        arguments << u"--out"_s << folder.path() << u"--quiet"_s;
        const ProcessResult run = runCli(arguments);
        EXPECT_EQ(run.exitStatus, 0) << run.errors.toStdString();
        return contents(folder.path());
    }

    void chooseBackground(const QColor& color) {
        auto* well = part<ColorWell>("backgroundWell");
        well->click();
        ASSERT_NE(well->panel(), nullptr);
        EXPECT_FALSE(well->panel()->testOption(QColorDialog::ShowAlphaChannel));
        well->panel()->setCurrentColor(color);
        well->panel()->accept();
        Events::settle();
    }

    void chooseFit(int index) {
        auto* fit = part<QComboBox>("fitSelection");
        fit->setCurrentIndex(index);
        Q_EMIT fit->activated(index);
        Events::settle();
    }

    void choosePadding(double part_) {
        part<FloatSlider>("paddingSlider")->setAccessibleValue(part_);
        Events::settle();
    }
};

TEST_F(ProjectSheetTest, needs_a_picture) {
    controller->generateForProject();
    EXPECT_EQ(shown(), nullptr);
    drop(textFile());
    controller->generateForProject();
    EXPECT_EQ(shown(), nullptr);
    open(pictureFile());
    EXPECT_EQ(shown()->windowModality(), Qt::WindowModal);
    // The one that is open comes to the front.
    controller->generateForProject();
    EXPECT_EQ(controller->window()->findChildren<ProjectSheet*>().size(), 1);
}

TEST_F(ProjectSheetTest, says_what_is_still_to_be_done) {
    open(pictureFile());
    EXPECT_EQ(message(), u"Tick what the project needs."_s);
    EXPECT_FALSE(canGenerate());
    EXPECT_EQ(part<ProofPreview>("proofPreview")->count(), 0);
    tick(u"xcode-single"_s);
    EXPECT_EQ(message(), u"Choose the project's folder."_s);
    EXPECT_FALSE(canGenerate());
    EXPECT_GT(part<ProofPreview>("proofPreview")->count(), 0);
    setFolder(out.path());
    EXPECT_EQ(message(), QString());
    EXPECT_TRUE(canGenerate());
    tick(u"xcode-single"_s);
    EXPECT_FALSE(canGenerate());
    EXPECT_EQ(part<ProofPreview>("proofPreview")->count(), 0);
}

TEST_F(ProjectSheetTest, writes_the_files_of_the_command_line) {
    const QString main = translucentFile(u"logo.png"_s, 1400, 1100, 1);
    const QString dark = translucentFile(u"night.png"_s, 900, 1030, 2);
    open(main);
    tick(u"xcode-single"_s);
    tick(u"android"_s);
    chooseBackground(QColor(u"#336699"_s));
    chooseFit(2);
    choosePadding(0.07);
    part<PictureWell>("darkWell")->takeFile(dark);
    part<PictureWell>("monochromeWell")->takeFile(pictureFile(300, 300));
    setFolder(out.path());
    generate();
    ASSERT_TRUE(showsResult()) << message().toStdString();
    const auto written = contents(out.path());
    EXPECT_GT(written.size(), 20);
    EXPECT_TRUE(written == ofCommandLine({main, u"--layout"_s, u"android,xcode-single"_s, u"--background"_s,
                                          u"#336699"_s, u"--fit"_s, u"cover"_s, u"--padding"_s, u"0.07"_s,
                                          u"--dark"_s, dark, u"--monochrome"_s, pictureFile(300, 300)}));
}

TEST_F(ProjectSheetTest, takes_the_decoration_of_the_window_and_the_documents_text) {
    const QString drawing = write(pictures.path(), u"mark.svg"_s,
                                  "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
                                  "<circle cx='20' cy='15' r='14' fill='teal'/></svg>");
    drop(drawing);
    controller->roundedCheckButton->click();
    controller->sliderCornerRadius->setFloatValue(0.25F);
    open(drawing);
    tick(u"web"_s);
    chooseFit(1);
    setFolder(out.path());
    EXPECT_TRUE(warnings().contains(u"rounded corners on the background"_s)) << warnings().toStdString();
    generate();
    const auto written = contents(out.path());
    EXPECT_TRUE(written.contains(u"icon.svg"_s));
    EXPECT_TRUE(written == ofCommandLine({drawing, u"--layout"_s, u"web"_s, u"--fit"_s, u"contain"_s,
                                          u"--round-corner"_s, u"0.25"_s}));
}

TEST_F(ProjectSheetTest, writes_the_picture_that_was_shown_when_its_file_has_changed) {
    const QString main = pictureFile(700, 700);
    const auto expected = ofCommandLine({main, u"--layout"_s, u"xcode-single"_s});
    open(main);
    tick(u"xcode-single"_s);
    setFolder(out.path());
    ASSERT_TRUE(QFile::remove(main));
    generate();
    ASSERT_TRUE(showsResult()) << message().toStdString();
    EXPECT_TRUE(contents(out.path()) == expected);
}

TEST_F(ProjectSheetTest, warns_as_the_command_line_does_before_anything_is_written) {
    open(translucentFile(u"flat.png"_s, 60, 40, 3));
    tick(u"android"_s);
    EXPECT_EQ(warnings(), u"The picture (60 × 40) is smaller than the largest icon (512 × 512) and will be "
                          "enlarged.\n"
                          "The picture (60 × 40) is not square and will be stretched.\n"
                          "The picture has transparent parts; where icons need a ground it is white.\n"
                          "The picture's corners leave the circle that every launcher shows, and may be cut "
                          "off in adaptive and maskable icons."_s);
    chooseBackground(Qt::darkGreen);
    chooseFit(1);
    choosePadding(0.2);
    EXPECT_FALSE(warnings().contains(u"where icons need a ground"_s));
    EXPECT_FALSE(warnings().contains(u"every launcher"_s));
    EXPECT_TRUE(warnings().contains(u"is drawn whole"_s));
    const auto* label = part<QLabel>("warningsLabel");
    EXPECT_TRUE(label->isVisible());
}

TEST_F(ProjectSheetTest, tells_the_lines_that_the_project_lacks_and_changes_none) {
    const QByteArray page = "<html><head></head></html>\n";
    const QString index = write(out.path(), u"index.html"_s, page);
    open(pictureFile(512, 512));
    tick(u"web"_s);
    setFolder(out.path());
    generate();
    ASSERT_TRUE(showsResult());
    EXPECT_TRUE(resultWords().contains(u"index.html lacks these lines."_s)) << resultWords().toStdString();
    auto* field = part<QWidget>("projectResult")->findChild<QPlainTextEdit*>();
    ASSERT_NE(field, nullptr);
    EXPECT_TRUE(field->isReadOnly());
    EXPECT_TRUE(field->toPlainText().startsWith(u"<link rel=\"icon\" href=\"/favicon.ico\""_s));
    for (QPushButton* button : part<QWidget>("projectResult")->findChildren<QPushButton*>())
        button->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), field->toPlainText());
    EXPECT_EQ(contents(out.path()).value(u"index.html"_s), page);
}

TEST_F(ProjectSheetTest, tells_of_files_that_can_not_be_written_beside_those_that_were) {
    write(out.path(), u"res/mipmap-mdpi/ic_launcher.webp"_s, "theirs");
    open(pictureFile(512, 512));
    tick(u"android"_s);
    setFolder(out.path());
    generate();
    ASSERT_TRUE(showsResult());
    EXPECT_TRUE(resultWords().contains(
        u"Not written: res/mipmap-mdpi/ic_launcher.png: ic_launcher.webp is there already, and a build takes "
        "only one of the two; remove it first."_s))
        << resultWords().toStdString();
    const auto written = contents(out.path());
    EXPECT_FALSE(written.contains(u"res/mipmap-mdpi/ic_launcher.png"_s));
    EXPECT_EQ(written.value(u"res/mipmap-mdpi/ic_launcher.webp"_s), "theirs");
    const auto* files = part<QWidget>("projectResult")->findChild<QTreeWidget*>();
    EXPECT_EQ(files->topLevelItemCount(), written.size() - 1);
    EXPECT_TRUE(resultWords().startsWith(u"%1 files were written"_s.arg(written.size() - 1)));
}

TEST_F(ProjectSheetTest, an_error_is_one_sentence_in_the_sheet_and_nothing_is_written) {
    const QString extra = pictureFile(40, 40);
    open(pictureFile(512, 512));
    tick(u"xcode"_s);
    setFolder(textFile());
    generate();
    EXPECT_FALSE(showsResult());
    EXPECT_TRUE(message().endsWith(u"words.txt: Not a directory."_s)) << message().toStdString();
    setFolder(out.path());
    tick(u"xcode-single"_s);
    EXPECT_TRUE(message().contains(u"both write"_s)) << message().toStdString();
    EXPECT_FALSE(canGenerate());
    generate();
    EXPECT_TRUE(contents(out.path()).isEmpty());
    tick(u"xcode-single"_s);
    part<PictureWell>("darkWell")->takeFile(textFile());
    EXPECT_EQ(message(), u"Words.txt: not a picture but text."_s);
    EXPECT_TRUE(part<PictureWell>("darkWell")->picture().isNull());
    EXPECT_TRUE(canGenerate());
}

TEST_F(ProjectSheetTest, opens_the_folder_and_ends) {
    open(pictureFile(512, 512));
    tick(u"xcode-single"_s);
    setFolder(out.path());
    generate();
    ASSERT_TRUE(showsResult());
    EXPECT_TRUE(workspace.opened.isEmpty());
    part<QPushButton>("openButton")->click();
    EXPECT_EQ(workspace.opened, QStringList(out.path()));
    Events::key(shown(), Qt::Key_Return);
    Events::settle();
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(ProjectSheetTest, begins_with_what_was_chosen_last) {
    open(pictureFile(512, 512));
    EXPECT_EQ(part<QLineEdit>("folderEdit")->text(), QString());
    part<QPushButton>("chooseButton")->click();
    auto* panel = shown()->findChild<QFileDialog*>();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->directory(), QDir::home());
    choose(panel, out.path());
    EXPECT_EQ(part<QLineEdit>("folderEdit")->text(), out.path());
    tick(u"flutter"_s);
    chooseFit(1);
    choosePadding(0.1);
    chooseBackground(Qt::red);
    part<PictureWell>("tintedWell")->takeFile(pictureFile(20, 20));
    Events::key(shown(), Qt::Key_Escape);
    Events::settle();
    ASSERT_EQ(shown(), nullptr);
    EXPECT_TRUE(contents(out.path()).isEmpty());
    open(pictureFile(512, 512));
    EXPECT_EQ(part<LayoutList>("layoutList")->ticked(), QStringList(u"flutter"_s));
    EXPECT_EQ(part<QComboBox>("fitSelection")->currentIndex(), 1);
    EXPECT_NEAR(part<FloatSlider>("paddingSlider")->floatValue(), 0.1F, 1e-4F);
    EXPECT_EQ(part<ColorWell>("backgroundWell")->qcolor(), QColor(Qt::red));
    EXPECT_FALSE(part<PictureWell>("tintedWell")->picture().isNull());
    EXPECT_EQ(part<QLineEdit>("folderEdit")->text(), out.path());
}

TEST_F(ProjectSheetTest, can_be_used_with_the_keyboard_alone) {
    open(pictureFile(512, 512));
    shown()->activateWindow();
    ASSERT_TRUE(Events::waitFor([&] { return shown()->isActiveWindow(); }));
    part<LayoutList>("layoutList")->setFocus();
    QStringList walked;
    for (int step = 0; step < 13; ++step) {
        walked << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    // Generate can't be used yet.
    EXPECT_EQ(walked, QStringList({u"layoutList"_s, u"fitSelection"_s, u"paddingSlider"_s,
                                   u"backgroundWell"_s, u"darkWell"_s, u"tintedWell"_s, u"foregroundWell"_s,
                                   u"monochromeWell"_s, u"folderEdit"_s, u"chooseButton"_s, u"proofArea"_s,
                                   u"cancelButton"_s, u"layoutList"_s}));
    part<LayoutList>("layoutList")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    part<QLineEdit>("folderEdit")->setFocus();
    QTest::keyClicks(QApplication::focusWidget(), out.path());
    Events::settle();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    Events::settle();
    ASSERT_TRUE(showsResult());
    EXPECT_FALSE(contents(out.path()).isEmpty());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    Events::settle();
    EXPECT_EQ(shown(), nullptr);
}

} // namespace
