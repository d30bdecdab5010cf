#include "platform/icns/IcnsWriter.h"

#include "platform/PngWriter.h"
#include "platform/Premultiplication.h"
#include "platform/ShortMemory.h"
#include "platform/icns/IcnsRle.h"
#include "platform/icns/IcnsTypes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

void appendHeader(QByteArray& file, FourCharCode code, std::size_t length) {
    const IcnsHeader header{quint32_be(code.value), quint32_be(static_cast<quint32>(length))};
    file.append(reinterpret_cast<const char*>(&header), sizeof header);
}

void appendElement(QByteArray& elements, FourCharCode code, const QByteArray& data) {
    appendHeader(elements, code, sizeof(IcnsHeader) + static_cast<std::size_t>(data.size()));
    elements.append(data);
}

/// Every fourth byte of `pixels`, from `position` on.
std::vector<std::uint8_t> channel(const std::vector<std::uint8_t>& pixels, std::size_t position) {
    std::vector<std::uint8_t> samples;
    samples.reserve(pixels.size() / 4);
    for (std::size_t i = position; i < pixels.size(); i += 4)
        samples.push_back(pixels[i]);
    return samples;
}

/// The elements of `row` with a picture of its size; empty where memory is short.
QByteArray elements(const Row& row, const QImage& raster) {
    QByteArray made;
    if (row.mask == none) {
        const QByteArray png = encodePng(raster);
        if (!png.isEmpty())
            appendElement(made, row.code, png);
        return made;
    }
    const auto count = static_cast<std::size_t>(raster.width()) * static_cast<std::size_t>(raster.height());
    std::vector<std::uint8_t> pixels(4 * count);
    unpremultiply(raster.constBits(), pixels.data(), count);
    QByteArray colors;
    constexpr std::size_t lastColor = 2;
    for (std::size_t position = 0; position <= lastColor; ++position)
        IcnsRle::pack(channel(pixels, position), colors, position == lastColor);
    const std::vector<std::uint8_t> alpha = channel(pixels, 3);
    appendElement(made, row.code, colors);
    appendElement(
        made, row.mask,
        QByteArray(reinterpret_cast<const char*>(alpha.data()), static_cast<qsizetype>(alpha.size())));
    return made;
}

} // namespace

IcnsWriter::Added IcnsWriter::addImage(const QImage& raster) {
    if (raster.isNull())
        return Added::Failed;
    const auto* row = std::ranges::find(rows, raster.width(), &Row::pixelSize);
    if (row == std::end(rows) || raster.height() != raster.width())
        return Added::NoElement;
    return unlessMemoryIsShort(
        [&] {
            const QByteArray made = elements(*row, raster);
            if (made.isEmpty())
                return Added::Failed;
            append(made);
            return Added::Yes;
        },
        Added::Failed);
}

void IcnsWriter::append(const QByteArray& elements) {
    // All or nothing, should memory be short.
    m_file.reserve(std::max<qsizetype>(m_file.size(), sizeof(IcnsHeader)) + elements.size());
    if (m_file.isEmpty())
        appendHeader(m_file, icnsMagic, 0);
    m_file.append(elements);
    const quint32_be total(static_cast<quint32>(m_file.size()));
    std::memcpy(m_file.data() + offsetof(IcnsHeader, length), &total, sizeof total);
}
