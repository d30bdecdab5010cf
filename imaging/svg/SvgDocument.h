#pragma once

#include "base/Result.h"
#include "imaging/image/ImageRep.h"

#include <QByteArray>
#include <QSizeF>

#include <memory>

/// An SVG document as a representation without pixels of its own: it is drawn anew at each size.
///
/// The document is drawn from its bytes alone, without a base address. Nothing outside of it is ever opened;
/// links to other files are left out. A document that SvgGuard refuses is not drawn at all.
class SvgDocument final : public ImageRep {
  public:
    /// Reads an SVG document, plain or compressed with gzip. Fails where it is damaged, empty, or refused by
    /// SvgGuard, and where librsvg is missing.
    static Result<std::shared_ptr<const SvgDocument>> fromBytes(const QByteArray& bytes);

    /// The document's own size in CSS pixels: its width and height, or else those of its view box, or else
    /// those of what it draws.
    const QSizeF& size() const { return m_size; }

    QSize pixelSize() const override { return {}; }
    QImage rendered(AxisMapping x, AxisMapping y) const override;

    /// Draws the document once, small. The error where it can't be drawn.
    std::optional<Error> drawingError() const;

  private:
    struct Handle;
    explicit SvgDocument(std::shared_ptr<Handle> handle) : m_handle(std::move(handle)) {}
    std::optional<Error> draw(QImage& target, const QRectF& viewport) const;

    std::shared_ptr<Handle> m_handle;
    QSizeF m_size;
};
