#include "platform/PictureBuilder.h"

#include <utility>

void PictureBuilder::setProfile(const ColorProfile& profile, bool isThere) {
    m_profile = profile;
    m_profileWasRefused = isThere && !profile;
}

bool PictureBuilder::begin(qint64 width, qint64 height, const SampleLayout& layout) {
    Result<QImage> raster = PictureReader::newRaster(width, height);
    if (!raster) {
        m_error = raster.error();
        return false;
    }
    m_raster = std::move(*raster);
    m_pixels = m_raster.bits();
    m_layout = layout;
    m_converter.emplace(layout, m_profile);
    m_profileWasRefused = m_profileWasRefused || m_converter->profileWasRefused();
    return true;
}

std::uint8_t* PictureBuilder::row(qint64 y) {
    return m_pixels + y * m_raster.bytesPerLine();
}

std::uint8_t* PictureBuilder::rowInPlace(qint64 y) {
    return m_layout.bytesPerPixel() == 4 ? row(y) : nullptr;
}

void PictureBuilder::addRow(qint64 y, const std::uint8_t* samples) {
    m_converter->convert(samples, row(y), m_raster.width());
}

Result<DecodedPicture> PictureBuilder::finish() {
    if (m_error)
        return *m_error;
    DecodedPicture picture{PictureReader::upright(std::move(m_raster), m_orientation), {}};
    if (m_profileWasRefused)
        picture.warnings << PictureReader::profileWarning();
    return picture;
}
