#include "tests/mainwindow/ProjectSheetFixture.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <QScrollArea>

namespace {

using namespace Qt::StringLiterals;

using ProofPreviewTest = ProjectSheetFixture;

/// How many pixels of `shown` have that colour.
int countOf(const QImage& shown, const QColor& color) {
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            count += shown.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

TEST_F(ProofPreviewTest, shows_the_icons_of_the_ticked_layouts_as_they_will_be) {
    const QColor color(200, 20, 90);
    const QString path = pictures.filePath(u"flat.png"_s);
    ASSERT_TRUE(Pictures::flat(64, 64, color).save(path));
    open(path);
    auto* preview = part<ProofPreview>("proofPreview");
    const auto seen = [&] { return countOf(preview->grab().toImage(), color); };
    EXPECT_EQ(seen(), 0);
    tick(u"xcode-single"_s);
    // The file, and as iPhone cuts it.
    EXPECT_EQ(preview->count(), 2);
    const int whole = seen();
    EXPECT_GT(whole, 64 * 64);
    part<FloatSlider>("paddingSlider")->setAccessibleValue(0.25);
    Events::settle();
    // A quarter of the file's pixels; the cut icon's corners were not seen before.
    EXPECT_LT(seen(), whole * 0.3);
    EXPECT_GT(seen(), whole * 0.2);
}

TEST_F(ProofPreviewTest, shows_icons_of_one_look_once_with_the_shapes_that_systems_cut) {
    open(pictureFile());
    auto* preview = part<ProofPreview>("proofPreview");
    tick(u"xcode-mac"_s);
    EXPECT_EQ(preview->count(), 1);
    EXPECT_TRUE(preview->accessibleDescription().endsWith(u": 16–1024 px"_s))
        << preview->accessibleDescription().toStdString();
    tick(u"xcode-mac"_s);
    tick(u"android"_s);
    EXPECT_TRUE(preview->accessibleDescription().contains(
        u"front layer, circle, rounded square, teardrop, themed, circle"_s))
        << preview->accessibleDescription().toStdString();
    part<PictureWell>("darkWell")->takeFile(pictureFile(32, 32));
    tick(u"android"_s);
    tick(u"xcode-single"_s);
    EXPECT_TRUE(preview->accessibleDescription().contains(u"dark, squircle"_s))
        << preview->accessibleDescription().toStdString();
}

TEST_F(ProofPreviewTest, follows_a_slider_without_a_stop) {
    open(pictureFile(2000, 1500));
    tick(u"flutter"_s);
    auto* slider = part<FloatSlider>("paddingSlider");
    const auto* area = part<QScrollArea>("proofArea");
    QElapsedTimer timer;
    timer.start();
    constexpr int steps = 20;
    for (int step = 1; step <= steps; ++step) {
        slider->setAccessibleValue(step / 100.0);
        Events::settle();
        area->viewport()->repaint();
    }
    // On a busy machine too.
    EXPECT_LT(timer.elapsed() / steps, 1000);
    RecordProperty("milliseconds_a_step", static_cast<int>(timer.elapsed() / steps));
}

TEST_F(ProofPreviewTest, a_well_takes_a_picture_and_gives_it_back) {
    open(pictureFile());
    tick(u"xcode-single"_s);
    auto* well = part<PictureWell>("darkWell");
    auto* preview = part<ProofPreview>("proofPreview");
    const int without = preview->count();
    Events::key(well, Qt::Key_Space);
    auto* panel = shown()->findChild<QFileDialog*>();
    ASSERT_NE(panel, nullptr);
    choose(panel, pictureFile(30, 30));
    EXPECT_EQ(well->picture().image().size(), QSizeF(30, 30));
    EXPECT_GT(preview->count(), without);
    EXPECT_TRUE(well->accessibleDescription().startsWith(u"30x30.png, 30 × 30"_s));
    Events::key(well, Qt::Key_Delete);
    Events::settle();
    EXPECT_TRUE(well->picture().isNull());
    EXPECT_EQ(preview->count(), without);
}

TEST_F(ProofPreviewTest, a_well_takes_a_dropped_file_as_a_copy) {
    open(pictureFile());
    auto* well = part<PictureWell>("foregroundWell");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(pictureFile(30, 30))});
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    QCoreApplication::sendEvent(well, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_TRUE(well->isDropHighlighted());
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(well, &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the source deletes what is moved";
    EXPECT_FALSE(well->isDropHighlighted());
    EXPECT_EQ(well->picture().image().size(), QSizeF(30, 30));
    QMimeData words;
    words.setText(QStringLiteral("words"));
    QDragEnterEvent other(QPoint(9, 9), Qt::CopyAction, &words, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(well, &other);
    EXPECT_FALSE(well->isDropHighlighted());
}

} // namespace
