#include "generation/GenerationPlan.h"
#include "mainwindow/PlanCaption.h"
#include "tests/mainwindow/MainWindowFixture.h"

namespace {

class PlanCaptionTest : public MainWindowFixture {
  protected:
    QString said(int platformIndex) {
        controller->platformSelection->setCurrentIndex(platformIndex);
        // The joiners in it only keep paths in one line.
        return controller->window()->findChild<PlanCaption*>()->text().remove(QChar(0x2060));
    }
};

TEST_F(PlanCaptionTest, says_which_files_generate_will_write) {
    const QString iphone = QStringLiteral("9 PNG files, 40 to 1024 px, in iphone/AppIcon.appiconset");
    const QString ipad = QStringLiteral("10 PNG files, 20 to 1024 px, in ipad/AppIcon.appiconset");
    EXPECT_EQ(said(0), iphone) << "at once";
    EXPECT_EQ(said(1), ipad);
    EXPECT_EQ(said(2), iphone + u'\n' + ipad);
    EXPECT_EQ(said(3), QStringLiteral("17 PNG files, 48 to 1024 px, in watch/AppIcon.appiconset"));
    EXPECT_EQ(said(4), QStringLiteral("10 PNG files, 16 to 1024 px, in mac/AppIcon.appiconset, and "
                                      "mac/Application.icns"));
    EXPECT_EQ(said(5), QStringLiteral("7 PNG files, 36 to 512 px, in android/icons"));
}

TEST_F(PlanCaptionTest, counts_what_is_there_after_a_generation) {
    for (int index = 0; index < controller->platformSelection->count(); ++index) {
        const QString text = said(index);
        const GenerationPlan plan(*IconSizeCatalogue::load(bundle), Platforms::ofIndex(index), 1);
        qsizetype images = 0;
        for (const PlannedFile& file : plan.remainingFiles())
            images += file.isContainer ? 0 : 1;
        qsizetype counted = 0;
        for (const QString& line : text.split(u'\n'))
            counted += line.section(u' ', 0, 0).toLongLong();
        EXPECT_EQ(counted, images) << text.toStdString();
    }
}

TEST_F(PlanCaptionTest, reads_the_catalogue_anew_at_each_choice) {
    bundle.catalogue = pictures.filePath(QStringLiteral("ImageSizeFile.plist"));
    EXPECT_EQ(said(5), IconSizeCatalogue::load(bundle).error().sentence) << "the file is missing";
    const QString one = QStringLiteral("<dict><key>a</key><dict><key>Name</key><string>a</string>"
                                       "<key>Dimensions</key><string>{64, 64}</string></dict></dict>");
    writeCatalogue(bundle.catalogue, one.repeated(5));
    EXPECT_EQ(said(3), QStringLiteral("1 PNG file, 64 px, in watch/AppIcon.appiconset"));
}

TEST_F(PlanCaptionTest, leaves_the_window_at_its_size) {
    said(0);
    Events::settle();
    const QSize size = controller->window()->size();
    for (int index = 1; index < controller->platformSelection->count(); ++index) {
        said(index);
        Events::settle();
        EXPECT_EQ(controller->window()->size(), size) << index;
    }
}

} // namespace
