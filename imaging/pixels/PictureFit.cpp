#include "imaging/pixels/PictureFit.h"

#include <algorithm>
#include <cmath>

namespace {

/// `margin` as whole pixels, of which two leave at least one pixel of `side`.
double wholeMargin(double margin, double side) {
    return std::clamp(std::round(margin), 0.0, std::max(0.0, std::floor((side - 1) / 2)));
}

/// `frame` with margins above and below, or left and right, so that the rest has the shape of `picture`.
QRectF contained(const QSizeF& picture, const QRectF& frame) {
    const double height = frame.width() * picture.height() / picture.width();
    if (height <= frame.height()) {
        const double margin = wholeMargin((frame.height() - height) / 2, frame.height());
        return frame.adjusted(0, margin, 0, -margin);
    }
    const double width = frame.height() * picture.width() / picture.height();
    const double margin = wholeMargin((frame.width() - width) / 2, frame.width());
    return frame.adjusted(margin, 0, -margin, 0);
}

/// The rectangle of the shape of `picture` around `frame` that touches two of its edges.
QRectF covering(const QSizeF& picture, const QRectF& frame) {
    const double height = frame.width() * picture.height() / picture.width();
    if (height >= frame.height()) {
        const double over = (height - frame.height()) / 2;
        return frame.adjusted(0, -over, 0, over);
    }
    const double over = (frame.height() * picture.width() / picture.height() - frame.width()) / 2;
    return frame.adjusted(-over, 0, over, 0);
}

} // namespace

PictureFit::Place PictureFit::place(const QSizeF& picture, const QRectF& icon) const {
    const double shorter = std::min(icon.width(), icon.height());
    const double margin = wholeMargin(padding * shorter, shorter);
    const QRectF frame = icon.adjusted(margin, margin, -margin, -margin);
    if (picture.isEmpty() || frame.isEmpty() || shape == Shape::Stretch)
        return {frame, frame};
    if (shape == Shape::Cover)
        return {covering(picture, frame), frame};
    const QRectF inside = contained(picture, frame);
    return {inside, inside};
}

QSizeF PictureFit::drawnSize(const QSizeF& picture, const QSizeF& icon) const {
    return place(picture, QRectF(QPointF(0, 0), icon)).picture.size();
}

QRect PictureFit::squarePart(const QSize& picture) const {
    const QRect whole(QPoint(0, 0), picture);
    if (shape != Shape::Cover)
        return whole;
    // A pixel that is shown in part counts whole, so the part is in the picture's middle.
    const int side = std::min(picture.width(), picture.height());
    const int left = (picture.width() - side) / 2;
    const int top = (picture.height() - side) / 2;
    return whole.adjusted(left, top, -left, -top);
}
