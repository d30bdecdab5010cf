#include "imaging/icns/IcnsWriter.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"
#include "imaging/icns/IcnsRle.h"
#include "imaging/icns/IcnsTypes.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Raster.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace {

/// The types that are written, each for pictures of its pixel size. macOS reads them both in a file and in an
/// application bundle.
constexpr FourCharCode writtenTypes[] = {"ic10", "ic09", "ic08", "ic07", "ic12", "il32", "is32"};

/// The type that is written for pictures of `size`, or null.
const IcnsElementType* writtenType(const QSize& size) {
    const auto* found = std::ranges::find_if(
        writtenTypes, [&](FourCharCode code) { return size == icnsElementType(code)->size(); });
    return found != std::end(writtenTypes) ? icnsElementType(*found) : nullptr;
}

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

/// The elements of `type` with a picture of its size.
Result<std::vector<Element>> elements(const IcnsElementType& type, const QImage& raster, PngStore* pngs) {
    if (type.content == IcnsContent::Picture) {
        Result<QByteArray> png = pngs != nullptr ? pngs->encoded(raster) : encodePng(raster);
        if (!png)
            return png.error();
        return std::vector<Element>{{type.code, std::move(*png)}};
    }
    const auto count = static_cast<std::size_t>(raster.width()) * static_cast<std::size_t>(raster.height());
    std::vector<std::uint8_t> pixels(4 * count);
    unpremultiply(raster.constBits(), pixels.data(), count);
    QByteArray colors;
    constexpr std::size_t lastColor = 2;
    for (std::size_t position = 0; position <= lastColor; ++position)
        IcnsRle::pack(channel(pixels, position), colors, position == lastColor);
    const std::vector<std::uint8_t> alpha = channel(pixels, 3);
    return std::vector<Element>{{type.code, colors},
                                {type.mask, QByteArray(reinterpret_cast<const char*>(alpha.data()),
                                                       static_cast<qsizetype>(alpha.size()))}};
}

} // namespace

bool IcnsWriter::hasElement(const QSize& size) {
    return writtenType(size) != nullptr;
}

Result<IcnsWriter::Added> IcnsWriter::addImage(const QImage& raster, PngStore* pngs) {
    if (raster.isNull())
        return noPixels();
    const IcnsElementType* type = writtenType(raster.size());
    if (type == nullptr)
        return Added::NoElement;
    return unlessMemoryIsShort([&]() -> Result<Added> {
        const Result<std::vector<Element>> made = elements(*type, raster, pngs);
        if (!made)
            return made.error();
        // Room is reserved first: where memory is short, nothing is added.
        qsizetype length = std::max(m_file.size(), icnsHeaderSize);
        for (const Element& element : *made)
            length += element.length();
        m_file.reserve(length);
        ByteWriter writer(m_file);
        if (m_file.isEmpty())
            writer.record(icnsHeader(icnsMagic, 0));
        for (const Element& element : *made)
            writer.record(icnsHeader(element.code, element.length())).bytes(element.data);
        writer.replaceBigEndian<quint32>(offsetof(IcnsHeader, length), static_cast<quint32>(m_file.size()));
        return Added::Yes;
    });
}
