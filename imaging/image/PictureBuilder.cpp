#include "imaging/image/PictureBuilder.h"

#include <new>
#include <utility>

void PictureBuilder::setProfile(const ColorProfile& profile, bool isThere) {
    m_profile = profile;
    m_profileWasRefused = isThere && !profile;
}

bool PictureBuilder::begin(qint64 width, qint64 height, const SampleLayout& layout) {
    if ((m_error = PictureReader::refusedSize(width, height)))
        return false;
    m_size = QSize(static_cast<int>(width), static_cast<int>(height));
    try {
        const bool isUpright = PictureReader::isUpright(m_orientation);
        const QSize needed = isUpright ? ReducedCopies::largestNeeded(m_size, m_renders) : m_size;
        m_raster = QImage(needed, QImage::Format_RGBA8888_Premultiplied);
        if (!m_raster.isNull() && needed != m_size)
            m_stream.emplace(m_size, m_raster);
    } catch (const std::bad_alloc&) {
        m_raster = QImage();
    }
    if (m_raster.isNull()) {
        m_error = PictureReader::noMemory(width, height);
        return false;
    }
    m_next = m_raster.bits();
    m_layout = layout;
    m_converter.emplace(layout, m_profile);
    m_profileWasRefused = m_profileWasRefused || m_converter->profileWasRefused();
    return true;
}

std::uint8_t* PictureBuilder::nextRow() {
    return m_stream ? m_stream->nextRow() : m_next;
}

void PictureBuilder::addRow(const std::uint8_t* samples) {
    m_converter->convert(samples, nextRow(), m_size.width());
    if (m_stream)
        m_stream->addRow();
    else
        m_next += m_raster.bytesPerLine();
}

Result<DecodedPicture> PictureBuilder::finish() {
    if (m_error)
        return *m_error;
    DecodedPicture picture{
        PictureReader::upright(std::move(m_raster), m_orientation), {}, m_stream ? m_size : QSize()};
    if (m_profileWasRefused)
        picture.warnings << PictureReader::profileWarning();
    return picture;
}
