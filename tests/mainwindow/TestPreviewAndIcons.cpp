#include "base/Color.h"
#include "tests/mainwindow/MainWindowFixture.h"

#include <QPainter>

namespace {

enum Action { Rounded, Radius, Border, Width, Colour, actionCount };

/// What the actions make of the preview, one after the other.
struct ExpectedShape {
    bool isRounded = false;
    bool isBordered = false;
    float radius = 0;
    double layerRadius = 0; ///< a part of the side
    /// The slider was moved while its box was off: the preview is rounded and the icon is not.
    bool isRoundedAlone = false;
};

class PreviewAndIcons : public MainWindowFixture {
  protected:
    static constexpr float startRadius = 0;
    static constexpr float movedRadius = 0.3F;

    void restore() {
        controller->roundedCheckButton->setChecked(false);
        controller->borderCheckButton->setChecked(false);
        controller->sliderCornerRadius->setFloatValue(startRadius);
        controller->sliderBorderWidth->setFloatValue(0.05F);
        controller->colorPicker->setColor({0.2, 0.2, 0.2, 1});
        BorderImageView& view = *controller->imgViewIcon;
        view.setRoundCorner(false);
        view.setCornerRadiusPercent(0);
        view.setBorder(false);
        view.setBorderWidth(0);
        view.layer().setCornerRadius(0);
    }

    void act(int action, ExpectedShape& expected) {
        switch (action) {
        case Rounded:
            controller->roundedCheckButton->click();
            expected.isRounded = !expected.isRounded;
            expected.layerRadius =
                expected.isRounded ? double{controller->sliderCornerRadius->floatValue()} : 0;
            break;
        case Radius:
            controller->sliderCornerRadius->setFloatValue(movedRadius);
            controller->sliderCornerRadiusAction(controller->sliderCornerRadius);
            expected.radius = movedRadius;
            expected.layerRadius = double{movedRadius};
            expected.isRoundedAlone |= !expected.isRounded;
            break;
        case Border:
            controller->borderCheckButton->click();
            expected.isBordered = !expected.isBordered;
            break;
        case Width:
            controller->sliderBorderWidth->setFloatValue(0.15F);
            controller->sliderBorderWidthAction(controller->sliderBorderWidth);
            break;
        default:
            controller->colorPicker->setColor({0.9, 0.1, 0.1, 1});
            controller->colorPickerAction(controller->colorPicker);
        }
    }

    /// How many pixels of the well differ clearly from the icon of its size. Edges are smoothed by two hands.
    int clearDifferences() {
        BorderImageView& view = *controller->imgViewIcon;
        const QSize size = view.size();
        QImage shown(size, QImage::Format_RGBA8888_Premultiplied);
        shown.fill(Qt::white);
        view.render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
        QImage wanted(size, QImage::Format_RGBA8888_Premultiplied);
        wanted.fill(Qt::white);
        QPainter(&wanted).drawImage(0, 0,
                                    *controller->drawImage(controller->sourceImage(), size).largestRaster());
        constexpr int clear = 80;
        int differences = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const QColor a = shown.pixelColor(x, y);
                const QColor b = wanted.pixelColor(x, y);
                const int most = std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                           std::abs(a.blue() - b.blue())});
                differences += most > clear ? 1 : 0;
            }
        }
        return differences;
    }
};

TEST_F(PreviewAndIcons, are_alike_after_any_four_actions) {
    QImage plain(288, 288, QImage::Format_RGBA8888_Premultiplied);
    plain.fill(QColor(90, 160, 230));
    const QString path = pictures.filePath(QStringLiteral("plain.png"));
    ASSERT_TRUE(plain.save(path));
    drop(path);
    int compared = 0;
    for (int length = 1; length <= 4; ++length) {
        int sequences = 1;
        for (int i = 0; i < length; ++i)
            sequences *= actionCount;
        for (int sequence = 0; sequence < sequences; ++sequence) {
            restore();
            ExpectedShape expected;
            for (int i = 0, rest = sequence; i < length; ++i, rest /= actionCount)
                act(rest % actionCount, expected);
            const BorderImageView& view = *controller->imgViewIcon;
            ASSERT_EQ(view.isRoundCorner(), expected.isRounded) << sequence;
            ASSERT_EQ(view.cornerRadiusPercent(), expected.radius) << sequence;
            ASSERT_EQ(view.isBorder(), expected.isBordered) << sequence;
            ASSERT_NEAR(view.layer().cornerRadius(), expected.layerRadius * view.width(), 1e-9) << sequence;
            if (expected.isRoundedAlone)
                continue;
            ++compared;
            ASSERT_LT(clearDifferences(), 40) << "sequence " << sequence << " of " << length;
        }
    }
    EXPECT_GT(compared, 300);
}

TEST_F(PreviewAndIcons, the_radius_takes_the_focus_while_it_is_0) {
    drop(pictureFile());
    controller->roundedCheckButton->setFocus();
    controller->roundedCheckButton->click();
    EXPECT_TRUE(controller->sliderCornerRadius->hasFocus());
    controller->sliderCornerRadius->setFloatValue(0.2F);
    controller->roundedCheckButton->setFocus();
    controller->roundedCheckButton->click();
    controller->roundedCheckButton->click();
    EXPECT_TRUE(controller->roundedCheckButton->hasFocus());
}

} // namespace
