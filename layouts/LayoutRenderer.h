#pragma once

#include "base/Color.h"
#include "base/Result.h"
#include "generation/IconStyle.h"
#include "imaging/image/Image.h"
#include "layouts/Layout.h"

#include <QByteArray>
#include <QImage>

#include <optional>
#include <set>

/// The pictures that were given for a layout.
struct LayoutPictures {
    Image main;
    std::optional<Image> dark;
    std::optional<Image> tinted;
    std::optional<Image> foreground;
    std::optional<Image> monochrome;
    QByteArray document; ///< the main picture's SVG document; empty for another picture

    /// Whether that picture was given.
    bool has(LayoutPicture picture) const;

    /// The picture that is drawn where `wanted` is, of those that were given beside the main one.
    static LayoutPicture drawnFor(LayoutPicture wanted, const std::set<LayoutPicture>& given);
};

/// Draws the pictures of a layout's files.
class LayoutRenderer {
  public:
    /// `pictures` is kept by reference. `style` decorates the shape of each file: the border follows it, and
    /// the rounded corner is that of square shapes. `background` is opaque.
    LayoutRenderer(const LayoutPictures& pictures, const IconStyle& style, const Color& background)
        : m_pictures(pictures), m_style(style), m_background(background) {}

    /// The side of the square that the shape takes in the middle of a file's picture: of the shorter side the
    /// inset part, as many pixels less on both sides.
    static int shapeSide(const LayoutFile& file, const QSize& size);

    /// The picture of `file` in that size. Fails as GraphicsContext does, or with
    /// OutOfMemory.
    Result<QImage> raster(const LayoutFile& file, const QSize& size) const;

  private:
    const Image& source(LayoutPicture picture) const;
    Result<QImage> drawnPicture(LayoutPicture picture, int side, int inner) const;
    Result<QImage> decorated(const Image& image, int inner, const LayoutFile& file, const QSize& size) const;
    Result<QImage> shaped(const LayoutFile& file, const QSize& size) const;

    const LayoutPictures& m_pictures;
    IconStyle m_style;
    Color m_background;
};
