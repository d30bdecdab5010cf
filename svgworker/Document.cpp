#include "svgworker/Document.h"

#include <librsvg/rsvg.h>

#include <cmath>
#include <cstring>
#include <utility>

namespace {

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};
struct FreeError {
    void operator()(GError* error) const { g_error_free(error); }
};
struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyCairo {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};
using ErrorPointer = std::unique_ptr<GError, FreeError>;

/// The library has one code for all of its errors; its limits are told apart by their words.
DrawingFailure failureOf(const GError* error) {
    if (error == nullptr)
        return {SvgPipe::Refusal::Damaged, "it can't be drawn"};
    const std::string text = error->message;
    for (const char* words : {"cannot load more than", "exceeded more than", "maximum", "nesting", "too deep",
                              "Excessive depth", "huge"}) {
        if (text.find(words) != std::string::npos)
            return {SvgPipe::Refusal::Limit, text};
    }
    return {SvgPipe::Refusal::Damaged, text};
}

DrawingFailure failureOf(cairo_status_t status) {
    if (status == CAIRO_STATUS_NO_MEMORY)
        return {SvgPipe::Refusal::Memory, {}};
    return {SvgPipe::Refusal::Limit, cairo_status_to_string(status)};
}

/// Turns Cairo's pixels, words of alpha, red, green and blue, into bytes of red, green, blue and alpha.
void toRgba(std::uint8_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, pixels += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, pixels, sizeof word);
        pixels[0] = static_cast<std::uint8_t>(word >> 16);
        pixels[1] = static_cast<std::uint8_t>(word >> 8);
        pixels[2] = static_cast<std::uint8_t>(word);
        pixels[3] = static_cast<std::uint8_t>(word >> 24);
    }
}

} // namespace

struct Document::Handle {
    std::unique_ptr<RsvgHandle, Unreference> rsvg;

    /// The document's size, empty where it has none.
    std::pair<double, double> ownSize() const {
        gdouble width = 0;
        gdouble height = 0;
        if (rsvg_handle_get_intrinsic_size_in_pixels(rsvg.get(), &width, &height) != FALSE)
            return {width, height};
        gboolean hasWidth = FALSE;
        gboolean hasHeight = FALSE;
        gboolean hasViewBox = FALSE;
        RsvgLength ignored{};
        RsvgRectangle viewBox{};
        rsvg_handle_get_intrinsic_dimensions(rsvg.get(), &hasWidth, &ignored, &hasHeight, &ignored,
                                             &hasViewBox, &viewBox);
        if (hasViewBox != FALSE)
            return {viewBox.width, viewBox.height};
        // Without a size and a view box: as far as the drawing reaches on a page of 512 × 512.
        const RsvgRectangle page{0, 0, 512, 512};
        RsvgRectangle ink{};
        RsvgRectangle logical{};
        if (rsvg_handle_get_geometry_for_layer(rsvg.get(), nullptr, &page, &ink, &logical, nullptr) != FALSE)
            return {ink.x + ink.width, ink.y + ink.height};
        return {};
    }
};

Document::Document(std::unique_ptr<Handle> handle) : m_handle(std::move(handle)) {
    constexpr double cssPixelsPerInch = 96;
    rsvg_handle_set_dpi(m_handle->rsvg.get(), cssPixelsPerInch);
    std::tie(m_width, m_height) = m_handle->ownSize();
}

Document::~Document() = default;

std::unique_ptr<Document> Document::read(std::span<const std::byte> bytes, DrawingFailure& failure) {
    GError* rawError = nullptr;
    const std::unique_ptr<GInputStream, Unreference> stream(
        g_memory_input_stream_new_from_data(bytes.data(), static_cast<gssize>(bytes.size()), nullptr));
    // A text may have more than the 10 MB that the parser of XML allows: an embedded picture. Smaller
    // documents keep its limits, which see entities that multiply at once.
    constexpr std::size_t mostOfOneText = 9 << 20;
    const RsvgHandleFlags flags =
        bytes.size() > mostOfOneText ? RSVG_HANDLE_FLAG_UNLIMITED : RSVG_HANDLE_FLAGS_NONE;
    std::unique_ptr<Handle> handle(new Handle{std::unique_ptr<RsvgHandle, Unreference>(
        rsvg_handle_new_from_stream_sync(stream.get(), nullptr, flags, nullptr, &rawError))});
    const ErrorPointer error(rawError);
    if (handle->rsvg == nullptr) {
        failure = failureOf(error.get());
        return nullptr;
    }
    std::unique_ptr<Document> document(new Document(std::move(handle)));
    // A smaller document would draw nothing.
    constexpr double smallest = 1e-3;
    if (document->m_width >= smallest && document->m_height >= smallest && std::isfinite(document->m_width) &&
        std::isfinite(document->m_height))
        return document;
    failure = {SvgPipe::Refusal::Empty, {}};
    return nullptr;
}

std::optional<DrawingFailure> Document::draw(const SvgPipe::Request& request, std::uint8_t* pixels) const {
    const std::unique_ptr<cairo_surface_t, DestroySurface> surface(cairo_image_surface_create_for_data(
        pixels, CAIRO_FORMAT_ARGB32, request.width, request.height, 4 * request.width));
    const std::unique_ptr<cairo_t, DestroyCairo> cairo(cairo_create(surface.get()));
    // The document at its own size, stretched as a whole: its aspect ratio is not kept.
    const auto [x, y, width, height] = request.viewport;
    cairo_translate(cairo.get(), x, y);
    cairo_scale(cairo.get(), width / m_width, height / m_height);
    const RsvgRectangle page{0, 0, m_width, m_height};
    GError* rawError = nullptr;
    const gboolean isDrawn = rsvg_handle_render_document(m_handle->rsvg.get(), cairo.get(), &page, &rawError);
    const ErrorPointer error(rawError);
    const cairo_status_t status = cairo_status(cairo.get());
    if (isDrawn == FALSE)
        return status == CAIRO_STATUS_NO_MEMORY ? failureOf(status) : failureOf(error.get());
    if (status != CAIRO_STATUS_SUCCESS)
        return failureOf(status);
    cairo_surface_finish(surface.get());
    toRgba(pixels, static_cast<std::size_t>(request.width) * static_cast<std::size_t>(request.height));
    return std::nullopt;
}
