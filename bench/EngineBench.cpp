// Measures how long each stage of the engine takes, and how many bytes of pixels it does in a second. Sizes
// are width × height. Sizes that are not powers of two show the cost of a row's last pixels, which do not
// fill a vector.
#include "bench/SourcePicture.h"
#include "imaging/deflate/Deflate.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/formats/JpegReader.h"
#include "imaging/formats/JpegWriter.h"
#include "imaging/formats/TiffReader.h"
#include "imaging/formats/TiffWriter.h"
#include "imaging/icns/IcnsWriter.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/png/PngFilter.h"
#include "imaging/png/PngReader.h"
#include "imaging/png/PngWriter.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace {

using Kind = SourcePicture::Kind;

/// A picture in RGBA8888_Premultiplied, made once for each kind and size.
const QImage& picture(Kind kind, int width, int height) {
    static std::map<std::tuple<Kind, int, int>, QImage> made;
    QImage& found = made[{kind, width, height}];
    if (found.isNull()) {
        const SourcePicture source(kind, width, height);
        QImage raster(width, height, source.hasAlpha() ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
        for (int y = 0; y < height; ++y)
            source.row(y, raster.scanLine(y));
        found = raster.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    }
    return found;
}

const QImage& picture(const benchmark::State& state, Kind kind) {
    return picture(kind, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}

void countPixels(benchmark::State& state, const QImage& raster) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * raster.sizeInBytes());
}

/// Ends the benchmark where its stage failed. Returns whether it failed.
bool hasFailed(benchmark::State& state, bool isDone) {
    if (!isDone)
        state.SkipWithError("it failed");
    return !isDone;
}

template <typename Decode>
void decode(benchmark::State& state, const QImage& raster, const QByteArray& file, const Decode& read) {
    while (state.KeepRunning()) {
        auto decoded = read(file);
        if (hasFailed(state, static_cast<bool>(decoded)))
            return;
        benchmark::DoNotOptimize(decoded);
    }
    countPixels(state, raster);
}

void decodePng(benchmark::State& state, Kind kind) {
    const QImage& raster = picture(state, kind);
    decode(state, raster, *encodePng(raster), [](const QByteArray& file) { return readPng(file); });
}

void decodeJpeg(benchmark::State& state) {
    const QImage& raster = picture(state, Kind::Photo);
    decode(state, raster, *encodeJpeg(raster, 0.9), [](const QByteArray& file) { return readJpeg(file); });
}

/// Converts rows in place. Each run starts from the result of the run before, which takes the same time.
template <typename Convert>
void convertInPlace(benchmark::State& state, const Convert& convert) {
    QImage raster = picture(state, Kind::Logo).copy();
    while (state.KeepRunning()) {
        for (int y = 0; y < raster.height(); ++y)
            convert(raster.scanLine(y), static_cast<std::size_t>(raster.width()));
        benchmark::ClobberMemory();
    }
    countPixels(state, raster);
}

void premultiplyRows(benchmark::State& state) {
    convertInPlace(state, [](std::uint8_t* row, std::size_t pixels) { premultiply(row, row, pixels); });
}

void unpremultiplyRows(benchmark::State& state) {
    convertInPlace(state, [](std::uint8_t* row, std::size_t pixels) { unpremultiply(row, row, pixels); });
}

/// Resamples a picture of the first two arguments' size to the size in the third and fourth. The bytes
/// counted are the source's or the result's, whichever has more.
void resample(benchmark::State& state) {
    const QImage& raster = picture(state, Kind::Logo);
    const QSize size(static_cast<int>(state.range(2)), static_cast<int>(state.range(3)));
    QImage result;
    while (state.KeepRunning()) {
        const Result<QImage> made = stretched(raster, size);
        if (hasFailed(state, made.operator bool()))
            return;
        result = *made;
    }
    countPixels(state, result.sizeInBytes() > raster.sizeInBytes() ? result : raster);
}

/// Draws a picture of the icon's own size: plainly, or clipped to a rounded shape and with a border over it.
void decorate(benchmark::State& state, bool isDecorated) {
    const QImage& raster = picture(state, Kind::Photo);
    const QSizeF size = raster.size();
    Image image(size);
    image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    Path path =
        Path::bezierPathWithRoundedRect(QRectF(QPointF(), size), 0.22 * size.width(), 0.22 * size.height());
    path.setLineWidth(0.05 * size.width());
    while (state.KeepRunning()) {
        Result<GraphicsContext> context = GraphicsContext::create(size, 1);
        const bool isDrawn = context && (!isDecorated || context->addClip(path)) &&
                             context->drawImage(image, QRectF(QPointF(), size)) &&
                             (!isDecorated || context->stroke(path, {0.2, 0.2, 0.2, 1}));
        if (hasFailed(state, isDrawn))
            return;
        benchmark::DoNotOptimize(context);
    }
    countPixels(state, raster);
}

template <typename Encode>
void encode(benchmark::State& state, const QImage& raster, const Encode& write) {
    QByteArray file;
    while (state.KeepRunning()) {
        Result<QByteArray> written = write(raster);
        if (hasFailed(state, written.operator bool()))
            return;
        file = std::move(*written);
    }
    countPixels(state, raster);
    state.counters["bytes"] = static_cast<double>(file.size());
}

void writeTiff(benchmark::State& state) {
    encode(state, picture(state, Kind::Logo), [](const QImage& raster) { return encodeTiff(raster); });
}

void tiffAgain(benchmark::State& state) {
    const QImage& raster = picture(state, Kind::Logo);
    decode(state, raster, *encodeTiff(raster), readTiff);
}

void encodeWholePng(benchmark::State& state, Kind kind) {
    encode(state, picture(state, kind), [](const QImage& raster) { return encodePng(raster); });
}

/// The bytes that go into the compressor.
QByteArray filtered(const QImage& straight, bool isAdaptive) {
    const auto rowBytes = 4 * static_cast<std::size_t>(straight.width());
    QByteArray rows(static_cast<qsizetype>(rowBytes + 1) * straight.height(), Qt::Uninitialized);
    auto* out = reinterpret_cast<std::uint8_t*>(rows.data());
    PngFilter filter(rowBytes, 4);
    for (int y = 0; y < straight.height(); ++y, out += rowBytes + 1) {
        if (isAdaptive) {
            std::memcpy(filter.nextRow(), straight.constScanLine(y), rowBytes);
            filter.adaptive(out);
        } else {
            out[0] = PngFilter::noneType;
            std::memcpy(out + 1, straight.constScanLine(y), rowBytes);
        }
    }
    return rows;
}

void filterRows(benchmark::State& state, bool isAdaptive) {
    const QImage straight = *straightRaster(picture(state, Kind::Photo));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(filtered(straight, isAdaptive));
    countPixels(state, straight);
}

/// Compresses a logo without filters and a photograph with filters, as the PNG writer mostly does.
void compress(benchmark::State& state, Kind kind, Deflate::Method method) {
    const QImage straight = *straightRaster(picture(state, kind));
    const QByteArray rows = filtered(straight, kind == Kind::Photo);
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(rows.constData()),
                          static_cast<std::size_t>(rows.size()));
    QByteArray stream;
    while (state.KeepRunning()) {
        stream.clear();
        if (hasFailed(state, Deflate::append(stream, bytes, method).operator bool()))
            return;
    }
    countPixels(state, straight);
    state.counters["bytes"] = static_cast<double>(stream.size());
}

/// Writes the seven images of an Application.icns.
void writeIcns(benchmark::State& state) {
    std::vector<QImage> images;
    qint64 pixelBytes = 0;
    for (int side = 1024; side >= 16; side /= 2) {
        images.push_back(picture(Kind::Logo, side, side));
        pixelBytes += images.back().sizeInBytes();
    }
    QByteArray file;
    while (state.KeepRunning()) {
        IcnsWriter writer;
        for (const QImage& image : images) {
            const Result<IcnsWriter::Added> added = writer.addImage(image);
            if (hasFailed(state, added && *added == IcnsWriter::Added::Yes))
                return;
        }
        file = writer.data();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * pixelBytes);
    state.counters["bytes"] = static_cast<double>(file.size());
}

/// Sizes from an icon to a large picture.
void sizes(benchmark::internal::Benchmark* stage) {
    stage->Args({29, 29})->Args({180, 180})->Args({511, 257})->Args({1024, 1024})->Args({1021, 1031});
    stage->Unit(benchmark::kMicrosecond);
}

void sourceSizes(benchmark::internal::Benchmark* stage) {
    sizes(stage);
    stage->Args({2048, 2048});
}

void reductions(benchmark::internal::Benchmark* stage) {
    // By half, as for a picture's reduced copies
    stage->Args({2048, 2048, 1024, 1024})->Args({1021, 1031, 511, 516});
    // As for icons
    stage->Args({1024, 1024, 512, 512})->Args({1024, 1024, 180, 180})->Args({512, 512, 167, 167});
    stage->Args({256, 256, 87, 87})->Args({64, 64, 29, 29})->Args({511, 257, 100, 100});
    stage->Unit(benchmark::kMicrosecond);
}

void enlargements(benchmark::internal::Benchmark* stage) {
    stage->Args({512, 512, 1024, 1024})->Args({29, 29, 180, 180})->Args({511, 257, 1024, 1024});
    stage->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(decodePng, logo, Kind::Logo)->Apply(sourceSizes);
BENCHMARK_CAPTURE(decodePng, photo, Kind::Photo)->Apply(sourceSizes);
BENCHMARK(decodeJpeg)->Apply(sourceSizes);
BENCHMARK(premultiplyRows)->Apply(sizes);
BENCHMARK(resample)->Name("reduce")->Apply(reductions);
BENCHMARK(resample)->Name("enlarge")->Apply(enlargements);
BENCHMARK_CAPTURE(decorate, plain, false)->Apply(sizes);
BENCHMARK_CAPTURE(decorate, clip and border, true)->Apply(sizes);
BENCHMARK(writeTiff)->Apply(sizes);
BENCHMARK(tiffAgain)->Name("readTiff")->Apply(sizes);
BENCHMARK(unpremultiplyRows)->Apply(sizes);
BENCHMARK_CAPTURE(filterRows, none, false)->Apply(sizes);
BENCHMARK_CAPTURE(filterRows, adaptive, true)->Apply(sizes);
BENCHMARK_CAPTURE(compress, logo runs, Kind::Logo, Deflate::Method::Runs)->Apply(sizes);
BENCHMARK_CAPTURE(compress, photo runs, Kind::Photo, Deflate::Method::Runs)->Apply(sizes);
BENCHMARK_CAPTURE(compress, logo thorough, Kind::Logo, Deflate::Method::Thorough)->Apply(sizes);
BENCHMARK_CAPTURE(compress, photo quick, Kind::Photo, Deflate::Method::Quick)->Apply(sizes);
BENCHMARK_CAPTURE(encodeWholePng, logo, Kind::Logo)->Name("encodePng/logo")->Apply(sizes);
BENCHMARK_CAPTURE(encodeWholePng, photo, Kind::Photo)->Name("encodePng/photo")->Apply(sizes);
BENCHMARK(writeIcns)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
