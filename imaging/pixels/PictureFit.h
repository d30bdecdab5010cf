#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>

/// How a picture is laid on an icon of another shape, and how much of the icon it leaves free.
struct PictureFit {
    enum class Shape {
        Stretch, ///< it fills the icon and takes its shape
        Contain, ///< all of it is there, in its own shape; two edges of the icon stay free
        Cover,   ///< it fills the icon in its own shape; what reaches over two edges is cut off
    };

    Shape shape = Shape::Stretch;
    /// The free margin at each edge of the icon, as a part of its shorter side, from 0 to below 0.5.
    double padding = 0;

    bool operator==(const PictureFit&) const = default;

    /// Whether pictures are drawn as without any fit.
    bool isPlain() const { return *this == PictureFit{}; }

    /// Where a picture lies, in pixels.
    struct Place {
        QRectF picture; ///< the whole picture; with Cover it may reach beyond `visible`
        QRectF visible; ///< the part of the icon that the picture fills
    };

    /// The place of a picture of the size `picture` on an icon that is the rectangle `icon`. Margins are
    /// whole pixels, the same on opposite edges, and leave at least one pixel. So where the icon's edges are
    /// whole pixels, those of `visible` are too. With Cover the picture's middle is the icon's.
    Place place(const QSizeF& picture, const QRectF& icon) const;

    /// The size in which all of the picture is drawn on an icon of the size `icon`.
    QSizeF drawnSize(const QSizeF& picture, const QSizeF& icon) const;

    /// The pixels of a picture that a square icon shows: without those that Cover cuts off.
    QRect squarePart(const QSize& picture) const;
};
