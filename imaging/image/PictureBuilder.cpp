#include "imaging/image/PictureBuilder.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"

#include <algorithm>
#include <cstddef>
#include <utility>

void PictureBuilder::setProfile(const EmbeddedProfile& embedded) {
    m_profile = embedded.profile;
    m_profileWasRefused = embedded.isBroken;
}

Result<Done> PictureBuilder::begin(qint64 width, qint64 height, const SampleLayout& layout) {
    if (Result<Done> allowed = PictureReader::checkSize(width, height); !allowed)
        return allowed;
    m_size = QSize(static_cast<int>(width), static_cast<int>(height));
    const bool isUpright = PictureReader::isUpright(m_orientation);
    m_part = isUpright ? m_renders.part(m_size) : QRect(QPoint(0, 0), m_size);
    const QSize needed = isUpright ? ReducedCopies::largestNeeded(m_part.size(), m_renders) : m_size;
    Result<QImage> raster = newRaster(needed, QImage::Format_RGBA8888_Premultiplied);
    if (!raster)
        return noMemoryForPixels(width, height);
    m_raster = std::move(*raster);
    if (needed != m_part.size()) {
        Result<ReducingStream> stream = ReducingStream::create(m_part.size(), m_raster);
        if (!stream)
            return noMemoryForPixels(width, height);
        m_stream.emplace(std::move(*stream));
    }
    if (m_part.size() != m_size) {
        const auto rowBytes = 4 * static_cast<std::size_t>(m_size.width());
        if (!unlessMemoryIsShort([&] { m_wholeRow.resize(rowBytes); }))
            return noMemoryForPixels(width, height);
    }
    Result<RowConverter> converter = RowConverter::create(layout, m_profile, m_size.width());
    if (!converter)
        return noMemoryForPixels(width, height);
    m_next = m_raster.bits();
    m_layout = layout;
    m_converter.emplace(std::move(*converter));
    m_profileWasRefused = m_profileWasRefused || m_converter->profileWasRefused();
    return Done{};
}

std::uint8_t* PictureBuilder::nextRow() {
    if (!m_wholeRow.empty())
        return m_wholeRow.data();
    return m_stream ? m_stream->nextRow() : m_next;
}

void PictureBuilder::addRow(const std::uint8_t* samples) {
    m_converter->convert(samples, nextRow(), m_size.width());
    if (!m_wholeRow.empty())
        addPart();
    else if (m_stream)
        m_stream->addRow();
    else
        m_next += m_raster.bytesPerLine();
}

/// Adds the part of the row in `m_wholeRow` that is kept, if there is one.
void PictureBuilder::addPart() {
    const int y = m_y++;
    if (y < m_part.top() || y > m_part.bottom())
        return;
    const std::uint8_t* from = m_wholeRow.data() + 4 * static_cast<std::ptrdiff_t>(m_part.left());
    std::copy_n(from, 4 * static_cast<std::size_t>(m_part.width()), m_stream ? m_stream->nextRow() : m_next);
    if (m_stream)
        m_stream->addRow();
    else
        m_next += m_raster.bytesPerLine();
}

Result<DecodedPicture> PictureBuilder::finish() {
    Result<QImage> upright = PictureReader::upright(std::move(m_raster), m_orientation);
    if (!upright)
        return upright.error();
    DecodedPicture picture{std::move(*upright), {}, isReduced() ? m_size : QSize()};
    if (m_profileWasRefused)
        picture.warnings << PictureReader::profileWarning();
    return picture;
}
