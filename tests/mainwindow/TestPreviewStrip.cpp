#include "imaging/svg/SvgTime.h"
#include "mainwindow/PreviewStrip.h"
#include "tests/mainwindow/MainWindowFixture.h"

#include <QProcess>

namespace {

class PreviewStripTest : public MainWindowFixture {
  protected:
    PreviewStrip& strip() { return *controller->window()->findChild<PreviewStrip*>(); }

    /// The icons that a generation writes now, by their width in pixels.
    std::map<int, QImage> written() {
        controller->platformSelection->setCurrentIndex(4);
        Events::click(controller->generateBtn);
        choose(sheet<QFileDialog>(), out.path());
        std::map<int, QImage> icons;
        for (const QString& path : GeneratorFixture::filesBelow(out.path())) {
            const QImage icon(out.filePath(path));
            icons[icon.width()] = icon.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        }
        return icons;
    }

    /// A drawing of overlapping circles.
    QString drawingFile(int circles) {
        QFile file(pictures.filePath(QStringLiteral("circles.svg")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'>" +
                   QByteArray("<circle cx='50' cy='50' r='40' fill-opacity='.1'/>").repeated(circles) +
                   "</svg>");
        return file.fileName();
    }

    void expectAsWritten() {
        const std::map<int, QImage> icons = written();
        for (std::size_t i = 0; i < PreviewStrip::sizes.size(); ++i) {
            const int size = PreviewStrip::sizes.at(i);
            ASSERT_EQ(strip().icon(i).size(), QSize(size, size));
            // Files hold alpha that is not premultiplied, so colours may differ by 1.
            EXPECT_LE(Pictures::largestDifference(strip().icon(i), icons.at(size)), 1) << size;
        }
    }
};

TEST_F(PreviewStripTest, is_empty_without_a_picture) {
    EXPECT_TRUE(strip().icon(0).isNull());
    drop(pictureFile());
    EXPECT_FALSE(strip().icon(0).isNull());
    drop(textFile());
    EXPECT_TRUE(strip().icon(0).isNull());
}

TEST_F(PreviewStripTest, shows_what_is_written) {
    drop(pictureFile(300, 300));
    expectAsWritten();
}

TEST_F(PreviewStripTest, follows_every_control_at_once) {
    drop(pictureFile(300, 300));
    controller->sliderCornerRadius->setFloatValue(0.2F);
    const std::vector<std::function<void()>> changes{
        [this] { controller->roundedCheckButton->click(); },
        [this] { Events::key(controller->sliderCornerRadius, Qt::Key_End); },
        [this] { controller->borderCheckButton->click(); },
        [this] { Events::key(controller->sliderBorderWidth, Qt::Key_Right); },
        [this] {
            controller->colorPicker->setColor({1, 0, 0, 0.5});
        },
        [this] { controller->roundedCheckButton->setChecked(false); },
        [this] { controller->sliderBorderWidth->setFloatValue(0.25F); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const QImage before = strip().icon(3);
        changes[i]();
        EXPECT_FALSE(Pictures::same(before, strip().icon(3))) << i;
    }
    expectAsWritten();
}

TEST_F(PreviewStripTest, follows_a_thousand_moves_of_a_slider_with_a_drawing_that_takes_20_ms) {
    const auto secondsWith = [this](int circles) {
        drop(drawingFile(circles));
        const SvgRequest request(svgTimeInWindow.seconds);
        controller->roundedCheckButton->click();
        strip().icon(0);
        return request.processorTime;
    };
    constexpr int someCircles = 200;
    constexpr double secondsOfMove = 0.02;
    secondsWith(static_cast<int>(someCircles * secondsOfMove / secondsWith(someCircles)));
    controller->roundedCheckButton->setChecked(true);
    for (int i = 0; i < 1000; ++i) {
        Events::key(controller->sliderCornerRadius, i % 2 == 0 ? Qt::Key_End : Qt::Key_Home);
        for (std::size_t j = 0; j < PreviewStrip::sizes.size(); ++j)
            ASSERT_FALSE(strip().icon(j).isNull()) << i;
    }
}

TEST_F(PreviewStripTest, renders_once_for_all_changes_before_it_is_shown) {
    drop(drawingFile(400));
    controller->roundedCheckButton->setChecked(true);
    const auto secondsOf = [this](int changes) {
        strip().icon(0);
        const SvgRequest request(svgTimeInWindow.seconds);
        for (int i = 0; i < changes; ++i)
            Events::key(controller->sliderCornerRadius, i % 2 == 0 ? Qt::Key_Right : Qt::Key_Left);
        strip().grab();
        return request.processorTime;
    };
    const double one = secondsOf(1);
    EXPECT_GT(one, 0);
    EXPECT_LT(secondsOf(21), 5 * one);
}

TEST_F(PreviewStripTest, shows_the_files_pixels_on_a_display_of_scale_2) {
    screen.factor = 2;
    drop(pictureFile(300, 300));
    controller->roundedCheckButton->click();
    expectAsWritten();
}

TEST_F(PreviewStripTest, changes_nothing_of_the_preview_or_the_controls) {
    drop(pictureFile());
    const IconStyle style = controller->iconStyle();
    strip().render();
    EXPECT_EQ(controller->iconStyle(), style);
    EXPECT_EQ(controller->imgViewIcon->layer().cornerRadius(), 0);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(PreviewStripTest, the_icons_stand_side_by_side_in_both_directions) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        strip().setLayoutDirection(direction);
        EXPECT_EQ(strip().iconRect(0).left() < strip().iconRect(3).left(), direction == Qt::LeftToRight);
        for (std::size_t i = 0; i < PreviewStrip::sizes.size(); ++i) {
            EXPECT_TRUE(QRect(QPoint(0, 0), strip().size() * strip().devicePixelRatio())
                            .contains(strip().iconRect(i)));
            EXPECT_EQ(strip().iconRect(i).bottom(), strip().iconRect(0).bottom());
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(strip().iconRect(i).intersects(strip().iconRect(j)));
        }
    }
}

TEST_F(PreviewStripTest, draws_its_icons_pixel_by_pixel) {
    drop(pictureFile(300, 300));
    // A Mac cuts no icons.
    controller->platformSelection->setCurrentIndex(4);
    const QImage shown = strip().grab().toImage().convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    for (std::size_t i = 0; i < PreviewStrip::sizes.size(); ++i)
        EXPECT_EQ(Pictures::largestDifference(shown.copy(strip().iconRect(i)), strip().icon(i)), 0) << i;
}

TEST_F(PreviewStripTest, draws_them_so_at_any_scale_of_the_display) {
    for (const char* factor : {"1.25", "1.5", "2", "3"}) {
        QProcess atScale;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(factor));
        atScale.setProcessEnvironment(environment);
        atScale.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_filter=PreviewStripTest.draws_its_icons_pixel_by_pixel")});
        ASSERT_TRUE(atScale.waitForFinished());
        EXPECT_EQ(atScale.exitCode(), 0) << factor << atScale.readAllStandardOutput().toStdString();
    }
}

TEST_F(PreviewStripTest, numbers_and_their_unit_read_the_same_in_both_directions) {
    const auto captions = [&](Qt::LayoutDirection direction, std::size_t index) {
        QGuiApplication::setLayoutDirection(direction);
        const QImage shown = strip().grab().toImage();
        const QRect icon = strip().iconRect(index);
        // As wide as the ground is, and as high as what is below it.
        return shown.copy(icon.left() - 4, icon.bottom() + 6, icon.width() + 8, shown.height());
    };
    for (std::size_t i = 1; i < PreviewStrip::sizes.size(); ++i)
        EXPECT_EQ(captions(Qt::RightToLeft, i), captions(Qt::LeftToRight, i)) << i;
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(PreviewStripTest, numbers_stand_apart_in_a_font_twice_as_large) {
    QFont larger = strip().font();
    larger.setPointSizeF(18);
    strip().setFont(larger);
    Events::settle();
    const QImage shown = strip().grab().toImage();
    // Between the numbers of 16 and 32 there are columns without any of their pixels.
    const int top = strip().iconRect(0).bottom() + 6;
    int blank = 0;
    for (int x = strip().iconRect(0).center().x(); x < strip().iconRect(1).center().x(); ++x) {
        bool isBlank = true;
        for (int y = top; y < shown.height(); ++y)
            isBlank = isBlank && shown.pixel(x, y) == shown.pixel(shown.width() - 1, shown.height() - 1);
        blank += isBlank ? 1 : 0;
    }
    EXPECT_GE(blank, 8);
}

TEST_F(PreviewStripTest, the_ground_is_light_and_dark_and_shows_through) {
    controller->imgViewIcon->setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::transparent)));
    controller->platformSelection->setCurrentIndex(4);
    strip().render();
    const QImage shown = strip().grab().toImage();
    const QRect place = strip().iconRect(3);
    EXPECT_GT(qGray(shown.pixel(place.left() + 20, place.center().y())), 230);
    EXPECT_LT(qGray(shown.pixel(place.right() - 20, place.center().y())), 60);
}

TEST_F(PreviewStripTest, an_outline_shows_what_the_platforms_systems_cut_off) {
    drop(pictureFile(300, 300));
    const auto shown = [&](int platform) {
        controller->platformSelection->setCurrentIndex(platform);
        Events::settle();
        return strip().grab().toImage().copy(strip().iconRect(3));
    };
    const QImage uncut = shown(4);
    const QImage squircle = shown(0);
    const QImage circle = shown(3);
    // On the diagonal the circle lies further inside than the squircle.
    const auto firstDifference = [&](const QImage& image) {
        int at = 0;
        while (at < 64 && image.pixel(at, at) == uncut.pixel(at, at))
            ++at;
        return at;
    };
    EXPECT_GT(firstDifference(squircle), 2);
    EXPECT_GT(firstDifference(circle), firstDifference(squircle) + 5);
    EXPECT_LT(firstDifference(circle), 25);
    EXPECT_EQ(shown(1), squircle);
    EXPECT_EQ(shown(2), squircle);
    EXPECT_EQ(shown(5), circle);
}

} // namespace
