// Measures how long the main window's own drawing takes: a slider, and the strip of icons while a slider
// moves.
#include "bench/Median.h"
#include "mainwindow/MainWindowController.h"
#include "mainwindow/PreviewStrip.h"
#include "mainwindow/TetraSliderCell.h"
#include "platform/services/Bundle.h"
#include "platform/services/NotificationCenter.h"
#include "platform/services/Screen.h"
#include "platform/services/Workspace.h"
#include "platform/widgets/Application.h"

#include <QBuffer>
#include <QPainter>

namespace {

void drawSlider(int scale) {
    QImage picture(180 * scale, 22 * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(0);
    QPainter painter(&picture);
    painter.translate(0, 22);
    painter.scale(1, -1);
    TetraSliderCell cell;
    cell.drawBarInside(painter, QRectF(0, 5, 180, 12), false);
    cell.drawKnob(painter, QRectF(60, 5, 12, 12));
}

/// A PNG file of noise, which does not compress.
QByteArray picture(int size) {
    QImage noise(size, size, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < size; ++y) {
        auto* row = reinterpret_cast<quint32*>(noise.scanLine(y));
        for (int x = 0; x < size; ++x) {
            state = state * 1664525U + 1013904223U;
            row[x] = 0xFF000000U | state >> 8U;
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    noise.save(&buffer, "PNG");
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    report("one slider, scale 1", [] { drawSlider(1); });
    report("one slider, scale 2", [] { drawSlider(2); });

    const Bundle bundle;
    const Screen screen;
    Workspace workspace;
    const auto controller = MainWindowController::initWithWindowNibName(
        QStringLiteral("MainWindowController"), {bundle, screen, workspace});
    controller->showWindow(nullptr);
    controller->imgViewIcon->takePicture(picture(1024));
    controller->roundedCheckButton->setChecked(true);
    controller->borderCheckButton->setChecked(true);
    auto* strip = controller->window()->findChild<PreviewStrip*>();
    report("the strip's four icons of a 1024 x 1024 picture", [&] { strip->render(); });
    float value = 0;
    const auto step = [&] {
        value = value > 0.4F ? 0 : value + 0.005F;
        controller->sliderCornerRadius->setFloatValue(value);
        controller->sliderCornerRadiusAction(controller->sliderCornerRadius);
    };
    const auto drawnStep = [&] {
        step();
        controller->window()->repaint();
        QCoreApplication::processEvents();
    };
    report("a slider's step, drawn: preview, strip and slider", drawnStep);
    controller->openFile(QStringLiteral(SAMPLE_DRAWING));
    report("the same of an SVG document", drawnStep);
    report("four such steps before they are drawn", [&] {
        for (int i = 0; i < 3; ++i)
            step();
        drawnStep();
    });
    return 0;
}
