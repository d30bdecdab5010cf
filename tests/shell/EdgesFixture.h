#pragma once

#include "platform/widgets/Contrast.h"
#include "shell/Appearance.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QCheckBox>
#include <QHash>
#include <QStyleOptionButton>

/// The windows as they look on a light and on a dark desktop, pixel by pixel.
class EdgesFixture : public AppDelegateFixture, public testing::WithParamInterface<bool> {
  protected:
    EdgesFixture() {
        // The style of the application's controls stays.
        { const Appearance appearance(*qApp); }
        QPalette desktop(GetParam() ? QColor(42, 46, 50) : QColor(239, 239, 239));
        desktop.setColor(QPalette::WindowText, GetParam() ? Qt::white : Qt::black);
        QApplication::setPalette(Appearance::over(desktop).resolve(desktop));
        delegate.setupInitialController();
        Events::settle();
    }
    ~EdgesFixture() override { QApplication::setPalette(QPalette()); }

    MainWindowController& controller() { return *delegate.mainWindowController(); }

    void arrive() {
        controller().imgViewIcon->takePicture("<svg xmlns='http://www.w3.org/2000/svg' width='9' "
                                              "height='9'><rect width='9' height='9'/></svg>");
        Events::settle();
    }

    /// The greatest contrast with `ground` on the way from `from` to `to`.
    static double strongest(const QImage& shown, QPoint from, QPoint to, const QColor& ground) {
        double most = 1;
        const int steps = (to - from).manhattanLength();
        for (int i = 0; i <= steps; ++i) {
            const QPoint at = from + (to - from) * i / std::max(1, steps);
            if (shown.rect().contains(at))
                most = std::max(most, contrastRatio(shown.pixelColor(at), ground));
        }
        return most;
    }

    /// The weakest of the four edges of `part`, a rectangle of `control`, against what is beside each edge.
    static double weakestEdge(QWidget* control, const QRect& part) {
        QWidget* window = control->window();
        const QImage shown = window->grab().toImage();
        const QRect place(control->mapTo(window, part.topLeft()), part.size());
        constexpr int depth = 4;
        const QPoint right(1, 0);
        const QPoint down(0, 1);
        const auto edge = [&](QPoint middle, QPoint inward) {
            const QColor ground = shown.pixelColor(middle - inward * 2);
            const QPoint along(inward.y(), inward.x());
            double most = 1;
            // A frame may be dashed.
            constexpr int dash = 8;
            for (int i = 0; i < dash; ++i)
                most = std::max(most, strongest(shown, middle + along * i - inward,
                                                middle + along * i + inward * depth, ground));
            return most;
        };
        // Not in the middle, where a slider may have its knob.
        const int x = place.left() + place.width() * 3 / 5;
        const int y = place.center().y();
        return std::min({edge({x, place.top()}, down), edge({x, place.bottom()}, -down),
                         edge({place.left(), y}, right), edge({place.right(), y}, -right)});
    }

    static double weakestEdge(QWidget* control) { return weakestEdge(control, control->rect()); }

    /// The contrast of the text in `control` with what it stands on: of the colour that is most frequent
    /// there with the one that differs most from it.
    static double textContrast(QWidget* control, const QRect& part) {
        QWidget* window = control->window();
        const QImage shown =
            window->grab().toImage().copy(QRect(control->mapTo(window, part.topLeft()), part.size()));
        QHash<QRgb, int> counts;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x)
                ++counts[shown.pixel(x, y)];
        }
        const QRgb ground =
            std::max_element(counts.cbegin(), counts.cend(), [](int a, int b) { return a < b; }).key();
        double most = 1;
        for (auto i = counts.cbegin(); i != counts.cend(); ++i)
            most = std::max(most, contrastRatio(QColor(i.key()), QColor(ground)));
        return most;
    }

    static QRect box(QCheckBox* control) {
        QStyleOptionButton option;
        option.initFrom(control);
        return control->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, control);
    }

    static QRect words(QCheckBox* control) {
        QStyleOptionButton option;
        option.initFrom(control);
        return control->style()->subElementRect(QStyle::SE_CheckBoxContents, &option, control);
    }

    static constexpr double text = 4.5;
};
