#include "platform/PngWriter.h"

#include "platform/EncodedPicture.h"
#include "platform/PngFilter.h"
#include "platform/Unpremultiply.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr qsizetype maximumChunk = 0x7fffffff;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

void append32(QByteArray& file, quint32 value) {
    const quint32 big = qToBigEndian(value);
    file.append(reinterpret_cast<const char*>(&big), sizeof big);
}

void appendChunk(QByteArray& file, const char* type, const char* data, qsizetype length) {
    append32(file, static_cast<quint32>(length));
    const qsizetype start = file.size();
    file.append(type, 4);
    file.append(data, length);
    append32(file,
             libdeflate_crc32(0, file.constData() + start, static_cast<std::size_t>(file.size() - start)));
}

/// A row's straight colours.
void straightRow(const QImage& raster, int y, std::uint8_t* out) {
    const auto pixels = static_cast<std::size_t>(raster.width());
    if (raster.format() == QImage::Format_RGBA8888)
        std::memcpy(out, raster.constScanLine(y), 4 * pixels);
    else
        unpremultiply(raster.constScanLine(y), out, pixels);
}

/// The rows [first, first + count) of a raster as the bytes that go into the compressor. A row's predecessor
/// counts even where it is not among them.
std::vector<std::uint8_t> filteredRows(const QImage& raster, int first, int count,
                                       PngFilterStrategy strategy) {
    const std::size_t rowBytes = 4 * static_cast<std::size_t>(raster.width());
    std::vector<std::uint8_t> bytes((rowBytes + 1) * static_cast<std::size_t>(count));
    std::vector<std::uint8_t> row(rowBytes);
    std::vector<std::uint8_t> above(rowBytes);
    PngFilter filter(rowBytes);
    if (first > 0 && strategy == PngFilterStrategy::Adaptive)
        straightRow(raster, first - 1, above.data());
    std::uint8_t* out = bytes.data();
    for (int y = first; y < first + count; ++y, out += rowBytes + 1) {
        straightRow(raster, y, row.data());
        if (strategy == PngFilterStrategy::Adaptive)
            filter.adaptive(row.data(), y > 0 ? above.data() : nullptr, out);
        else
            PngFilter::none(row.data(), rowBytes, out);
        row.swap(above);
    }
    return bytes;
}

/// `rows` as a zlib stream; empty where memory is short.
std::vector<std::uint8_t> compressed(const std::vector<std::uint8_t>& rows, int level) {
    const Compressor compressor(libdeflate_alloc_compressor(level));
    if (!compressor)
        return {};
    std::vector<std::uint8_t> stream(libdeflate_zlib_compress_bound(compressor.get(), rows.size()));
    stream.resize(
        libdeflate_zlib_compress(compressor.get(), rows.data(), rows.size(), stream.data(), stream.size()));
    return stream;
}

/// Compares the strategies on bands of rows spread evenly over the picture.
PngFilterStrategy betterOnSample(const QImage& raster) {
    constexpr int bands = 6;
    constexpr int bandRows = 16;
    constexpr int quickLevel = 3;
    if (raster.height() < bands * bandRows)
        return PngFilterStrategy::Adaptive;
    std::size_t none = 0;
    std::size_t adaptive = 0;
    for (int band = 0; band < bands; ++band) {
        const int first = (raster.height() - bandRows) * band / (bands - 1);
        none += compressed(filteredRows(raster, first, bandRows, PngFilterStrategy::None), quickLevel).size();
        adaptive +=
            compressed(filteredRows(raster, first, bandRows, PngFilterStrategy::Adaptive), quickLevel).size();
    }
    return adaptive < none ? PngFilterStrategy::Adaptive : PngFilterStrategy::None;
}

/// The picture's rows, filtered and compressed.
std::vector<std::uint8_t> pixelStream(const QImage& raster, const PngOptions& options) {
    const auto withFilter = [&](PngFilterStrategy filter) {
        return compressed(filteredRows(raster, 0, raster.height(), filter), options.level);
    };
    if (options.filter != PngFilterStrategy::Choose)
        return withFilter(options.filter);
    // A small picture takes less time to try than to sample.
    constexpr qsizetype smallRaster = 256 << 10;
    if (raster.sizeInBytes() > smallRaster)
        return withFilter(betterOnSample(raster));
    std::vector<std::uint8_t> none = withFilter(PngFilterStrategy::None);
    std::vector<std::uint8_t> adaptive = withFilter(PngFilterStrategy::Adaptive);
    return adaptive.size() < none.size() ? adaptive : none;
}

QByteArray file(const QImage& raster, const PngOptions& options) {
    const std::vector<std::uint8_t> stream = pixelStream(raster, options);
    if (stream.empty())
        return {};
    const auto* data = reinterpret_cast<const char*>(stream.data());
    const auto length = static_cast<qsizetype>(stream.size());
    QByteArray png;
    png.reserve(length + 128);
    png.append("\x89PNG\r\n\x1a\n", 8);
    QByteArray header;
    append32(header, static_cast<quint32>(raster.width()));
    append32(header, static_cast<quint32>(raster.height()));
    // 8 bits, RGBA, deflate, the five filters, not interlaced
    header.append("\x08\x06\x00\x00\x00", 5);
    appendChunk(png, "IHDR", header.constData(), header.size());
    appendChunk(png, "sRGB", "\0", 1);
    for (qsizetype start = 0; start < length; start += maximumChunk)
        appendChunk(png, "IDAT", data + start, std::min(maximumChunk, length - start));
    appendChunk(png, "IEND", nullptr, 0);
    return png;
}

} // namespace

QByteArray encodePng(const QImage& raster, const PngOptions& options) {
    return encodedPicture(raster, [&] { return file(raster, options); });
}
