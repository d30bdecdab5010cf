#include "platform/widgets/Alert.h"
#include "tests/mainwindow/MainWindowFixture.h"

#include <QAccessible>
#include <QClipboard>
#include <QElapsedTimer>
#include <QTimer>

namespace {

using GenerateAction = MainWindowFixture;

constexpr int iphoneIcons = 9;

TEST_F(GenerateAction, without_a_picture_it_shows_an_alert_and_writes_nothing) {
    drop(textFile());
    Events::click(controller->generateBtn);
    auto* alert = sheet<Alert>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(sheet<QFileDialog>(), nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("Icon File Error"));
    EXPECT_EQ(alert->informativeText(), QStringLiteral("Please drag and drop icon file first!"));
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons().first()->text(), QStringLiteral("Ok"));
    EXPECT_EQ(alert->icon(), QMessageBox::Warning);
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    Events::key(alert, Qt::Key_Return);
    Events::settle();
    EXPECT_EQ(sheet<Alert>(), nullptr);
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(workspace.opened.isEmpty());
}

TEST_F(GenerateAction, without_a_platform_it_shows_the_same_alert) {
    drop(pictureFile());
    controller->platformSelection->setCurrentIndex(-1);
    controller->actionGenerateIcons(nullptr);
    ASSERT_NE(sheet<Alert>(), nullptr);
    EXPECT_EQ(sheet<Alert>()->text(), QStringLiteral("Icon File Error"));
}

TEST_F(GenerateAction, asks_for_one_folder_with_the_systems_own_words) {
    drop(pictureFile());
    Events::click(controller->generateBtn);
    const auto* chooser = sheet<QFileDialog>();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(chooser->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(chooser->testOption(QFileDialog::ReadOnly)) << "new folders can be made";
    EXPECT_FALSE(chooser->testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(chooser->windowModality(), Qt::WindowModal);
    const QFileDialog plain(nullptr, QString());
    EXPECT_EQ(chooser->directory(), plain.directory());
}

TEST_F(GenerateAction, cancelling_writes_nothing_and_keeps_the_earlier_folder) {
    drop(pictureFile());
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    ASSERT_EQ(controller->outputPathString(), out.path());
    QDir(out.path()).removeRecursively();
    Events::click(controller->generateBtn);
    sheet<QFileDialog>()->reject();
    Events::settle();
    EXPECT_EQ(controller->outputPathString(), out.path());
    EXPECT_FALSE(QFileInfo::exists(out.path()));
    EXPECT_EQ(workspace.opened.size(), 1);
}

TEST_F(GenerateAction, writes_the_set_and_opens_the_folder) {
    drop(pictureFile());
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    EXPECT_EQ(controller->outputPathString(), out.path());
    EXPECT_EQ(GeneratorFixture::filesBelow(out.path()).size(), iphoneIcons);
    EXPECT_TRUE(
        QFileInfo::exists(out.filePath(QStringLiteral("iphone/AppIcon.appiconset/Icon-App-20x20@2x.png"))));
    EXPECT_EQ(workspace.opened, QStringList(out.path()));
    EXPECT_EQ(sheet<Alert>(), nullptr) << "the opened folder is the only sign";
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("output url file://%1/").arg(out.path()),
                                        QStringLiteral("file://%1").arg(out.path())}));
}

TEST_F(GenerateAction, reads_the_catalogue_anew_for_each_generation) {
    bundle.catalogue = pictures.filePath(QStringLiteral("catalogue.plist"));
    drop(pictureFile());
    for (const QString& name : {QStringLiteral("first"), QStringLiteral("second")}) {
        writeCatalogue(bundle.catalogue,
                       onlyIphone(entry(QStringLiteral("k"), QStringLiteral("{20, 20}"), name)));
        Events::click(controller->generateBtn);
        choose(sheet<QFileDialog>(), out.path());
    }
    EXPECT_EQ(GeneratorFixture::filesBelow(out.path()),
              QStringList({QStringLiteral("iphone/AppIcon.appiconset/first.png"),
                           QStringLiteral("iphone/AppIcon.appiconset/second.png")}));
}

TEST_F(GenerateAction, without_a_catalogue_only_opens_the_folder) {
    bundle.catalogue = pictures.filePath(QStringLiteral("missing.plist"));
    drop(pictureFile());
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    EXPECT_TRUE(QDir(out.path()).isEmpty());
    EXPECT_EQ(workspace.opened, QStringList(out.path()));
    EXPECT_EQ(sheet<Alert>(), nullptr);
}

TEST_F(GenerateAction, with_a_malformed_catalogue_does_nothing) {
    bundle.catalogue = pictures.filePath(QStringLiteral("malformed.plist"));
    writeCatalogue(bundle.catalogue, QStringLiteral("<dict/>"));
    drop(pictureFile());
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    EXPECT_TRUE(QDir(out.path()).isEmpty());
    EXPECT_TRUE(workspace.opened.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(sheet<Alert>(), nullptr);
}

TEST_F(GenerateAction, reads_picture_and_settings_again_when_the_folder_is_chosen) {
    drop(pictureFile());
    Events::click(controller->generateBtn);
    controller->imgViewIcon->setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::red)));
    controller->platformSelection->setCurrentIndex(5);
    choose(sheet<QFileDialog>(), out.path());
    const QImage icon(out.filePath(QStringLiteral("android/icons/ic_launcher-mdpi.png")));
    ASSERT_EQ(icon.size(), QSize(48, 48));
    EXPECT_EQ(icon.pixelColor(24, 24), QColor(Qt::red));
}

TEST_F(GenerateAction, uses_the_controls_style) {
    drop(pictureFile());
    controller->sliderCornerRadius->setFloatValue(0.22F);
    controller->imgViewIcon->setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::red)));
    controller->roundedCheckButton->click();
    controller->borderCheckButton->click();
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    const QImage icon(out.filePath(QStringLiteral("iphone/AppIcon.appiconset/Icon-App-20x20@2x.png")));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(20, 0), QColor(130, 130, 134));
    EXPECT_EQ(icon.pixelColor(20, 20), QColor(Qt::red));
}

TEST_F(GenerateAction, pixel_sizes_are_the_catalogues_on_a_display_of_scale_2) {
    screen.factor = 2;
    drop(pictureFile());
    controller->platformSelection->setCurrentIndex(4);
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    EXPECT_EQ(QImage(out.filePath(QStringLiteral("mac/AppIcon.appiconset/icon_16x16.png"))).size(),
              QSize(16, 16));
    EXPECT_EQ(QImage(out.filePath(QStringLiteral("mac/AppIcon.appiconset/icon_512x512@2x.png"))).size(),
              QSize(1024, 1024));
    EXPECT_TRUE(QFileInfo::exists(out.filePath(QStringLiteral("mac/Application.icns"))));
}

TEST_F(GenerateAction, the_methods_of_the_generation_are_the_controllers) {
    drop(pictureFile());
    Events::click(controller->generateBtn);
    choose(sheet<QFileDialog>(), out.path());
    EXPECT_EQ(controller->appiconsetPathString(QStringLiteral("android")),
              out.path() + QStringLiteral("/android/icons"));
    const Image image = controller->sourceImage();
    controller->saveImage(image, QSizeF(7, 5), QStringLiteral("seven"), QStringLiteral("watch"));
    EXPECT_EQ(QImage(out.filePath(QStringLiteral("watch/AppIcon.appiconset/seven.png"))).size(), QSize(7, 5));
    const Image drawn = controller->drawImage(image, QSizeF(7, 5));
    EXPECT_EQ(drawn.size(), QSizeF(7, 5));
    EXPECT_EQ(MainWindowController::getCgiImageRef(&drawn).size(), QSize(7, 5));
    EXPECT_TRUE(MainWindowController::getCgiImageRef(nullptr).isNull());
    const QString exported = out.filePath(QStringLiteral("exported.png"));
    MainWindowController::saveImageInSelectedFormat(2, exported,
                                                    MainWindowController::getCgiImageRef(&drawn));
    QFile file(exported);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(2), "BM");
    EXPECT_EQ(QImage(exported).size(), QSize(7, 5));
    MainWindowController::saveImageInSelectedFormat(6, out.filePath(QStringLiteral("none")), {});
    EXPECT_FALSE(QFileInfo::exists(out.filePath(QStringLiteral("none"))));
    const QVariantMap entry{{QStringLiteral("Dimensions"), QStringLiteral("{3, 4}")},
                            {QStringLiteral("Name"), QStringLiteral("three")}};
    controller->outputImage(image, {{QStringLiteral("k"), entry}}, {QStringLiteral("k")},
                            QStringLiteral("ipad"));
    EXPECT_EQ(QImage(out.filePath(QStringLiteral("ipad/AppIcon.appiconset/three.png"))).size(), QSize(3, 4));
    EXPECT_EQ(workspace.opened.size(), 2);
    controller->platformSelection->setCurrentIndex(5);
    controller->generateIconsWithImage(image);
    EXPECT_TRUE(QFileInfo::exists(out.filePath(QStringLiteral("android/icons/ic_launcher-ldpi.png"))));
}

TEST_F(GenerateAction, an_opened_picture_arrives_as_a_dropped_one) {
    controller->openPicture();
    auto* chooser = sheet<QFileDialog>();
    ASSERT_NE(chooser, nullptr);
    choose(chooser, pictureFile(30, 20));
    EXPECT_EQ(controller->sourceImage().size(), QSizeF(30, 20));
    EXPECT_TRUE(controller->platformSelection->isEnabled());
    controller->openPicture();
    chooser = sheet<QFileDialog>();
    ASSERT_NE(chooser, nullptr);
    chooser->selectNameFilter(chooser->nameFilters().last());
    choose(chooser, textFile());
    EXPECT_TRUE(controller->sourceImage().isNull()) << "as a drop, it clears the well";
}

TEST_F(GenerateAction, assistive_technology_gets_no_second_panel_or_alert) {
    const auto press = [](QWidget* control) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(accessible, nullptr);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        // A button acts a tenth of a second later, when it has shown that it is pressed.
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 200)
            Events::settle();
    };
    const auto sheets = [this] {
        int count = 0;
        for (const QDialog* dialog : controller->window()->findChildren<QDialog*>())
            count += dialog->isVisible() ? 1 : 0;
        return count;
    };
    const auto pressBothTwice = [&] {
        for (int time = 0; time < 2; ++time) {
            press(controller->generateBtn);
            press(controller->imgViewIcon);
        }
    };
    // The alert for a file that is no picture.
    drop(textFile());
    pressBothTwice();
    EXPECT_EQ(sheets(), 1);
    ASSERT_NE(sheet<Alert>(), nullptr);
    Events::key(sheet<Alert>(), Qt::Key_Return);
    Events::settle();
    // The chooser of the folder.
    drop(pictureFile());
    pressBothTwice();
    EXPECT_EQ(sheets(), 1);
    ASSERT_NE(sheet<QFileDialog>(), nullptr);
    EXPECT_EQ(sheet<QFileDialog>()->fileMode(), QFileDialog::Directory);
    sheet<QFileDialog>()->reject();
    Events::settle();
    // The chooser of a picture.
    press(controller->imgViewIcon);
    pressBothTwice();
    EXPECT_EQ(sheets(), 1);
    ASSERT_NE(sheet<QFileDialog>(), nullptr);
    EXPECT_EQ(sheet<QFileDialog>()->fileMode(), QFileDialog::ExistingFile);
    sheet<QFileDialog>()->reject();
    Events::settle();
    // An alert that blocks all windows.
    Alert alert;
    alert.addButtonWithTitle(QStringLiteral("Ok"));
    QTimer::singleShot(0, &alert, [&] {
        pressBothTwice();
        EXPECT_EQ(sheets(), 0);
        alert.done(0);
    });
    alert.runModal();
}

TEST_F(GenerateAction, an_empty_well_that_is_clicked_asks_for_a_picture) {
    Events::click(controller->imgViewIcon);
    EXPECT_NE(sheet<QFileDialog>(), nullptr);
}

TEST_F(GenerateAction, a_pasted_file_arrives_as_a_dropped_one) {
    auto* files = new QMimeData;
    files->setUrls({QUrl::fromLocalFile(pictureFile(30, 20)), QUrl::fromLocalFile(pictureFile(40, 20))});
    QGuiApplication::clipboard()->setMimeData(files);
    controller->pastePicture();
    EXPECT_EQ(controller->sourceImage().size(), QSizeF(40, 20));
    EXPECT_TRUE(controller->platformSelection->isEnabled());
}

TEST_F(GenerateAction, a_copied_picture_can_be_pasted) {
    const QImage noise = Pictures::translucentNoise(30, 20, 3);
    controller->imgViewIcon->setImage(Pictures::loadedImage(noise));
    controller->copyPicture();
    controller->imgViewIcon->setImage({});
    controller->pastePicture();
    EXPECT_EQ(controller->sourceImage().size(), QSizeF(30, 20));
    EXPECT_LE(Pictures::largestDifference(controller->sourceImage().largestRaster().valueOr({}), noise), 1);
    EXPECT_TRUE(controller->platformSelection->isEnabled());
}

TEST_F(GenerateAction, a_pasted_drawing_stays_a_drawing) {
    auto* drawing = new QMimeData;
    drawing->setData(
        QStringLiteral("image/svg+xml"),
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/></svg>");
    QGuiApplication::clipboard()->setMimeData(drawing);
    controller->pastePicture();
    EXPECT_EQ(controller->sourceImage().size(), QSizeF(9, 9));
    EXPECT_TRUE(controller->sourceImage().largestRaster().valueOr({}).isNull());
    controller->copyPicture();
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(9, 9));
}

TEST_F(GenerateAction, pasting_anything_else_changes_nothing) {
    controller->imgViewIcon->setImage(Pictures::loadedImage(Pictures::flat(8, 8, Qt::red)));
    QGuiApplication::clipboard()->setText(QStringLiteral("words"));
    controller->pastePicture();
    QGuiApplication::clipboard()->clear();
    controller->pastePicture();
    EXPECT_EQ(controller->sourceImage().size(), QSizeF(8, 8));
    EXPECT_FALSE(controller->platformSelection->isEnabled());
}

} // namespace
