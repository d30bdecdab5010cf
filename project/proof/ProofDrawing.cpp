#include "project/proof/ProofDrawing.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"
#include "project/proof/ProofLayout.h"

#include <QHash>
#include <QPainter>

namespace {

constexpr QRgb pageColor = qRgb(0xff, 0xff, 0xff);
constexpr QRgb lineColor = qRgb(0xe2, 0xe2, 0xde);

struct Ground {
    QRgb color;
    const char* ink;
};
constexpr Ground light{qRgb(0xf4, 0xf4, 0xf2), "#5d5d59"};
constexpr Ground dark{qRgb(0x1d, 0x1d, 0x1f), "#adada8"};

QColor qcolor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

/// Draws the lines of an icon's shapes and safe zone, on the place of the whole icon.
void drawGuides(QPainter& painter, const ProofIcon& icon, const ProofView& view, const QRectF& place) {
    QPainterPath ring;
    if (icon.safePart > 0)
        ring.addEllipse(ProofShapes::ring(place, icon.safePart));
    QPainterPath cuts;
    if (view.kind == ProofView::Kind::File) {
        for (const ProofCut cut : icon.cuts)
            cuts.addPath(ProofShapes::path(
                cut, ProofShapes::ring(place, icon.cutPart).adjusted(0.5, 0.5, -0.5, -0.5)));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QPainterPath& lines : {cuts, ring}) {
        painter.setPen(QPen(QColor(255, 255, 255, 90), 2));
        painter.drawPath(lines);
    }
    QPen pen(QColor(0xd6, 0x00, 0x6c), 1);
    painter.setPen(pen);
    painter.drawPath(cuts);
    pen.setDashPattern({4, 3});
    painter.setPen(pen);
    painter.drawPath(ring);
}

/// Draws the icon's part in its shape, above the icon's ground if it has one.
void drawCut(QPainter& painter, const ProofIcon& icon, const ProofView& view, const QRectF& place) {
    QImage part = icon.picture.raster.copy(view.part);
    if (icon.ground) {
        QPainter below(&part);
        below.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        below.fillRect(part.rect(), qcolor(*icon.ground));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(part);
    painter.setBrushOrigin(place.topLeft());
    painter.drawPath(ProofShapes::path(view.cut, place));
}

void drawView(QPainter& painter, const ProofIcon& icon, const ProofView& view, const QRect& place) {
    painter.save();
    if (view.kind == ProofView::Kind::Cut)
        drawCut(painter, icon, view, place);
    else
        painter.drawImage(place, icon.picture.raster);
    if (view.hasGuides)
        drawGuides(painter, icon, view, place);
    painter.restore();
}

class Drawing {
  public:
    explicit Drawing(QPainter& painter) : m_painter(painter) {}

    Result<Done> draw(const ProofBand& band) {
        const Result<QImage> text = drawnText(band.text, band.textArea.size());
        if (!text)
            return text.error();
        m_painter.drawImage(band.textArea.topLeft(), *text);
        if (band.icon == nullptr)
            return Done{};
        m_painter.fillRect(band.textArea.left(), band.top, band.darkGround.right() + 1 - band.textArea.left(),
                           1, QColor(lineColor));
        fillGrounds(band);
        if (Result<Done> drawn = drawViews(band, band.lightGround, light); !drawn)
            return drawn;
        return drawViews(band, band.darkGround, dark);
    }

  private:
    void fillGrounds(const ProofBand& band) {
        constexpr double radius = 8;
        QPainterPath both;
        both.addRoundedRect(band.lightGround.united(band.darkGround), radius, radius);
        for (const auto& [rect, ground] :
             {std::pair(band.lightGround, light), std::pair(band.darkGround, dark)}) {
            QPainterPath half;
            half.addRect(rect);
            m_painter.setRenderHint(QPainter::Antialiasing);
            m_painter.fillPath(both.intersected(half), QColor(ground.color));
        }
    }

    Result<Done> drawViews(const ProofBand& band, const QRect& area, const Ground& ground) {
        for (const PlacedView& placed : band.views) {
            drawView(m_painter, *band.icon, placed.view,
                     QRect(area.topLeft() + placed.place, placed.view.size));
            if (placed.view.caption.isEmpty())
                continue;
            const Result<QImage> caption = captionOf(placed.view.caption, ground);
            if (!caption)
                return caption.error();
            m_painter.drawImage(area.topLeft() + placed.caption - QPoint(0, captionBaseline), *caption);
        }
        return Done{};
    }

    Result<QImage> captionOf(const QString& text, const Ground& ground) {
        constexpr QSize size(160, 18);
        const QString key = text + QLatin1String(ground.ink);
        if (!m_captions.contains(key)) {
            Result<QImage> drawn =
                drawnText({{{0, captionBaseline}, text, QLatin1String(ground.ink), 12}}, size);
            if (!drawn)
                return drawn;
            m_captions.insert(key, *drawn);
        }
        return m_captions.value(key);
    }

    static constexpr int captionBaseline = 13;

    QPainter& m_painter;
    QHash<QString, QImage> m_captions;
};

Result<QImage> drawn(const ProofSheet& sheet) {
    const Result<ProofLayout> layout = laidOut(sheet);
    if (!layout)
        return layout.error();
    Result<QImage> raster = newRaster(layout->size, QImage::Format_RGBA8888_Premultiplied);
    if (!raster)
        return raster;
    raster->fill(QColor(pageColor));
    QPainter painter(&*raster);
    Drawing drawing(painter);
    for (const ProofBand& band : layout->bands) {
        if (const Result<Done> done = drawing.draw(band); !done)
            return done.error();
    }
    painter.end();
    return raster;
}

} // namespace

Result<QImage> drawnProof(const ProofSheet& sheet) {
    return unlessMemoryIsShort([&] { return drawn(sheet); });
}
