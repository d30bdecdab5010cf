#pragma once

#include "imaging/png/PngOptions.h"

#include <QByteArray>
#include <QImage>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A picture as the samples of a PNG file: colour type, depth and the bytes of the rows before they are
/// filtered. Source: ISO/IEC 15948, 6.1 and 11.2.2.
struct PngSamples {
    enum ColorType : std::uint8_t { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, Rgba = 6 };

    ColorType colorType = Rgba;
    int bitDepth = 8;
    int height = 0;
    std::size_t rowBytes = 0;
    std::vector<std::uint8_t> bytes; ///< rowBytes × height
    QByteArray palette;              ///< of Palette: three bytes for each colour
    QByteArray alphas;               ///< of Palette: for its first colours, which alone are translucent

    /// How far a filter looks to the left.
    std::size_t pixelBytes() const;
    /// What the palette takes in the file.
    std::size_t paletteBytes() const;
};

/// The ways to write `raster` (RGBA8888_Premultiplied, or RGBA8888 with straight colours) without a change of
/// any pixel. With PngChannels::Fewest: grey where all colours are, without alpha where all pixels are
/// opaque, with as few bits as they need; and with palettes of up to 256 colours in two orders. With other
/// channels there is one way. May throw std::bad_alloc.
std::vector<PngSamples> pngSamplesOf(const QImage& raster, PngChannels channels);
