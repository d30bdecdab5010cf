// Measures how long the main window takes from a dropped picture to its preview on the screen:
//   bench_drop PICTURE LIMIT [RUNS]
// LIMIT is in milliseconds. The exit status is 1 where the median is above it.
#include "mainwindow/MainWindowController.h"
#include "mainwindow/PreviewStrip.h"
#include "platform/services/Bundle.h"
#include "platform/services/NotificationCenter.h"
#include "platform/services/Screen.h"
#include "platform/services/Workspace.h"
#include "platform/widgets/Application.h"

#include <QDropEvent>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

/// Sees whether a widget has been drawn.
class PaintWatch final : public QObject {
  public:
    explicit PaintWatch(QWidget* widget) : m_widget(widget) { widget->installEventFilter(this); }

    bool isPainted() const { return m_isPainted; }

    bool eventFilter(QObject* object, QEvent* event) override {
        m_isPainted = m_isPainted || (object == m_widget && event->type() == QEvent::Paint);
        return QObject::eventFilter(object, event);
    }

  private:
    QWidget* m_widget;
    bool m_isPainted = false;
};

/// Drops a picture on the well. Returns the milliseconds until the well and the strip of icons below it are
/// drawn.
double drop(QWidget* well, QWidget* strip, const QUrl& picture) {
    PaintWatch wellWatch(well);
    PaintWatch stripWatch(strip);
    QMimeData files;
    files.setUrls({picture});
    QDropEvent event(QRectF(well->rect()).center(), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enter(well->rect().center(), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(well, &enter);
    QElapsedTimer timer;
    timer.start();
    QCoreApplication::sendEvent(well, &event);
    constexpr qint64 tooLong = 60000;
    while (timer.elapsed() < tooLong && (!wellWatch.isPainted() || !stripWatch.isPainted()))
        QCoreApplication::processEvents();
    QGuiApplication::sync();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    const Application application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const double limit = words.size() > 2 ? words[2].toDouble() : 0;
    const int runs = words.size() > 3 ? words[3].toInt() : 11;
    if (limit <= 0 || runs < 1) {
        std::fputs("usage: bench_drop PICTURE LIMIT [RUNS]\n", stderr);
        return 2;
    }
    QLoggingCategory::setFilterRules(QStringLiteral("tobrimax=false"));
    const Bundle bundle;
    const Screen screen;
    Workspace workspace;
    const auto controller = MainWindowController::initWithWindowNibName(
        QStringLiteral("MainWindowController"), {bundle, screen, workspace});
    controller->showWindow(nullptr);
    BorderImageView* well = controller->imgViewIcon;
    auto* strip = controller->window()->findChild<PreviewStrip*>();
    QCoreApplication::processEvents();
    const QImage blank = well->grab().toImage();

    std::vector<double> milliseconds;
    const QUrl picture = QUrl::fromLocalFile(words[1]);
    for (int run = 0; run < runs; ++run) {
        well->setImage({});
        QCoreApplication::processEvents();
        if (well->grab().toImage() != blank)
            return 1;
        milliseconds.push_back(drop(well, strip, picture));
        if (well->grab().toImage() == blank) {
            std::fprintf(stderr, "drop: %s is not shown\n", qUtf8Printable(words[1]));
            return 1;
        }
    }
    const double first = milliseconds.front();
    std::ranges::sort(milliseconds);
    const double median = milliseconds[milliseconds.size() / 2];
    std::printf(
        "drop: to the shown preview, %d runs: median %.0f ms, first %.0f ms, slowest %.0f ms; at most "
        "%.0f ms: %s\n",
        runs, median, first, milliseconds.back(), limit, median <= limit ? "met" : "missed");
    return median <= limit ? 0 : 1;
}
