#include "imaging/io/PictureFormat.h"
#include "mainwindow/PictureCaption.h"
#include "mainwindow/PlanCaption.h"
#include "tests/mainwindow/MainWindowFixture.h"

namespace {

class PictureCaptionTest : public MainWindowFixture {
  protected:
    QStringList said() { return controller->window()->findChild<PictureCaption*>()->text().split(u'\n'); }

    void choose(int platform) { controller->platformSelection->setCurrentIndex(platform); }

    QString saved(const QImage& picture, const QString& name) {
        const QString path = pictures.filePath(name);
        EXPECT_TRUE(picture.save(path, "PNG"));
        return path;
    }

    static constexpr int mac = 4;
    static constexpr int android = 5;
};

const QString enlarged = QStringLiteral("Smaller than %1 px: will be enlarged.");

TEST_F(PictureCaptionTest, names_the_picture_and_its_size) {
    EXPECT_EQ(said(), QStringList(QString()));
    drop(saved(Pictures::flat(1024, 1024, Qt::red), QStringLiteral("large & red.png")));
    EXPECT_EQ(said(), QStringList(QStringLiteral("large & red.png, 1024 × 1024")));
    controller->imgViewIcon->takePicture("<svg xmlns='http://www.w3.org/2000/svg' width='9.5' "
                                         "height='9.5'><rect width='10' height='10'/></svg>");
    EXPECT_EQ(said(), QStringList(QStringLiteral("Pasted picture, 9.5 × 9.5")))
        << "a drawing is never too small";
}

TEST_F(PictureCaptionTest, warns_of_what_becomes_of_it_in_the_chosen_platforms_icons) {
    drop(saved(Pictures::flat(600, 600, Qt::red), QStringLiteral("a.png")));
    EXPECT_EQ(said().mid(1), QStringList(enlarged.arg(1024)));
    choose(android);
    EXPECT_EQ(said().mid(1), QStringList());
    drop(saved(Pictures::flat(600, 300, Qt::red), QStringLiteral("a.png")));
    EXPECT_EQ(said().mid(1),
              QStringList({QStringLiteral("Not square: will be stretched."), enlarged.arg(512)}));
}

TEST_F(PictureCaptionTest, warns_of_transparency_where_the_store_refuses_it) {
    drop(saved(Pictures::flat(1024, 1024, QColor(255, 0, 0, 250)), QStringLiteral("a.png")));
    const QStringList refused(QStringLiteral("Transparent: the App Store refuses such icons."));
    for (int platform = 0; platform <= android; ++platform) {
        choose(platform);
        EXPECT_EQ(said().mid(1), platform < mac ? refused : QStringList()) << platform;
    }
}

TEST_F(PictureCaptionTest, warns_of_what_a_drawing_lacks) {
    controller->imgViewIcon->takePicture(
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/>"
        "<text font-family='No Such Font'>a</text><image href='a.png'/></svg>");
    EXPECT_EQ(said().mid(1),
              QStringList({QStringLiteral("The picture shows nothing of the files that it links to: a.png."),
                           QStringLiteral("The picture's text is drawn with other fonts, since these are not "
                                          "installed: No Such Font.")}));
}

TEST_F(PictureCaptionTest, says_why_a_picture_could_not_be_read) {
    drop(pictureFile());
    drop(textFile());
    EXPECT_TRUE(controller->imgViewIcon->image().isNull());
    EXPECT_EQ(said().first(), QStringLiteral("words.txt"));
    const Result<LoadedPicture> refused =
        ImageSource::loadFile(pictures.filePath(QStringLiteral("words.txt")).toStdString());
    EXPECT_EQ(said().at(1).toLower().remove(u'.'), refused.error().sentence.toLower());
    drop(pictureFile());
    EXPECT_EQ(said().first(), QStringLiteral("64x64.png, 64 × 64"));
}

TEST_F(PictureCaptionTest, leaves_the_window_at_its_size) {
    const QSize size = controller->window()->size();
    drop(saved(Pictures::flat(1024, 1024, Qt::red), QStringLiteral("b.png")));
    Events::settle();
    EXPECT_EQ(controller->window()->size(), size) << "with one line";
    const QString longest = QStringLiteral("a").repeated(200) + QStringLiteral(".png");
    drop(saved(Pictures::flat(60, 30, Qt::transparent), longest));
    Events::settle();
    EXPECT_EQ(controller->window()->size(), size);
    EXPECT_EQ(said().size(), 4);
    const auto* caption = controller->window()->findChild<PictureCaption*>();
    EXPECT_LE(caption->fontMetrics().horizontalAdvance(said().first()), caption->width());
    EXPECT_TRUE(said().first().endsWith(QStringLiteral("60 × 30")));
    EXPECT_TRUE(caption->toolTip().contains(longest)) << "the whole name";
}

TEST_F(PictureCaptionTest, stands_close_to_the_well_and_the_plan_close_to_generate) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        const auto other = MainWindowController::initWithWindowNibName(QStringLiteral("MainWindowController"),
                                                                       {bundle, screen, workspace});
        EXPECT_TRUE(other->window()->findChild<PictureCaption*>()->alignment().testFlag(Qt::AlignTop));
        EXPECT_TRUE(other->window()->findChild<PlanCaption*>()->alignment().testFlag(Qt::AlignBottom));
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(PictureCaptionTest, the_well_is_a_button_that_names_the_formats) {
    EXPECT_EQ(controller->imgViewIcon->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_TRUE(controller->imgViewIcon->placeholderDetail().contains(PictureFormats::names()));
    EXPECT_TRUE(controller->imgViewIcon->placeholderDetail().contains(QStringLiteral("1024 × 1024")));
}

} // namespace
