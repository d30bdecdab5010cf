#pragma once

#include "base/Result.h"
#include "generation/GenerationInput.h"
#include "platform/services/Screen.h"

#include <QImage>
#include <QSizeF>

/// Renders one icon: the picture stretched to a size, inside the style's rounded corner, under its border.
class IconRenderer {
  public:
    /// Both are kept by reference and read at each render.
    IconRenderer(const GenerationInput& input, const Screen& screen) : m_input(input), m_screen(screen) {}

    /// A new image of `size` points, holding one raster at the display's scale. `image` is stretched: its
    /// aspect ratio is not kept. The border follows the clip's outline, and its width the width alone.
    /// EmptySize where that size has no pixel, TooLarge where it has too many, OutOfMemory, or why `image`
    /// can't be drawn.
    Result<Image> rendered(const Image& image, const QSizeF& size) const;

    /// The raster image of `image`, taken through its TIFF encoding. EmptySize without a raster, OutOfMemory.
    static Result<QImage> throughTiff(const Image& image);

    /// An error of what is made of a render, in the words for an icon of `size` points.
    static Error ofIcon(const Error& error, const QSizeF& size);

    /// The same as `rendered`; an image of that size without a raster where it fails.
    Image drawImage(const Image& image, const QSizeF& withSize) const;

    /// The same as `throughTiff`; null without an image or where it fails.
    static QImage getCgiImageRef(const Image* image);

  private:
    const GenerationInput& m_input;
    const Screen& m_screen;
};
