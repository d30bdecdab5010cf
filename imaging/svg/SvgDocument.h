#pragma once

#include "base/Result.h"
#include "imaging/image/ImageRep.h"
#include "imaging/svg/SvgDrawings.h"

#include <QByteArray>
#include <QSizeF>
#include <QStringList>

#include <memory>

/// An SVG document as a representation without pixels of its own: it is drawn anew at each size.
///
/// The document is drawn from its bytes alone, without a base address. Nothing outside of it is ever opened;
/// links to other files are left out. A process of its own draws it, within limits of time and memory.
class SvgDocument final : public ImageRep {
  public:
    /// Reads an SVG document, plain or compressed with gzip, and draws it once. Fails where SvgContent
    /// refuses it or SvgDrawings can't draw it.
    static Result<std::shared_ptr<const SvgDocument>> fromBytes(const QByteArray& bytes,
                                                                const SvgDrawings::Options& options = {});

    /// The text of a document, plain or compressed with gzip, in its own encoding. Damaged where it can't be
    /// unpacked, TooLarge, OutOfMemory.
    static Result<QByteArray> inflated(const QByteArray& bytes);

    /// The document's own size in CSS pixels: its width and height, or else those of its view box, or else
    /// those of what it draws.
    const QSizeF& size() const { return m_drawings->size(); }

    /// Sentences for people about what its drawings lack.
    const QStringList& warnings() const { return m_warnings; }

    QSize pixelSize() const override { return {}; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override;

  private:
    SvgDocument(std::unique_ptr<SvgDrawings> drawings, QStringList warnings)
        : m_drawings(std::move(drawings)), m_warnings(std::move(warnings)) {}

    std::unique_ptr<SvgDrawings> m_drawings;
    QStringList m_warnings;
};
