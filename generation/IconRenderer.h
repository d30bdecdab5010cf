#pragma once

#include "generation/GenerationInput.h"
#include "platform/services/Screen.h"

#include <QImage>
#include <QSizeF>

/// Renders one icon: the picture stretched to a size, inside the style's rounded corner, under its border.
class IconRenderer {
  public:
    /// Both are kept by reference and read at each render.
    IconRenderer(const GenerationInput& input, const Screen& screen) : m_input(input), m_screen(screen) {}

    /// A new image of `withSize` points, holding one raster at the display's scale, or none where that size
    /// has no pixel or too many. `image` is stretched: its aspect ratio is not kept. The border follows the
    /// clip's outline, and its width the width alone.
    Image drawImage(const Image& image, const QSizeF& withSize) const;

    /// The raster image of `image`, taken through its TIFF encoding; null without an image or where that
    /// can't be read.
    static QImage getCgiImageRef(const Image* image);

  private:
    const GenerationInput& m_input;
    const Screen& m_screen;
};
