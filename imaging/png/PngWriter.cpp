#include "imaging/png/PngWriter.h"

#include "base/ByteWriter.h"
#include "base/StageTimes.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/png/FilteredRows.h"
#include "imaging/png/PngChoice.h"
#include "imaging/png/PngHeader.h"
#include "imaging/png/PngSamples.h"
#include "imaging/png/SmallestPng.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>

namespace {

constexpr qsizetype maximumChunk = 0x7fffffff;

/// Starts a chunk and returns where its data begin. Append the data, then call `finishChunk`.
qsizetype beginChunk(QByteArray& file, FourCharCode type) {
    ByteWriter(file).bigEndian<quint32>(0).fourCharCode(type);
    return file.size();
}

/// Writes the length and the checksum of the chunk whose data begin at `start`.
void finishChunk(QByteArray& file, qsizetype start) {
    ByteWriter writer(file);
    writer.replaceBigEndian<quint32>(start - 8, static_cast<quint32>(file.size() - start));
    const QByteArrayView checked = QByteArrayView(file).sliced(start - 4);
    writer.bigEndian<quint32>(libdeflate_crc32(0, checked.data(), static_cast<std::size_t>(checked.size())));
}

void appendChunk(QByteArray& file, FourCharCode type, QByteArrayView data) {
    const qsizetype start = beginChunk(file, type);
    file.append(data);
    finishChunk(file, start);
}

/// Filters and compresses part by part: each part is compressed while it is still in the processor's caches.
Result<Done> appendInParts(QByteArray& png, const FilteredRows& rows, int height, const PngChoice& choice) {
    constexpr std::size_t usualPart = std::size_t{64} << 10;
    const int rowsOfPart = std::max(1, static_cast<int>(usualPart / rows.size(1)));
    // All room is reserved at once: growing by doubling would touch three times the memory.
    const std::size_t expected = choice.expectedBytes + choice.expectedBytes / 8;
    const std::size_t room = RunCoder::bound(RunBlock::mostBytes + rows.size(rowsOfPart));
    png.reserve(png.size() + static_cast<qsizetype>(std::min(expected, rows.size(height)) + room));
    const auto stream = Deflate::RunStream::create(png, rows.size(height), rows.size(rowsOfPart));
    if (!stream)
        return stream.error();
    FilteredRows::Sequence sequence(rows, choice.coding.filter, 0);
    for (int y = 0; y < height; y += rowsOfPart) {
        const int count = std::min(rowsOfPart, height - y);
        {
            const StageTimes::Timer timer(Stage::Filter);
            for (int i = 0; i < count; ++i)
                sequence.next((*stream)->nextPart() + rows.size(i));
        }
        const StageTimes::Timer timer(Stage::Compress);
        if (Result<Done> added = (*stream)->addPart(rows.size(count)); !added)
            return added;
    }
    const StageTimes::Timer timer(Stage::Compress);
    return (*stream)->finish();
}

Result<Done> appendAtOnce(QByteArray& png, const FilteredRows& rows, const PngChoice& choice) {
    const auto filter = [&] {
        const StageTimes::Timer timer(Stage::Filter);
        return rows.all(choice.coding.filter);
    };
    const FilteredRows::Buffer filtered = filter();
    const StageTimes::Timer timer(Stage::Compress);
    return Deflate::append(png, filtered.filled(), choice.coding.method);
}

/// Appends what `append` writes as one chunk of pixels, or as several where one is too short.
template <typename Append>
Result<Done> appendPixelChunks(QByteArray& png, const Append& append) {
    const qsizetype start = beginChunk(png, PngHeader::pixelsType);
    if (Result<Done> appended = append(); !appended)
        return appended;
    if (png.size() - start <= maximumChunk) {
        finishChunk(png, start);
        return Done{};
    }
    const QByteArray stream = png.sliced(start);
    png.truncate(start - 8);
    for (qsizetype at = 0; at < stream.size(); at += maximumChunk)
        appendChunk(png, PngHeader::pixelsType,
                    QByteArrayView(stream).sliced(at, std::min(maximumChunk, stream.size() - at)));
    return Done{};
}

/// Filters and compresses the rows as it is chosen for them.
Result<Done> appendChosen(QByteArray& png, const QImage& raster, const PngOptions& options) {
    const FilteredRows rows(raster, options.channels);
    const Result<PngChoice> choice = PngChoice::of(rows, raster.height(), options);
    if (!choice)
        return choice.error();
    return appendPixelChunks(png, [&] {
        return choice->coding.method == Deflate::Method::Runs
                   ? appendInParts(png, rows, raster.height(), *choice)
                   : appendAtOnce(png, rows, *choice);
    });
}

/// Appends the signature, the header and the colour space.
void appendStart(QByteArray& png, const QImage& raster, int bitDepth, PngSamples::ColorType colorType) {
    png.append(PngHeader::signature);
    QByteArray header;
    ByteWriter(header)
        .bigEndian<quint32>(static_cast<quint32>(raster.width()))
        .bigEndian<quint32>(static_cast<quint32>(raster.height()))
        .bigEndian<quint8>(static_cast<quint8>(bitDepth))
        .bigEndian<quint8>(colorType)
        .bytes(QByteArrayView("\0\0\0", 3)); // deflate, the five filters, not interlaced
    appendChunk(png, PngHeader::headerType, header);
    appendChunk(png, "sRGB", QByteArrayView("\0", 1));
}

Result<QByteArray> file(const QImage& raster, const PngOptions& options) {
    QByteArray png;
    appendStart(png, raster, 8, options.channels == PngChannels::Rgb ? PngSamples::Rgb : PngSamples::Rgba);
    if (const Result<Done> appended = appendChosen(png, raster, options); !appended)
        return appended.error();
    appendChunk(png, PngHeader::endType, {});
    return png;
}

Result<QByteArray> smallestFile(const QImage& raster, PngChannels channels) {
    const Result<PngPixels> pixels = smallestPngPixels(raster, channels);
    if (!pixels)
        return pixels.error();
    const PngSamples& samples = pixels->samples;
    QByteArray png;
    appendStart(png, raster, samples.bitDepth, samples.colorType);
    if (!samples.palette.isEmpty())
        appendChunk(png, "PLTE", samples.palette);
    if (!samples.alphas.isEmpty())
        appendChunk(png, "tRNS", samples.alphas);
    const auto append = [&] {
        png.append(pixels->stream);
        return Result<Done>(Done{});
    };
    if (const Result<Done> appended = appendPixelChunks(png, append); !appended)
        return appended.error();
    appendChunk(png, PngHeader::endType, {});
    return png;
}

} // namespace

Result<QByteArray> encodePng(const QImage& raster, const PngOptions& options) {
    return encodedPicture(raster, [&] {
        return options.effort == PngEffort::Best ? smallestFile(raster, options.channels)
                                                 : file(raster, options);
    });
}
