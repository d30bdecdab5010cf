#include "platform/PngWriter.h"

#include "platform/EncodedPicture.h"
#include "platform/PngFilter.h"
#include "platform/Premultiplication.h"
#include "platform/StageTimes.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

namespace {

constexpr qsizetype maximumChunk = 0x7fffffff;

void append32(QByteArray& file, quint32 value) {
    const quint32 big = qToBigEndian(value);
    file.append(reinterpret_cast<const char*>(&big), sizeof big);
}

/// Starts a chunk, whose data are to be appended before it is finished.
qsizetype beginChunk(QByteArray& file, const char* type) {
    append32(file, 0);
    file.append(type, 4);
    return file.size();
}

/// Writes the length and the checksum of the chunk whose data begin at `start`.
void finishChunk(QByteArray& file, qsizetype start) {
    qToBigEndian(static_cast<quint32>(file.size() - start), file.data() + start - 8);
    const qsizetype type = start - 4;
    append32(file,
             libdeflate_crc32(0, file.constData() + type, static_cast<std::size_t>(file.size() - type)));
}

void appendChunk(QByteArray& file, const char* type, const char* data, qsizetype length) {
    const qsizetype start = beginChunk(file, type);
    file.append(data, length);
    finishChunk(file, start);
}

/// Bytes without a value until one is written.
struct Buffer {
    explicit Buffer(std::size_t capacity) : bytes(std::make_unique_for_overwrite<std::uint8_t[]>(capacity)) {}

    std::span<const std::uint8_t> filled() const { return {bytes.get(), size}; }

    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;
};

/// A picture's rows as the bytes that are compressed.
class FilteredRows {
  public:
    explicit FilteredRows(const QImage& raster)
        : m_raster(raster), m_rowBytes(4 * static_cast<std::size_t>(raster.width())) {}

    /// The bytes of `rows` rows.
    std::size_t size(int rows) const { return (1 + m_rowBytes) * static_cast<std::size_t>(rows); }

    /// Appends the rows [first, first + count). A row's predecessor counts even where it is not among them.
    void append(Buffer& buffer, int first, int count, PngFilterStrategy strategy) const {
        std::uint8_t* out = buffer.bytes.get() + buffer.size;
        buffer.size += size(count);
        if (strategy == PngFilterStrategy::None) {
            for (int y = first; y < first + count; ++y, out += 1 + m_rowBytes) {
                out[0] = PngFilter::noneType;
                straightRow(y, out + 1);
            }
            return;
        }
        PngFilter filter(m_rowBytes);
        if (first > 0)
            straightRow(first - 1, filter.nextRow());
        for (int y = first; y < first + count; ++y, out += 1 + m_rowBytes) {
            straightRow(y, filter.nextRow());
            filter.adaptive(out);
        }
    }

    Buffer all(PngFilterStrategy strategy) const {
        Buffer buffer(size(m_raster.height()));
        append(buffer, 0, m_raster.height(), strategy);
        return buffer;
    }

    /// Bands of rows that lie evenly spread over the picture; all of a small picture.
    Buffer sample(PngFilterStrategy strategy) const {
        constexpr int bands = 6;
        constexpr int smallHeight = 24;
        if (m_raster.height() <= smallHeight)
            return all(strategy);
        constexpr int bandRows = 4;
        Buffer buffer(size(bands * bandRows));
        for (int band = 0; band < bands; ++band)
            append(buffer, (m_raster.height() - bandRows) * band / (bands - 1), bandRows, strategy);
        return buffer;
    }

  private:
    void straightRow(int y, std::uint8_t* out) const {
        if (m_raster.format() == QImage::Format_RGBA8888)
            std::memcpy(out, m_raster.constScanLine(y), m_rowBytes);
        else
            unpremultiply(m_raster.constScanLine(y), out, m_rowBytes / 4);
    }

    const QImage& m_raster;
    std::size_t m_rowBytes;
};

/// A sample filtered one way, and what the quick method leaves of it.
struct Trial {
    PngFilterStrategy filter;
    Buffer sample;
    std::size_t length;

    double partLeft() const { return static_cast<double>(length) / static_cast<double>(sample.size); }
};

/// None where memory is short.
std::optional<Trial> trial(const FilteredRows& rows, PngFilterStrategy filter) {
    Buffer sample = rows.sample(filter);
    const std::size_t length = Deflate::length(sample.filled(), Deflate::Method::Quick);
    if (length == 0)
        return std::nullopt;
    return Trial{filter, std::move(sample), length};
}

/// The filter that leaves less, unless one is given; none where memory is short.
std::optional<Trial> betterTrial(const FilteredRows& rows, std::optional<PngFilterStrategy> filter) {
    if (filter)
        return trial(rows, *filter);
    std::optional<Trial> plain = trial(rows, PngFilterStrategy::None);
    std::optional<Trial> adaptive = trial(rows, PngFilterStrategy::Adaptive);
    if (!plain || !adaptive)
        return std::nullopt;
    return adaptive->length < plain->length ? std::move(adaptive) : std::move(plain);
}

/// None where memory is short.
std::optional<Deflate::Method> methodFor(const Trial& trial) {
    // Where less is left there are more repetitions to be found.
    constexpr double dense = 0.3;
    if (trial.partLeft() <= dense)
        return Deflate::Method::Thorough;
    const std::size_t asBytes = Deflate::length(trial.sample.filled(), Deflate::Method::Bytes);
    if (asBytes == 0)
        return std::nullopt;
    constexpr double allowedMore = 1.05;
    return static_cast<double>(asBytes) <= allowedMore * static_cast<double>(trial.length)
               ? Deflate::Method::Bytes
               : Deflate::Method::Quick;
}

/// Chooses what is left open by what is left of a sample. False where memory is short.
bool choose(const FilteredRows& rows, PngOptions& options) {
    if (options.filter && options.method)
        return true;
    const StageTimes::Timer timer(Stage::Choose);
    const std::optional<Trial> better = betterTrial(rows, options.filter);
    if (!better)
        return false;
    options.filter = better->filter;
    if (!options.method)
        options.method = methodFor(*better);
    return options.method.has_value();
}

/// The picture's rows as a zlib stream in one chunk, or in several where they do not fit into one.
bool appendPixels(QByteArray& png, const QImage& raster, PngOptions options) {
    const FilteredRows rows(raster);
    if (!choose(rows, options))
        return false;
    const auto filter = [&] {
        const StageTimes::Timer timer(Stage::Filter);
        return rows.all(*options.filter);
    };
    const Buffer filtered = filter();
    const qsizetype start = beginChunk(png, "IDAT");
    {
        const StageTimes::Timer timer(Stage::Compress);
        if (!Deflate::append(png, filtered.filled(), *options.method))
            return false;
    }
    if (png.size() - start <= maximumChunk) {
        finishChunk(png, start);
        return true;
    }
    const QByteArray stream = png.sliced(start);
    png.truncate(start - 8);
    for (qsizetype at = 0; at < stream.size(); at += maximumChunk)
        appendChunk(png, "IDAT", stream.constData() + at, std::min(maximumChunk, stream.size() - at));
    return true;
}

QByteArray file(const QImage& raster, const PngOptions& options) {
    QByteArray png;
    png.append("\x89PNG\r\n\x1a\n", 8);
    QByteArray header;
    append32(header, static_cast<quint32>(raster.width()));
    append32(header, static_cast<quint32>(raster.height()));
    // 8 bits, RGBA, deflate, the five filters, not interlaced
    header.append("\x08\x06\x00\x00\x00", 5);
    appendChunk(png, "IHDR", header.constData(), header.size());
    appendChunk(png, "sRGB", "\0", 1);
    if (!appendPixels(png, raster, options))
        return {};
    appendChunk(png, "IEND", nullptr, 0);
    return png;
}

} // namespace

QByteArray encodePng(const QImage& raster, const PngOptions& options) {
    return encodedPicture(raster, [&] { return file(raster, options); });
}
