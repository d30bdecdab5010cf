#include "imaging/icns/IcnsReader.h"

#include "base/ByteReader.h"
#include "base/ShortMemory.h"
#include "imaging/formats/Jpeg2000Reader.h"
#include "imaging/icns/IcnsEncoding.h"
#include "imaging/icns/IcnsRle.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Raster.h"
#include "imaging/png/PngReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <set>

namespace {

Error damaged(const QString& detail) {
    return PictureReader::damaged(QStringLiteral("icns"), detail);
}

/// An RGBA image from run-length coded planes of one byte a pixel. `positions` are the places of these planes
/// in an RGBA pixel.
Result<QImage> unpackedPlanes(QByteArrayView packed, int side, std::initializer_list<int> positions) {
    Result<QImage> image = newRaster(QSize(side, side), QImage::Format_RGBA8888);
    if (!image)
        return image;
    image->fill(Qt::white);
    std::vector<std::uint8_t> plane(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (const int position : positions) {
        const std::optional<QByteArrayView> rest = IcnsRle::unpack(packed, plane);
        if (!rest)
            return damaged(QStringLiteral("packed samples break off"));
        packed = *rest;
        uchar* out = image->bits() + position;
        for (const std::uint8_t sample : plane) {
            *out = sample;
            out += 4;
        }
    }
    return image;
}

/// An RGBA image from plain samples in the order A, R, G, B.
Result<QImage> plainArgb(QByteArrayView data, int side) {
    Result<QImage> image = newRaster(QSize(side, side), QImage::Format_RGBA8888);
    if (!image)
        return image;
    uchar* out = image->bits();
    for (qsizetype i = 0; i + 3 < data.size() && i < image->sizeInBytes(); i += 4, out += 4) {
        const std::array<char, 4> rgba{data[i + 1], data[i + 2], data[i + 3], data[i]};
        std::memcpy(out, rgba.data(), rgba.size());
    }
    return image;
}

/// An RGBA image from red, green and blue, with the alpha of `mask`; opaque without a mask.
Result<QImage> colors(const IcnsElementType& type, QByteArrayView data, const IcnsElement* mask) {
    const int side = type.pixelSize;
    const qsizetype pixels = qsizetype{side} * side;
    if (mask != nullptr && mask->data.size() < pixels)
        return damaged(QStringLiteral("the mask %1 of the element %2 has %3 bytes instead of %4")
                           .arg(type.mask.text(), type.code.text())
                           .arg(mask->data.size())
                           .arg(pixels));
    const bool isPacked = icnsPictureInfo(type, data).encoding == IcnsEncoding::PackedColors;
    if (isPacked) {
        if (type.hasLeadingZeros) {
            if (!data.startsWith(packedStart))
                return damaged(QStringLiteral("packed samples do not begin with four zero bytes"));
            data = data.sliced(packedStart.size());
        }
    }
    Result<QImage> image = isPacked ? unpackedPlanes(data, side, {0, 1, 2}) : plainArgb(data, side);
    if (!image)
        return image;
    uchar* alpha = image->bits() + 3;
    for (qsizetype i = 0; i < pixels; ++i, alpha += 4)
        *alpha = mask != nullptr ? static_cast<uchar>(mask->data[i]) : 255;
    return image;
}

/// The side in pixels of the largest element type.
constexpr int largestSide = 1024;

/// What the element's data tell of its picture. Damaged for more than 1024 pixels a side, and for a file
/// inside that tells no size.
Result<IcnsPictureInfo> checkedInfo(const IcnsElementType& type, QByteArrayView data) {
    const IcnsPictureInfo info = icnsPictureInfo(type, data);
    // A small file inside an element could become very large in memory, once for each element.
    if (std::max(info.size.width(), info.size.height()) > largestSide)
        return damaged(QStringLiteral("the element %1 holds a picture of %2 × %3 pixels")
                           .arg(type.code.text())
                           .arg(info.size.width())
                           .arg(info.size.height()));
    if (info.encoding != IcnsEncoding::Unknown && !info.size.isValid())
        return damaged(QStringLiteral("the picture in the element %1 tells no size").arg(type.code.text()));
    return info;
}

} // namespace

std::optional<qsizetype> IcnsReader::lengthOf(const QByteArray& bytes) {
    const auto header = ByteReader(bytes).record<IcnsHeader>(0);
    if (!header || header->code != icnsMagic.value)
        return std::nullopt;
    return header->length;
}

Result<qint64> IcnsReader::lengthToRead(const QByteArray& start) {
    const std::optional<qsizetype> length = lengthOf(start);
    if (!length)
        return Error{ErrorCode::UnknownFormat, QStringLiteral("not an icns file")};
    return std::max(*length, icnsHeaderSize);
}

Result<IcnsReader> IcnsReader::open(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return parsed(bytes); });
}

Result<IcnsReader> IcnsReader::parsed(const QByteArray& bytes) {
    const std::optional<qsizetype> length = lengthOf(bytes);
    if (!length)
        return damaged(QStringLiteral("it does not begin as an icns file"));
    const auto family = ByteReader(bytes).slice(0, *length);
    auto rest = family ? family->from(icnsHeaderSize) : std::nullopt;
    if (!rest)
        return damaged(QStringLiteral("its length does not agree with the file"));
    IcnsReader reader;
    reader.m_length = *length;
    while (!rest->isEmpty()) {
        const auto header = rest->record<IcnsHeader>(0);
        if (!header)
            return damaged(QStringLiteral("an element breaks off"));
        const auto element = rest->slice(0, header->length);
        const auto data = element ? element->from(icnsHeaderSize) : std::nullopt;
        if (!data)
            return damaged(QStringLiteral("an element's length does not agree with the file"));
        reader.m_elements.push_back({FourCharCode(header->code), data->view()});
        rest = rest->from(header->length);
    }
    return reader;
}

const IcnsElement* IcnsReader::element(FourCharCode type) const {
    const auto found = std::ranges::find(m_elements, type, &IcnsElement::type);
    return found != m_elements.end() ? &*found : nullptr;
}

Result<QImage> IcnsReader::samples(const IcnsElement& element) const {
    return unlessMemoryIsShort([&] { return storedSamples(element); });
}

Result<QImage> IcnsReader::storedSamples(const IcnsElement& element) const {
    const IcnsElementType* type = icnsElementType(element.type);
    if (type != nullptr) {
        const Result<IcnsPictureInfo> checked = checkedInfo(*type, element.data);
        if (!checked)
            return checked.error();
        const IcnsPictureInfo& info = *checked;
        switch (info.encoding) {
        case IcnsEncoding::Jpeg2000: {
            Result<DecodedPicture> picture =
                readStraightJpeg2000(QByteArray::fromRawData(element.data.data(), element.data.size()));
            if (!picture)
                return picture.error();
            return std::move(picture->raster);
        }
        case IcnsEncoding::PackedColors:
            return colors(*type, element.data, this->element(type->mask));
        case IcnsEncoding::PackedArgb:
            return unpackedPlanes(element.data.sliced(argbMark.size()), type->pixelSize, {3, 0, 1, 2});
        case IcnsEncoding::PlainArgb:
            if (type->content == IcnsContent::Colors)
                return colors(*type, element.data, this->element(type->mask));
            return plainArgb(element.data, info.size.width());
        case IcnsEncoding::Unknown:
            return damaged(
                QStringLiteral("the element %1 holds a picture of an unknown kind").arg(type->code.text()));
        default:
            break;
        }
    }
    return Error{ErrorCode::Unsupported,
                 QStringLiteral("the element %1 holds no samples").arg(element.type.text())};
}

Result<DecodedPicture> IcnsReader::picture(const IcnsElement& element) const {
    const IcnsElementType* type = icnsElementType(element.type);
    if (type == nullptr || type->content == IcnsContent::Mask)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("the element %1 holds no picture").arg(element.type.text())};
    const Result<IcnsPictureInfo> info = checkedInfo(*type, element.data);
    if (!info)
        return info.error();
    const QByteArray bytes = QByteArray::fromRawData(element.data.data(), element.data.size());
    if (info->encoding == IcnsEncoding::Png)
        return readPng(bytes);
    if (info->encoding == IcnsEncoding::Jpeg2000)
        return readJpeg2000(bytes);
    Result<QImage> image = samples(element);
    if (!image)
        return image.error();
    premultiply(image->constBits(), image->bits(),
                static_cast<std::size_t>(image->width()) * static_cast<std::size_t>(image->height()));
    image->reinterpretAsFormat(QImage::Format_RGBA8888_Premultiplied);
    return DecodedPicture{std::move(*image), {}};
}

Result<std::vector<IcnsElement>> IcnsReader::pictureElements() const {
    return unlessMemoryIsShort([&] {
        std::vector<IcnsElement> found;
        // Not QSet: it ends the program where memory is short.
        std::set<quint32> seen;
        for (const IcnsElement& element : m_elements) {
            const IcnsElementType* type = icnsElementType(element.type);
            if (type == nullptr || type->content == IcnsContent::Mask ||
                !seen.insert(element.type.value).second)
                continue;
            found.push_back(element);
        }
        return found;
    });
}

const IcnsElement* IcnsReader::largestElement() const {
    const IcnsElement* largest = nullptr;
    int most = -1;
    // The table lists types with more pixels first: they win a tie.
    for (const IcnsElementType& type : icnsElementTypes()) {
        const IcnsElement* found = type.content == IcnsContent::Mask ? nullptr : element(type.code);
        if (found == nullptr)
            continue;
        const QSize told = icnsPictureInfo(type, found->data).size;
        const QSize size = told.isValid() ? told : type.size();
        const int side = std::max(size.width(), size.height());
        if (side > most) {
            most = side;
            largest = found;
        }
    }
    return largest;
}

Result<DecodedPicture> IcnsReader::largestPicture() const {
    const IcnsElement* largest = largestElement();
    if (largest == nullptr)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("the icns file has no picture of a kind that is read here")};
    return picture(*largest);
}
