#include "imaging/image/BitmapImageRep.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Raster.h"
#include "imaging/pixels/Resampler.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr int bitsPerByte = 8;

BitmapLayout layoutOf(const QImage& raster) {
    BitmapLayout layout;
    layout.pixelsWide = raster.width();
    layout.pixelsHigh = raster.height();
    layout.bytesPerRow = raster.bytesPerLine();
    layout.bitsPerPixel = 32;
    return layout;
}

/// `layout` with values in place of its zeros. Malformed where no bitmap can have this shape.
Result<BitmapLayout> completed(BitmapLayout layout) {
    const Error malformed{ErrorCode::Malformed, QStringLiteral("no bitmap has this shape")};
    const bool hasSamples = layout.samplesPerPixel >= 1 && layout.samplesPerPixel <= 4;
    const std::array depths{1, 2, 4, 8, 16};
    const bool hasDepth = std::ranges::find(depths, layout.bitsPerSample) != depths.end();
    if (layout.pixelsWide <= 0 || layout.pixelsHigh <= 0 || !hasSamples || !hasDepth)
        return malformed;
    if (layout.hasAlpha && layout.samplesPerPixel % 2 == 1)
        return malformed;
    const int together = layout.isPlanar ? 1 : layout.samplesPerPixel;
    if (layout.bitsPerPixel == 0)
        layout.bitsPerPixel = layout.bitsPerSample * together;
    if (layout.bitsPerPixel < layout.bitsPerSample * together || layout.bitsPerPixel > 64)
        return malformed;
    const qsizetype needed =
        (static_cast<qsizetype>(layout.pixelsWide) * layout.bitsPerPixel + bitsPerByte - 1) / bitsPerByte;
    if (layout.bytesPerRow == 0)
        layout.bytesPerRow = needed;
    constexpr qsizetype longestRow = qsizetype{1} << 31;
    if (layout.bytesPerRow < needed || layout.bytesPerRow > longestRow)
        return malformed;
    // A sample of less than a byte may not lie in two bytes.
    const bool straddles =
        layout.bitsPerSample < bitsPerByte && layout.bitsPerPixel % layout.bitsPerSample != 0;
    // More than any memory holds.
    constexpr qsizetype mostBytes = qsizetype{1} << 40;
    const int planes = layout.isPlanar ? layout.samplesPerPixel : 1;
    if (straddles || layout.pixelsHigh > mostBytes / layout.bytesPerRow / planes)
        return malformed;
    return layout;
}

} // namespace

qsizetype BitmapLayout::byteCount() const {
    return bytesPerRow * pixelsHigh * (isPlanar ? samplesPerPixel : 1);
}

BitmapImageRep::BitmapImageRep(QImage raster) : m_layout(layoutOf(raster)), m_raster(std::move(raster)) {}

BitmapImageRep::BitmapImageRep(const BitmapLayout& layout, QByteArray samples)
    : m_layout(layout), m_samples(std::move(samples)) {}

Result<std::unique_ptr<BitmapImageRep>> BitmapImageRep::initWithBitmapData(const BitmapLayout& layout,
                                                                           const QByteArray& samples) {
    const Result<BitmapLayout> whole = completed(layout);
    if (!whole)
        return whole.error();
    const qsizetype count = whole->byteCount();
    if (!samples.isEmpty() && samples.size() < count)
        return Error{ErrorCode::Malformed, QStringLiteral("there are fewer samples than the bitmap has")};
    return unlessMemoryIsShort([&] {
        QByteArray stored =
            samples.isEmpty() ? QByteArray(count, '\0') : QByteArray(samples.constData(), count);
        // Not std::make_unique: the constructor is protected.
        return std::unique_ptr<BitmapImageRep>(new BitmapImageRep(*whole, std::move(stored)));
    });
}

QByteArrayView BitmapImageRep::bitmapData() const {
    if (!m_raster.isNull())
        return {reinterpret_cast<const char*>(m_raster.constBits()), m_raster.sizeInBytes()};
    return m_samples;
}

/// A sample of a pixel as 8 bits. `index` counts the samples in the order in which they are stored.
int BitmapImageRep::sample(int x, int y, int index) const {
    const auto* bytes = reinterpret_cast<const uchar*>(bitmapData().data());
    const qsizetype plane = m_layout.isPlanar ? index * m_layout.bytesPerRow * m_layout.pixelsHigh : 0;
    const uchar* row = bytes + plane + y * m_layout.bytesPerRow;
    const qsizetype bit = static_cast<qsizetype>(x) * m_layout.bitsPerPixel +
                          (m_layout.isPlanar ? 0 : static_cast<qsizetype>(index) * m_layout.bitsPerSample);
    const uchar byte = row[bit / bitsPerByte];
    if (m_layout.bitsPerSample >= bitsPerByte)
        return byte; // of 16 bits the upper 8, which come first
    const int shift = bitsPerByte - m_layout.bitsPerSample - static_cast<int>(bit % bitsPerByte);
    const int largest = (1 << m_layout.bitsPerSample) - 1;
    return ((byte >> shift) & largest) * 255 / largest;
}

Result<QImage> BitmapImageRep::raster() const {
    if (!m_raster.isNull())
        return m_raster;
    Result<QImage> image = newRaster(pixelSize(), QImage::Format_RGBA8888_Premultiplied);
    if (!image)
        return image;
    const bool isGrey = m_layout.samplesPerPixel <= 2;
    const int colors = isGrey ? 1 : 3;
    const int first = m_layout.hasAlpha && m_layout.isAlphaFirst ? 1 : 0;
    const int alphaAt = m_layout.isAlphaFirst ? 0 : colors;
    for (int y = 0; y < m_layout.pixelsHigh; ++y) {
        uchar* out = image->scanLine(y);
        for (int x = 0; x < m_layout.pixelsWide; ++x, out += 4) {
            for (int i = 0; i < 3; ++i)
                out[i] = static_cast<uchar>(sample(x, y, first + (isGrey ? 0 : i)));
            out[3] = m_layout.hasAlpha ? static_cast<uchar>(sample(x, y, alphaAt)) : 255;
            if (m_layout.isPremultiplied) {
                for (int i = 0; i < 3; ++i)
                    out[i] = std::min(out[i], out[3]);
            }
        }
    }
    if (m_layout.hasAlpha && !m_layout.isPremultiplied)
        premultiply(image->constBits(), image->bits(),
                    static_cast<std::size_t>(m_layout.pixelsWide) *
                        static_cast<std::size_t>(m_layout.pixelsHigh));
    return image;
}

Result<QImage> BitmapImageRep::rendered(AxisMapping x, AxisMapping y) const {
    Result<QImage> source = raster();
    if (!source)
        return source;
    x.sourceLength = source->width();
    y.sourceLength = source->height();
    return resampled(*source, x, y);
}

Result<RasterImage> BitmapImageRep::CGImage() const {
    return unlessMemoryIsShort([&] { return packedImage(); });
}

RasterImage BitmapImageRep::packedImage() const {
    RasterImage image{m_layout.pixelsWide, m_layout.pixelsHigh, AlphaInfo::None, {}};
    if (m_layout.hasAlpha)
        image.alphaInfo = m_layout.isAlphaFirst
                              ? (m_layout.isPremultiplied ? AlphaInfo::PremultipliedFirst : AlphaInfo::First)
                              : (m_layout.isPremultiplied ? AlphaInfo::PremultipliedLast : AlphaInfo::Last);
    else if (m_layout.samplesPerPixel == 4 || (m_layout.samplesPerPixel == 3 && m_layout.bitsPerPixel == 32))
        image.alphaInfo = m_layout.isAlphaFirst ? AlphaInfo::NoneSkipFirst : AlphaInfo::NoneSkipLast;
    const qsizetype packed =
        (static_cast<qsizetype>(m_layout.pixelsWide) * m_layout.bitsPerPixel + bitsPerByte - 1) / bitsPerByte;
    const qsizetype rows =
        qsizetype{m_layout.pixelsHigh} * (m_layout.isPlanar ? m_layout.samplesPerPixel : 1);
    image.bytes = QByteArray(packed * rows, Qt::Uninitialized);
    for (qsizetype y = 0; y < rows; ++y)
        std::memcpy(image.bytes.data() + y * packed, bitmapData().data() + y * m_layout.bytesPerRow,
                    static_cast<std::size_t>(packed));
    if (m_layout.bitsPerPixel == 32 && m_layout.bitsPerSample == bitsPerByte && !m_layout.isPlanar) {
        for (qsizetype i = 0; i < image.bytes.size(); i += 4)
            std::reverse(image.bytes.data() + i, image.bytes.data() + i + 4);
    }
    return image;
}
