#pragma once

#include "platform/PictureReader.h"
#include "platform/RowConverter.h"

#include <optional>

/// What decoders that work row by row have in common: they learn of a profile, an orientation and a size,
/// then hand over rows of samples, and a finished picture comes out. Keeps all that must outlive a decoder's
/// jump out of an error.
class PictureBuilder {
  public:
    /// The embedded profile, if there is one; `isThere` that one was embedded, even if it could not be used.
    void setProfile(const ColorProfile& profile, bool isThere);
    const ColorProfile& profile() const { return m_profile; }

    /// The EXIF orientation that the picture will be turned upright from.
    void setOrientation(int orientation) { m_orientation = orientation; }

    /// Takes the memory for a picture whose rows come as `layout`. False, with an error, for a size that is
    /// refused.
    bool begin(qint64 width, qint64 height, const SampleLayout& layout);

    /// Where the decoder may put row `y` of its samples to be converted in place, if a pixel of its layout
    /// has the four bytes of the raster's; null otherwise.
    std::uint8_t* rowInPlace(qint64 y);

    /// Converts one row of samples into the raster. `samples` may be what `rowInPlace` gave.
    void addRow(qint64 y, const std::uint8_t* samples);

    void fail(const Error& error) { m_error = error; }
    const std::optional<Error>& error() const { return m_error; }

    /// The picture, turned upright, with its warnings; or the error.
    Result<DecodedPicture> finish();

  private:
    std::uint8_t* row(qint64 y);

    ColorProfile m_profile;
    bool m_profileWasRefused = false;
    int m_orientation = 1;
    SampleLayout m_layout;
    std::optional<RowConverter> m_converter;
    QImage m_raster;
    std::uint8_t* m_pixels = nullptr;
    std::optional<Error> m_error;
};
