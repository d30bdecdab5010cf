#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/ReducingStream.h"
#include "imaging/pixels/RowConverter.h"

#include <QRect>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

/// Builds a picture for decoders that work row by row. A decoder sets the profile and the orientation, begins
/// with the size, adds the rows, and finishes. The builder holds the objects that are still needed after a
/// decoder's longjmp out of an error.
class PictureBuilder {
  public:
    /// A picture that need not be turned loses what the renders do not show, and becomes a reduced copy: the
    /// largest that one of the renders draws from.
    explicit PictureBuilder(ReducedCopies::Renders renders) : m_renders(std::move(renders)) {}

    void setProfile(const EmbeddedProfile& embedded);
    const ColorProfile& profile() const { return m_profile; }

    /// The EXIF orientation, from which the picture is turned upright at the end.
    void setOrientation(int orientation) { m_orientation = orientation; }

    /// Takes the memory for a picture whose rows have `layout`. Errors as those of PictureReader::checkSize,
    /// and OutOfMemory.
    Result<Done> begin(qint64 width, qint64 height, const SampleLayout& layout);

    /// Whether a pixel of the layout has four bytes, like a pixel of the raster. Then the decoder may write
    /// its samples to `nextRow`, and they are converted in place.
    bool isInPlace() const { return m_layout.bytesPerPixel() == 4; }

    /// The place for the next row. Rows come from the top.
    std::uint8_t* nextRow();

    /// Converts the samples of the next row. `samples` may be what `nextRow` gave.
    void addRow(const std::uint8_t* samples);

    /// Whether rows were reduced or cut before an orientation was set that turns the picture. Then read it
    /// again without renders, since only the whole picture can be turned.
    bool wasReducedTooEarly() const { return isReduced() && !PictureReader::isUpright(m_orientation); }

    /// The picture, turned upright, with its warnings. OutOfMemory is the only error.
    Result<DecodedPicture> finish();

  private:
    bool isReduced() const { return m_stream || !m_wholeRow.empty(); }
    void addPart();

    ReducedCopies::Renders m_renders;
    ColorProfile m_profile;
    bool m_profileWasRefused = false;
    int m_orientation = 1;
    SampleLayout m_layout;
    std::optional<RowConverter> m_converter;
    QSize m_size;
    QRect m_part;                         ///< the pixels that are kept
    std::vector<std::uint8_t> m_wholeRow; ///< a row of the picture where only a part is kept; else empty
    int m_y = 0;                          ///< the number of the next row
    QImage m_raster;
    std::uint8_t* m_next = nullptr; ///< the raster's next row
    std::optional<ReducingStream> m_stream;
};
