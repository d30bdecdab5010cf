#include "svgworker/Document.h"

#include "svgworker/Fonts.h"

#include <librsvg/rsvg.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

using SvgPipe::Answer;
using SvgPipe::AnswerKind;

namespace {

/// An answer with a text; what has no room is cut off.
Answer answerOf(AnswerKind kind, std::string_view text) {
    Answer answer;
    answer.kind = kind;
    std::copy_n(text.begin(), std::min(text.size(), answer.text.size()), answer.text.begin());
    return answer;
}

/// The library has one code for all of its errors; its limits are told apart by their words.
Answer refused(GError* raw) {
    const Owned<GError, &g_error_free> error(raw);
    const std::string_view text = error != nullptr ? error->message : "it can't be drawn";
    for (const char* words : {"cannot load more than", "exceeded more than", "maximum", "nesting", "too deep",
                              "Excessive depth", "huge"}) {
        if (text.find(words) != std::string_view::npos)
            return answerOf(AnswerKind::BeyondLimit, text);
    }
    return answerOf(AnswerKind::Damaged, text);
}

/// The document's size in CSS pixels, empty where it has none.
std::pair<double, double> sizeOf(RsvgHandle* handle) {
    gdouble width = 0;
    gdouble height = 0;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &width, &height) != FALSE)
        return {width, height};
    gboolean hasLength = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength length{};
    RsvgRectangle viewBox{};
    rsvg_handle_get_intrinsic_dimensions(handle, &hasLength, &length, &hasLength, &length, &hasViewBox,
                                         &viewBox);
    if (hasViewBox != FALSE)
        return {viewBox.width, viewBox.height};
    // Without a size and a view box: as far as the drawing reaches on a page of 512 × 512.
    const RsvgRectangle page{0, 0, 512, 512};
    RsvgRectangle ink{};
    RsvgRectangle logical{};
    if (rsvg_handle_get_geometry_for_layer(handle, nullptr, &page, &ink, &logical, nullptr) != FALSE)
        return {ink.x + ink.width, ink.y + ink.height};
    return {};
}

} // namespace

std::unique_ptr<Document> Document::read(std::span<const std::byte> bytes, Answer& answer) {
    const Owned<GInputStream, &g_object_unref> stream(
        g_memory_input_stream_new_from_data(bytes.data(), static_cast<gssize>(bytes.size()), nullptr));
    // A text may have more than the 10 MB that the parser of XML allows: an embedded picture. Smaller
    // documents keep its limits, which see entities that multiply at once.
    constexpr std::size_t mostOfOneText = 9 << 20;
    const RsvgHandleFlags flags =
        bytes.size() > mostOfOneText ? RSVG_HANDLE_FLAG_UNLIMITED : RSVG_HANDLE_FLAGS_NONE;
    GError* error = nullptr;
    Handle handle(rsvg_handle_new_from_stream_sync(stream.get(), nullptr, flags, nullptr, &error));
    if (handle == nullptr) {
        answer = refused(error);
        return nullptr;
    }
    constexpr double cssPixelsPerInch = 96;
    rsvg_handle_set_dpi(handle.get(), cssPixelsPerInch);
    const auto [width, height] = sizeOf(handle.get());
    // A smaller document would draw nothing.
    constexpr double smallest = 1e-3;
    if (width < smallest || height < smallest || !std::isfinite(width) || !std::isfinite(height)) {
        answer = answerOf(AnswerKind::Damaged, "its size is empty");
        return nullptr;
    }
    answer.kind = AnswerKind::Size;
    answer.width = width;
    answer.height = height;
    return std::unique_ptr<Document>(new Document(std::move(handle), width, height));
}

Answer Document::draw(const SvgPipe::Request& request, std::byte* pixels) const {
    std::fill_n(pixels, request.bytes(), std::byte{});
    constexpr int bytesPerPixel = SvgPipe::bytesPerPixel;
    const Owned<cairo_surface_t, &cairo_surface_destroy> surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32,
                                            request.width, request.height, bytesPerPixel * request.width));
    const Owned<cairo_t, &cairo_destroy> cairo(cairo_create(surface.get()));
    // The document at its own size, stretched as a whole: its aspect ratio is not kept.
    const auto [x, y, width, height] = request.viewport;
    cairo_translate(cairo.get(), x, y);
    cairo_scale(cairo.get(), width / m_width, height / m_height);
    const RsvgRectangle page{0, 0, m_width, m_height};
    GError* error = nullptr;
    const bool isDrawn = rsvg_handle_render_document(m_handle.get(), cairo.get(), &page, &error) != FALSE;
    const cairo_status_t status = cairo_status(cairo.get());
    if (status == CAIRO_STATUS_NO_MEMORY)
        ::_exit(SvgPipe::memoryStatus);
    if (!isDrawn)
        return refused(error);
    if (status != CAIRO_STATUS_SUCCESS)
        return answerOf(AnswerKind::BeyondLimit, cairo_status_to_string(status));
    return answerOf(AnswerKind::Drawn, Fonts::takeMissing());
}
