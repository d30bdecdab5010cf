#include "imaging/icns/IcnsWriter.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"
#include "imaging/icns/IcnsRle.h"
#include "imaging/icns/IcnsTypes.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

struct Row {
    int pixelSize;
    FourCharCode code;
    FourCharCode mask; ///< set where the element is packed colours; PNG otherwise
};

constexpr FourCharCode none;

constexpr Row rows[] = {
    {1024, "ic10", none}, {512, "ic09", none},  {256, "ic08", none},  {128, "ic07", none},
    {64, "ic12", none},   {32, "il32", "l8mk"}, {16, "is32", "s8mk"},
};

struct Element {
    FourCharCode code;
    QByteArray data;

    qsizetype length() const { return icnsHeaderSize + data.size(); }
};

/// Every fourth byte of `pixels`, from `position` on.
std::vector<std::uint8_t> channel(const std::vector<std::uint8_t>& pixels, std::size_t position) {
    std::vector<std::uint8_t> samples;
    samples.reserve(pixels.size() / 4);
    for (std::size_t i = position; i < pixels.size(); i += 4)
        samples.push_back(pixels[i]);
    return samples;
}

/// The elements of `row` with a picture of its size; none where memory is short.
std::vector<Element> elements(const Row& row, const QImage& raster) {
    if (row.mask == none) {
        QByteArray png = encodePng(raster);
        return png.isEmpty() ? std::vector<Element>() : std::vector<Element>{{row.code, std::move(png)}};
    }
    const auto count = static_cast<std::size_t>(raster.width()) * static_cast<std::size_t>(raster.height());
    std::vector<std::uint8_t> pixels(4 * count);
    unpremultiply(raster.constBits(), pixels.data(), count);
    QByteArray colors;
    constexpr std::size_t lastColor = 2;
    for (std::size_t position = 0; position <= lastColor; ++position)
        IcnsRle::pack(channel(pixels, position), colors, position == lastColor);
    const std::vector<std::uint8_t> alpha = channel(pixels, 3);
    return {{row.code, colors},
            {row.mask,
             QByteArray(reinterpret_cast<const char*>(alpha.data()), static_cast<qsizetype>(alpha.size()))}};
}

/// The row of pictures of that size, or null.
const Row* rowOf(const QSize& size) {
    const auto* row = std::ranges::find(rows, size.width(), &Row::pixelSize);
    return row != std::end(rows) && size.height() == size.width() ? row : nullptr;
}

} // namespace

bool IcnsWriter::hasElement(const QSize& size) {
    return rowOf(size) != nullptr;
}

IcnsWriter::Added IcnsWriter::addImage(const QImage& raster) {
    if (raster.isNull())
        return Added::Failed;
    const Row* row = rowOf(raster.size());
    if (row == nullptr)
        return Added::NoElement;
    return unlessMemoryIsShort(
        [&] {
            const std::vector<Element> made = elements(*row, raster);
            if (made.empty())
                return Added::Failed;
            // All or nothing, should memory be short.
            qsizetype length = std::max(m_file.size(), icnsHeaderSize);
            for (const Element& element : made)
                length += element.length();
            m_file.reserve(length);
            ByteWriter writer(m_file);
            if (m_file.isEmpty())
                writer.record(icnsHeader(icnsMagic, 0));
            for (const Element& element : made)
                writer.record(icnsHeader(element.code, element.length())).bytes(element.data);
            writer.replaceBigEndian<quint32>(offsetof(IcnsHeader, length),
                                             static_cast<quint32>(m_file.size()));
            return Added::Yes;
        },
        Added::Failed);
}
