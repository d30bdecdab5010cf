#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/ReducingStream.h"
#include "imaging/pixels/RowConverter.h"

#include <optional>
#include <utility>

/// What decoders that work row by row have in common: they learn of a profile, an orientation and a size,
/// then hand over rows of samples, and a finished picture comes out. Keeps all that must outlive a decoder's
/// jump out of an error.
class PictureBuilder {
  public:
    /// A picture that stands upright becomes the largest reduced copy that one of the renders draws from.
    explicit PictureBuilder(ReducedCopies::Renders renders) : m_renders(std::move(renders)) {}

    void setProfile(const EmbeddedProfile& embedded);
    const ColorProfile& profile() const { return m_profile; }

    /// The EXIF orientation that the picture will be turned upright from.
    void setOrientation(int orientation) { m_orientation = orientation; }

    /// Takes the memory for a picture whose rows come as `layout`. Errors as those of
    /// PictureReader::checkSize, and OutOfMemory.
    Result<Done> begin(qint64 width, qint64 height, const SampleLayout& layout);

    /// Whether a pixel of the layout has the four bytes of the raster's, so that the decoder may put its
    /// samples where they are converted in place.
    bool isInPlace() const { return m_layout.bytesPerPixel() == 4; }

    /// That place for the next row, from the top.
    std::uint8_t* nextRow();

    /// Converts the samples of the next row. `samples` may be what `nextRow` gave.
    void addRow(const std::uint8_t* samples);

    /// Whether rows were reduced before it came out that the picture does not stand upright: then it must be
    /// read once more, as a whole.
    bool wasReducedTooEarly() const { return m_stream && !PictureReader::isUpright(m_orientation); }

    /// The picture, turned upright, with its warnings. OutOfMemory is the only error.
    Result<DecodedPicture> finish();

  private:
    ReducedCopies::Renders m_renders;
    ColorProfile m_profile;
    bool m_profileWasRefused = false;
    int m_orientation = 1;
    SampleLayout m_layout;
    std::optional<RowConverter> m_converter;
    QSize m_size;
    QImage m_raster;
    std::uint8_t* m_next = nullptr; ///< the raster's next row
    std::optional<ReducingStream> m_stream;
};
