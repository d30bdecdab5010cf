#include "mainwindow/ProofPreview.h"

#include "generation/IconContainer.h"
#include "imaging/svg/SvgTime.h"
#include "layouts/LayoutWriter.h"
#include "mainwindow/SentenceWords.h"
#include "platform/widgets/PreviewLooks.h"
#include "platform/widgets/QtColor.h"
#include "project/proof/ProofSets.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>

namespace {

/// In points.
constexpr int tileMargin = 6;
constexpr int tileGap = 10;
constexpr int edge = 12;

/// A themed icon is white, and takes colours from the user's background.
constexpr QColor themedGround(112, 116, 126);

int longer(const QSize& size) {
    return std::max(size.width(), size.height());
}

Color groundOf(const LayoutLook& look) {
    return look.background.value_or(Color{1, 1, 1, 1});
}

} // namespace

ProofPreview::ProofPreview(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Proof of the icons"));
}

void ProofPreview::setWords(const QString& words) {
    m_looks.clear();
    m_tiles.clear();
    m_headings.clear();
    m_words = words;
    arrange();
    describe();
}

void ProofPreview::setProof(const LayoutSet& set, const LayoutPictures& pictures, const LayoutLook& look) {
    m_pictures = pictures;
    m_look = look;
    setWords({});
    for (const Layout& layout : set.layouts())
        addLayout(layout);
    arrange();
    describe();
}

bool ProofPreview::isSameLook(const Look& look, const LayoutFile& file, const ProofIcon& shapes) {
    const QSize a = look.file.sizes.empty() ? QSize(1, 1) : look.file.sizes.front();
    const QSize b = file.sizes.empty() ? QSize(1, 1) : file.sizes.front();
    return look.file.picture == file.picture && look.file.shape == file.shape &&
           look.file.radius == file.radius && look.file.inset == file.inset &&
           look.file.hasGround == file.hasGround && look.shapes.cuts == shapes.cuts &&
           a.width() * b.height() == b.width() * a.height();
}

void ProofPreview::addLayout(const Layout& layout) {
    const std::size_t firstTile = m_tiles.size();
    const std::size_t firstLook = m_looks.size();
    for (const LayoutFile& file : LayoutWriter::writtenFiles(layout, m_pictures)) {
        const bool isContainer = file.format == LayoutFile::Format::Icns;
        if (file.sizes.empty() && !isContainer)
            continue;
        ProofIcon shapes;
        ProofSets::addShapes(file, groundOf(m_look), shapes);
        auto found = std::find_if(m_looks.begin() + static_cast<std::ptrdiff_t>(firstLook), m_looks.end(),
                                  [&](const Look& look) { return isSameLook(look, file, shapes); });
        if (found == m_looks.end())
            found = m_looks.insert(found, Look{file, shapes});
        const std::vector<QSize> container{QSize(IconContainer::sides.front(), IconContainer::sides.front()),
                                           QSize(IconContainer::sides.back(), IconContainer::sides.back())};
        for (const QSize& size : isContainer ? container : file.sizes) {
            found->smallest = found->smallest == 0 ? longer(size) : std::min(found->smallest, longer(size));
            found->largest = std::max(found->largest, longer(size));
        }
    }
    for (std::size_t i = firstLook; i < m_looks.size(); ++i) {
        const Look& look = m_looks[i];
        m_tiles.push_back({i, {}, caption(look, {}), {}});
        for (const ProofCut cut : look.shapes.cuts)
            m_tiles.push_back({i, cut, caption(look, cut), {}});
    }
    if (m_tiles.size() > firstTile)
        m_headings.push_back(
            {inUsersLanguage(layout.title.isEmpty() ? layout.name : layout.title), firstTile, {}});
}

int ProofPreview::side() const {
    constexpr int least = 64;
    constexpr int lines = 4;
    return std::max(least, lines * fontMetrics().height());
}

QSize ProofPreview::minimumSizeHint() const {
    constexpr int tiles = 3;
    return {tiles * (side() + 2 * tileMargin) + (tiles - 1) * tileGap + 2 * edge,
            side() + 2 * captionHeight()};
}

int ProofPreview::captionHeight() const {
    return fontMetrics().height() + tileMargin;
}

/// Places all tiles in lines as wide as the view, those of each layout below its heading.
void ProofPreview::arrange() {
    const int tile = side() + 2 * tileMargin;
    const QFontMetrics captions(PreviewLooks::captionFont(*this));
    int pitch = tile + tileGap;
    for (const Tile& shown : m_tiles)
        pitch = std::max(pitch, captions.horizontalAdvance(shown.caption) + tileGap);
    int top = edge;
    std::size_t next = 0;
    for (std::size_t i = 0; i < m_headings.size(); ++i) {
        m_headings[i].place = QRect(edge, top, width() - 2 * edge, fontMetrics().height());
        top += fontMetrics().height() + tileGap;
        const std::size_t end = i + 1 < m_headings.size() ? m_headings[i + 1].firstTile : m_tiles.size();
        int left = edge;
        for (; next < end; ++next) {
            if (left > edge && left + pitch - tileGap > width() - edge) {
                left = edge;
                top += tile + captionHeight() + tileGap;
            }
            m_tiles[next].place = QRect(left + (pitch - tileGap - tile) / 2, top, tile, tile);
            left += pitch;
        }
        top += tile + captionHeight() + 2 * tileGap;
    }
    setMinimumHeight(m_headings.empty() ? 0 : top);
    update();
}

void ProofPreview::describe() {
    QStringList lines(m_words);
    lines.removeAll(QString());
    for (std::size_t i = 0; i < m_headings.size(); ++i) {
        const std::size_t end = i + 1 < m_headings.size() ? m_headings[i + 1].firstTile : m_tiles.size();
        QStringList captions;
        for (std::size_t tile = m_headings[i].firstTile; tile < end; ++tile)
            captions << m_tiles[tile].caption;
        lines << QStringLiteral("%1: %2").arg(m_headings[i].text, captions.join(QStringLiteral(", ")));
    }
    setAccessibleDescription(lines.join(u'\n'));
}

void ProofPreview::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void ProofPreview::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange)
        return;
    for (Look& look : m_looks)
        look.raster = QImage();
    arrange();
}

/// The icon with a pixel for each of the display.
const QImage& ProofPreview::raster(Look& look) {
    const double scale = devicePixelRatioF();
    const QSize own = look.file.sizes.empty() ? QSize(1, 1) : look.file.sizes.front();
    const int pixels = qRound(side() * scale);
    const QSize wanted = own.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    if (look.raster.size() != wanted) {
        const LayoutRenderer renderer(m_pictures, m_look.style, groundOf(m_look));
        look.raster = renderer.raster(look.file, wanted).valueOr({});
    }
    look.raster.setDevicePixelRatio(scale);
    return look.raster;
}

QRect ProofPreview::mirrored(const QRect& place) const {
    return QStyle::visualRect(layoutDirection(), rect(), place);
}

void ProofPreview::drawTile(QPainter& painter, const Tile& tile) {
    Look& look = m_looks[tile.look];
    const QRect ground = mirrored(tile.place);
    QPainterPath shape;
    constexpr double radius = 6;
    shape.addRoundedRect(QRectF(ground).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    QPainterPath half;
    half.addRect(QRectF(ground.center().x() + 1, ground.top(), ground.width(), ground.height()));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isThemed = look.file.picture == LayoutPicture::Monochrome;
    painter.fillPath(shape, isThemed && !tile.cut ? themedGround : PreviewLooks::lightGround);
    painter.fillPath(shape.intersected(half), PreviewLooks::darkGround);
    painter.setPen(
        QPen(mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Base), 0.25), 1));
    painter.drawPath(shape);
    const QImage& icon = raster(look);
    const QSizeF size = icon.deviceIndependentSize();
    const QPointF corner(ground.x() + tileMargin + (side() - size.width()) / 2,
                         ground.y() + tileMargin + (side() - size.height()) / 2);
    const QRectF whole(corner, size);
    if (tile.cut) {
        QPainterPath cut = ProofShapes::path(*tile.cut, ProofShapes::ring(whole, look.shapes.cutPart));
        painter.setClipPath(cut);
        if (look.shapes.ground)
            painter.fillPath(cut, isThemed ? themedGround : toQColor(*look.shapes.ground));
    }
    painter.drawImage(corner, icon);
    if (!tile.cut && look.shapes.safePart > 0) {
        painter.setPen(QPen(QColor(128, 128, 128, 200), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(ProofShapes::ring(whole, look.shapes.safePart));
    }
    painter.restore();
    drawCaption(painter, tile, ground);
}

QString ProofPreview::caption(const Look& look, const std::optional<ProofCut>& cut) {
    if (cut)
        return inUsersLanguage(ProofShapes::name(*cut));
    switch (look.file.picture) {
    case LayoutPicture::Dark:
        return tr("dark");
    case LayoutPicture::Tinted:
        return tr("tinted");
    case LayoutPicture::Foreground:
        return tr("front layer");
    case LayoutPicture::Monochrome:
        return tr("themed");
    case LayoutPicture::None:
        return tr("back layer");
    case LayoutPicture::Main:
        break;
    }
    return look.smallest == look.largest ? tr("%1 px").arg(look.largest)
                                         //: Sizes of icons in pixels, from the smallest to the largest.
                                         : tr("%1–%2 px").arg(look.smallest).arg(look.largest);
}

void ProofPreview::drawCaption(QPainter& painter, const Tile& tile, const QRect& ground) const {
    const QFont font = PreviewLooks::captionFont(*this);
    const QFontMetrics metrics(font);
    painter.setFont(font);
    // A number stands before its unit in any direction of the window.
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setPen(mixed(palette().color(QPalette::Text), palette().color(QPalette::Base), 0.8));
    QRect place(0, ground.bottom() + 1 + tileMargin / 2, metrics.horizontalAdvance(tile.caption) + 1,
                metrics.height());
    place.moveLeft(ground.center().x() - place.width() / 2);
    painter.drawText(place, Qt::AlignCenter, tile.caption);
    painter.setFont(this->font());
    painter.setLayoutDirection(layoutDirection());
}

void ProofPreview::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    if (!m_words.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(edge, edge, -edge, -edge), Qt::AlignCenter | Qt::TextWordWrap,
                         m_words);
        return;
    }
    const SvgRequest request(svgTimeInWindow.seconds);
    painter.setPen(palette().color(QPalette::Text));
    for (const Heading& heading : m_headings) {
        const QRect place = mirrored(heading.place);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(heading.text, Qt::ElideRight, place.width()));
    }
    for (const Tile& tile : m_tiles) {
        if (event->rect().intersects(mirrored(tile.place).adjusted(-side(), 0, side(), captionHeight())))
            drawTile(painter, tile);
    }
}
