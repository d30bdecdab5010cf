#include "imaging/png/FilteredRows.h"

#include "imaging/pixels/Premultiplication.h"

#include <cstring>

namespace {

/// The colours of `pixels` opaque pixels.
void withoutAlpha(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i, in += 4, out += 3) {
        out[0] = in[0];
        out[1] = in[1];
        out[2] = in[2];
    }
}

} // namespace

FilteredRows::Buffer FilteredRows::all(PngFilterStrategy strategy) const {
    Buffer buffer(size(m_raster.height()));
    append(buffer, 0, m_raster.height(), strategy);
    return buffer;
}

FilteredRows::Buffer FilteredRows::sample(PngFilterStrategy strategy, Bands bands) const {
    const int rows = bands.count * bands.rows;
    if (m_raster.height() <= rows)
        return all(strategy);
    Buffer buffer(size(rows));
    for (int band = 0; band < bands.count; ++band)
        append(buffer, (m_raster.height() * (2 * band + 1) / bands.count - bands.rows) / 2, bands.rows,
               strategy);
    return buffer;
}

/// Appends the rows [first, first + count).
void FilteredRows::append(Buffer& buffer, int first, int count, PngFilterStrategy strategy) const {
    std::uint8_t* out = buffer.bytes.get() + buffer.size;
    buffer.size += size(count);
    Sequence rows(*this, strategy, first);
    for (int i = 0; i < count; ++i, out += size(1))
        rows.next(out);
}

void FilteredRows::straightRow(int y, std::uint8_t* out) const {
    if (m_pixelBytes == 3)
        withoutAlpha(m_raster.constScanLine(y), out, m_rowBytes / m_pixelBytes);
    else if (m_raster.format() == QImage::Format_RGBA8888)
        std::memcpy(out, m_raster.constScanLine(y), m_rowBytes);
    else
        unpremultiply(m_raster.constScanLine(y), out, m_rowBytes / 4);
}

FilteredRows::Sequence::Sequence(const FilteredRows& rows, PngFilterStrategy strategy, int first)
    : m_rows(rows), m_strategy(strategy), m_filter(rows.m_rowBytes, rows.m_pixelBytes), m_y(first) {
    if (first > 0 && strategy == PngFilterStrategy::Adaptive)
        rows.straightRow(first - 1, m_filter.nextRow());
}

void FilteredRows::Sequence::next(std::uint8_t* out) {
    if (m_strategy == PngFilterStrategy::None) {
        out[0] = PngFilter::noneType;
        m_rows.straightRow(m_y++, out + 1);
        return;
    }
    m_rows.straightRow(m_y++, m_filter.nextRow());
    m_filter.adaptive(out);
}
