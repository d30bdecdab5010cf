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
    /// Reads an SVG document, plain or compressed with gzip. Fails where SvgGuard refuses it; Damaged where
    /// it is empty or can't be drawn, Unsupported where librsvg is missing, OutOfMemory.
    static Result<std::shared_ptr<const SvgDocument>> fromBytes(const QByteArray& bytes);

    /// The text of a document, plain or compressed with gzip, in its own encoding. Damaged where it can't be
    /// unpacked, TooLarge, OutOfMemory.
    static Result<QByteArray> inflated(const QByteArray& bytes);

    /// The document's own size in CSS pixels: its width and height, or else those of its view box, or else
    /// those of what it draws.
    const QSizeF& size() const { return m_size; }

    QSize pixelSize() const override { return {}; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override;

    /// Draws the document once, small. Damaged where it can't be drawn, OutOfMemory.
    Result<Done> checkDrawing() const;

  private:
    struct Handle;
    static Result<std::shared_ptr<const SvgDocument>> parsed(const QByteArray& bytes);
    explicit SvgDocument(std::shared_ptr<Handle> handle) : m_handle(std::move(handle)) {}
    Result<Done> draw(QImage& target, const QRectF& viewport) const;

    std::shared_ptr<Handle> m_handle;
    QSizeF m_size;
};
