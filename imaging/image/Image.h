#pragma once

#include "imaging/image/ImageRep.h"

#include <QSizeF>

#include <memory>
#include <vector>

/// A picture: a size in points and one or more representations of it. A value; copies share the
/// representations.
class Image {
  public:
    /// No picture.
    Image() = default;
    /// A picture of that size without any representation yet.
    explicit Image(const QSizeF& size) : m_size(size) {}

    bool isNull() const { return !m_size.isValid() && m_representations.empty(); }

    /// In points.
    const QSizeF& size() const { return m_size; }

    const std::vector<std::shared_ptr<const ImageRep>>& representations() const { return m_representations; }
    void addRepresentation(std::shared_ptr<const ImageRep> representation);

    /// The representation from which a render of `pixels` is drawn: one that is reserved for small icons, if
    /// the render is as small; else a drawing if there is one, else the bitmap that ReducedCopies::bestOf
    /// chooses. Null where that finds no bitmap.
    const ImageRep* bestRepresentation(const QSizeF& pixels) const;

    /// The picture as icons of that side show it, which may draw it smaller: either the representation that
    /// is reserved for them, or all that are not reserved.
    Image forIcons(int side) const;

    /// The largest bitmap; null where there is no bitmap. OutOfMemory is the only error.
    Result<QImage> largestRaster() const;

  private:
    std::shared_ptr<const ImageRep> reservedFor(double side) const;

    QSizeF m_size;
    std::vector<std::shared_ptr<const ImageRep>> m_representations;
};
