#pragma once

#include "base/Result.h"
#include "generation/GenerationInput.h"
#include "platform/services/Screen.h"

#include <QImage>
#include <QSizeF>

/// Renders an icon: the picture is stretched to a size, clipped to the style's rounded corners, and gets the
/// border.
class IconRenderer {
  public:
    /// Both are kept by reference and read at each render.
    IconRenderer(const GenerationInput& input, const Screen& screen) : m_input(input), m_screen(screen) {}

    /// A new image of `size` points with one raster at the display's scale. `image` is stretched: its aspect
    /// ratio is not kept. The border follows the clip's outline; its thickness depends only on the width.
    /// Errors: EmptySize if the size has no pixel, TooLarge if it has too many, OutOfMemory, or the reason
    /// why `image` can't be drawn.
    Result<Image> rendered(const Image& image, const QSizeF& size) const;

    /// The raster image of `image`, encoded as TIFF and decoded again. EmptySize without a raster,
    /// OutOfMemory.
    static Result<QImage> throughTiff(const Image& image);

    /// The same error, with a sentence about an icon of `size` points.
    static Error ofIcon(const Error& error, const QSizeF& size);

    /// Like `rendered`, but a failure gives an image of that size without a raster.
    Image drawImage(const Image& image, const QSizeF& withSize) const;

    /// Like `throughTiff`, but null for a null `image` or a failure.
    static QImage getCgiImageRef(const Image* image);

  private:
    const GenerationInput& m_input;
    const Screen& m_screen;
};
