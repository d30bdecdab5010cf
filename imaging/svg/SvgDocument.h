#pragma once

#include "base/Result.h"
#include "imaging/image/ImageRep.h"

#include <QByteArray>
#include <QSizeF>

#include <memory>

/// An SVG document as a representation without pixels of its own: it is drawn anew at each size.
///
/// The document is drawn from its bytes alone, without a base address, so that nothing outside of it is ever
/// opened: what it links to is left out. What SvgGuard refuses is not drawn at all.
class SvgDocument final : public ImageRep {
  public:
    /// From an SVG document, which may be compressed with gzip.
    static Result<std::shared_ptr<const SvgDocument>> fromBytes(const QByteArray& bytes);

    /// The document's own size in CSS pixels: its width and height, or else those of its view box, or else
    /// those of what it draws.
    const QSizeF& size() const { return m_size; }

    QSize pixelSize() const override { return {}; }
    QImage rendered(AxisMapping x, AxisMapping y) const override;

    /// Draws the document once, small, to see whether it can be drawn.
    std::optional<Error> drawingError() const;

  private:
    struct Handle;
    explicit SvgDocument(std::shared_ptr<Handle> handle) : m_handle(std::move(handle)) {}
    std::optional<Error> draw(QImage& target, const QRectF& viewport) const;

    std::shared_ptr<Handle> m_handle;
    QSizeF m_size;
};
