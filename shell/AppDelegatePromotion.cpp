#include "base/Log.h"
#include "imaging/drawing/Path.h"
#include "imaging/io/ImageSource.h"
#include "platform/widgets/QtColor.h"
#include "shell/AppDelegate.h"
#include "shell/PromotionWindow.h"

#include <QFile>
#include <QPainter>
#include <QTimer>
#include <QUrl>

namespace {

constexpr double indicatorDiameter = 25;
constexpr double indicatorMargin = 5;
constexpr double distanceFromBottom = 50;

/// The SVG resource `name`, given without suffix. A null image where it can't be read.
Image imageNamed(const Bundle& bundle, const QString& name) {
    QFile file(bundle.pathForResource(name + QStringLiteral(".svg")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    Result<LoadedPicture> picture = ImageSource::load(file.readAll());
    return picture ? std::move(picture->image) : Image();
}

QColor grey(double level, double alpha = 1) {
    return toQColor({level / 255, level / 255, level / 255, alpha});
}

void fillOval(QPainter& painter, const QRectF& rect, const QColor& color) {
    painter.fillPath(Path::bezierPathWithOvalInRect(rect).painterPath(), color);
}

/// A dot with a faint ring.
void drawDot(QPainter& painter, QWidget& /*view*/, bool isCurrentPage, bool isHighlighted,
             const QRectF& frame) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF dot = frame.adjusted(2, 2, -2, -2);
    fillOval(painter, dot, Qt::transparent);
    fillOval(painter, dot, grey(isHighlighted ? 150 : isCurrentPage ? 115 : 217));
    const QRectF ring = dot.adjusted(0.5, 0.5, -0.5, -0.5);
    // This changes the default line width of all paths of the process. See docs/compatibility.md.
    Path::setDefaultLineWidth(2);
    const Path path = Path::bezierPathWithOvalInRect(ring);
    painter.strokePath(path.painterPath(), QPen(grey(25, 0.15), path.lineWidth()));
}

} // namespace

void AppDelegate::promotionWindowSetup() {
    arrOurApps.clear();
    for (const SuggestedApp& app : suggestedApps()) {
        if (!isApplicationInstalledWithName(app.appName))
            arrOurApps.push_back(app);
    }
    setupPageControl();
}

bool AppDelegate::isApplicationInstalledWithName(const QString& name) const {
    return _surroundings.fileExistsAtPath(QStringLiteral("/Applications/%1.app").arg(name));
}

void AppDelegate::setupPageControl() {
    const QSizeF window = _windowPromotion != nullptr ? QSizeF(_windowPromotion->size()) : QSizeF(0, 0);
    delete control;
    control = new BFPageControl;
    control->setDelegate(this);
    control->setIndicatorDiameterSize(indicatorDiameter);
    control->setIndicatorMargin(indicatorMargin);
    control->setNumberOfPages(static_cast<qint64>(arrOurApps.size()));
    control->setCurrentPage(0);
    _promotion->setEmpty(arrOurApps.empty());
    showSuggestion(0);
    control->setDrawingBlock(drawDot);
    if (QWidget* content = _promotion->contentView())
        control->setParent(content);
    const QSizeF size = control->intrinsicContentSize();
    control->setFrame(QRectF(QPointF((window.width() - size.width()) * 0.5, distanceFromBottom), size));
    _promotion->placePageControl(*control);
}

void AppDelegate::showSuggestion(qint64 index) {
    if (index < 0 || index >= static_cast<qint64>(arrOurApps.size()))
        return;
    const SuggestedApp& app = arrOurApps[static_cast<std::size_t>(index)];
    if (_lblAppName != nullptr)
        _lblAppName->setText(app.appName);
    if (_imgViewAppLogo != nullptr)
        _imgViewAppLogo->setImage(imageNamed(_surroundings.mainWindow.bundle, app.imageName));
    if (_lblAppDesc != nullptr)
        _lblAppDesc->setText(app.Desc);
}

void AppDelegate::pageControl(BFPageControl* sender, qint64 didSelectPageAtIndex) {
    // See docs/compatibility.md.
    if (timerOfApps != nullptr)
        timerOfApps->stop();
    logLine(QStringLiteral("<BFPageControl: 0x%1>: Selected page at index: %2")
                .arg(reinterpret_cast<quintptr>(sender), 0, 16)
                .arg(didSelectPageAtIndex));
    selectedRecommendedAppIndex = static_cast<qint32>(didSelectPageAtIndex);
    showSuggestion(didSelectPageAtIndex);
}

void AppDelegate::changeAppDetail() {
    if (arrOurApps.empty())
        return;
    const auto last = static_cast<qint32>(arrOurApps.size() - 1);
    // The stored index may be any number. Unsigned arithmetic goes from the largest number to the smallest
    // without overflow.
    selectedRecommendedAppIndex =
        selectedRecommendedAppIndex == last
            ? 0
            : static_cast<qint32>(static_cast<quint32>(selectedRecommendedAppIndex) + 1);
    control->setCurrentPage(selectedRecommendedAppIndex);
    showSuggestion(selectedRecommendedAppIndex);
}

void AppDelegate::btnOpenSuggestedAppTapped(QObject* /*sender*/) {
    // A negative index becomes an unsigned number that is larger than any list.
    const auto index = static_cast<quint64>(static_cast<qint64>(selectedRecommendedAppIndex));
    if (index >= arrOurApps.size())
        return;
    _surroundings.mainWindow.workspace.openURL(QUrl(arrOurApps[index].url));
}

void AppDelegate::showPromotionWindow() {
    _promotion->show(_window);
}
