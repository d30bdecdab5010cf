#include "imaging/svg/SvgDocument.h"

#include "base/ShortMemory.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/LibRsvg.h"
#include "imaging/svg/SvgGuard.h"

#include <QRectF>

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>

namespace {

Error damaged(const QString& detail) {
    return PictureReader::damaged(QStringLiteral("SVG"), detail);
}

/// Unpacks a gzip file (RFC 1952).
Result<QByteArray> gunzip(const QByteArray& bytes) {
    QByteArray out;
    QByteArray block(1 << 16, Qt::Uninitialized);
    z_stream stream{};
    constexpr int gzipWindow = 15 + 16;
    if (inflateInit2(&stream, gzipWindow) != Z_OK)
        return outOfMemory();
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> ended(&stream, inflateEnd);
    stream.next_in =
        reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData())); // NOLINT: zlib does not write there
    stream.avail_in = static_cast<uInt>(std::min<qsizetype>(bytes.size(), SvgGuard::maximumBytes));
    int status = Z_OK;
    while (status == Z_OK && out.size() <= SvgGuard::maximumBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(block.data());
        stream.avail_out = static_cast<uInt>(block.size());
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(block.constData(), block.size() - static_cast<qsizetype>(stream.avail_out));
    }
    if (status == Z_OK)
        return Error{ErrorCode::TooLarge, QStringLiteral("the SVG document is larger than 64 MiB")};
    if (status == Z_MEM_ERROR)
        return outOfMemory();
    if (status != Z_STREAM_END)
        return damaged(QStringLiteral("it can't be unpacked"));
    return out;
}

/// The loaded library. fromBytes has checked that there is one.
const LibRsvg& rsvg() {
    return *LibRsvg::loaded();
}

struct FreeError {
    void operator()(GError* error) const { rsvg().freeError(error); }
};
using GErrorPointer = std::unique_ptr<GError, FreeError>;

QString text(const GError* error) {
    return error != nullptr ? QString::fromUtf8(error->message).simplified()
                            : QStringLiteral("it can't be drawn");
}

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { rsvg().destroySurface(surface); }
};
struct DestroyCairo {
    void operator()(cairo_t* cairo) const { rsvg().destroyContext(cairo); }
};

/// Makes librsvg start its pool of threads for filters. It starts them at the first filter that it draws; one
/// is drawn here while a document is loaded, so a render starts no thread.
void startFilterThreads() {
    static bool isDone = false;
    if (std::exchange(isDone, true))
        return;
    static constexpr char blurred[] =
        "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='96'><filter id='b'>"
        "<feGaussianBlur stdDeviation='9'/></filter>"
        "<rect x='20' y='20' width='50' height='50' filter='url(#b)'/></svg>";
    RsvgHandle* handle =
        rsvg().newFromData(reinterpret_cast<const guint8*>(blurred), sizeof blurred - 1, nullptr);
    if (handle == nullptr)
        return;
    constexpr int side = 96;
    const std::unique_ptr<cairo_surface_t, DestroySurface> surface(
        rsvg().createSurface(CAIRO_FORMAT_ARGB32, side, side));
    const std::unique_ptr<cairo_t, DestroyCairo> cairo(rsvg().createContext(surface.get()));
    const RsvgRectangle page{0, 0, side, side};
    rsvg().renderDocument(handle, cairo.get(), &page, nullptr);
    rsvg().unref(handle);
}

/// Turns Cairo's pixels, words of alpha, red, green and blue, into bytes of red, green, blue and alpha.
void toRgba(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        uchar* pixel = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            quint32 word = 0;
            std::memcpy(&word, pixel, 4);
            pixel[0] = static_cast<uchar>(word >> 16);
            pixel[1] = static_cast<uchar>(word >> 8);
            pixel[2] = static_cast<uchar>(word);
            pixel[3] = static_cast<uchar>(word >> 24);
        }
    }
}

} // namespace

struct SvgDocument::Handle {
    explicit Handle(RsvgHandle* owned) : handle(owned) {
        constexpr double cssPixelsPerInch = 96;
        rsvg().setDpi(handle, cssPixelsPerInch);
    }
    ~Handle() { rsvg().unref(handle); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    /// The document's size, empty where it has none.
    QSizeF ownSize() const {
        gdouble width = 0;
        gdouble height = 0;
        if (rsvg().sizeInPixels(handle, &width, &height) != FALSE)
            return {width, height};
        gboolean hasWidth = FALSE;
        gboolean hasHeight = FALSE;
        gboolean hasViewBox = FALSE;
        RsvgLength ignored{};
        RsvgRectangle viewBox{};
        rsvg().dimensions(handle, &hasWidth, &ignored, &hasHeight, &ignored, &hasViewBox, &viewBox);
        if (hasViewBox != FALSE)
            return {viewBox.width, viewBox.height};
        // Without a size and a view box: as far as the drawing reaches on a page of 512 × 512.
        const RsvgRectangle page{0, 0, 512, 512};
        RsvgRectangle ink{};
        RsvgRectangle logical{};
        if (rsvg().geometryForLayer(handle, nullptr, &page, &ink, &logical, nullptr) != FALSE)
            return {ink.x + ink.width, ink.y + ink.height};
        return {};
    }

    RsvgHandle* handle;
};

Result<QByteArray> SvgDocument::inflated(const QByteArray& bytes) {
    return bytes.startsWith("\x1f\x8b") ? unlessMemoryIsShort([&] { return gunzip(bytes); }) : bytes;
}

Result<std::shared_ptr<const SvgDocument>> SvgDocument::fromBytes(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return parsed(bytes); });
}

Result<std::shared_ptr<const SvgDocument>> SvgDocument::parsed(const QByteArray& bytes) {
    const Result<QByteArray> inflatedBytes = inflated(bytes);
    if (!inflatedBytes)
        return inflatedBytes.error();
    const QByteArray& document = *inflatedBytes;
    if (const Result<Done> allowed = SvgGuard::check(document); !allowed)
        return allowed.error();
    if (!LibRsvg::loaded())
        return LibRsvg::loaded().error();
    // A document in UTF-16, for example, contains neither word, and may have filters.
    if (document.contains("filter") || !document.contains("svg"))
        startFilterThreads();
    GError* rawError = nullptr;
    RsvgHandle* handle = rsvg().newFromData(reinterpret_cast<const guint8*>(document.constData()),
                                            static_cast<gsize>(document.size()), &rawError);
    const GErrorPointer error(rawError);
    if (handle == nullptr)
        return damaged(text(error.get()));
    std::shared_ptr<SvgDocument> svg(new SvgDocument(std::make_shared<Handle>(handle)));
    svg->m_size = svg->m_handle->ownSize();
    const double width = svg->m_size.width();
    const double height = svg->m_size.height();
    // A smaller document would draw nothing.
    constexpr double smallest = 1e-3;
    if (!(width >= smallest) || !(height >= smallest) || !std::isfinite(width) || !std::isfinite(height))
        return damaged(QStringLiteral("its size is empty"));
    if (const Result<Done> drawn = svg->checkDrawing(); !drawn)
        return drawn.error();
    return std::shared_ptr<const SvgDocument>(std::move(svg));
}

Result<Done> SvgDocument::draw(QImage& target, const QRectF& viewport) const {
    target.fill(0);
    const std::unique_ptr<cairo_surface_t, DestroySurface> surface(
        rsvg().createSurfaceForData(target.bits(), CAIRO_FORMAT_ARGB32, target.width(), target.height(),
                                    static_cast<int>(target.bytesPerLine())));
    const std::unique_ptr<cairo_t, DestroyCairo> cairo(rsvg().createContext(surface.get()));
    // The document at its own size, stretched as a whole: its aspect ratio is not kept.
    rsvg().translate(cairo.get(), viewport.x(), viewport.y());
    rsvg().scale(cairo.get(), viewport.width() / m_size.width(), viewport.height() / m_size.height());
    const RsvgRectangle page{0, 0, m_size.width(), m_size.height()};
    GError* rawError = nullptr;
    const RefusedMemory memory;
    const gboolean isDrawn = rsvg().renderDocument(m_handle->handle, cairo.get(), &page, &rawError);
    // librsvg has one code for all errors.
    const bool isMemoryShort =
        isDrawn == FALSE && (memory.wasSeen() || rsvg().contextStatus(cairo.get()) == CAIRO_STATUS_NO_MEMORY);
    const GErrorPointer error(rawError);
    rsvg().finishSurface(surface.get());
    if (isMemoryShort)
        return noMemoryForPixels(target.width(), target.height());
    if (isDrawn == FALSE)
        return damaged(text(error.get()));
    toRgba(target);
    return Done{};
}

Result<Done> SvgDocument::checkDrawing() const {
    constexpr int probeSide = 16;
    Result<QImage> probe = newRaster(QSize(probeSide, probeSide), QImage::Format_RGBA8888_Premultiplied);
    if (!probe)
        return probe.error();
    return draw(*probe, QRectF(0, 0, probeSide, probeSide));
}

Result<QImage> SvgDocument::rendered(AxisMapping x, AxisMapping y) const {
    Result<QImage> target =
        newRaster(QSize(x.targetLength, y.targetLength), QImage::Format_RGBA8888_Premultiplied);
    if (!target)
        return target;
    const Result<Done> drawn = draw(*target, QRectF(x.origin, y.origin, x.length, y.length));
    if (!drawn)
        return drawn.error();
    return target;
}
