#include "svgworker/Session.h"

#include "imaging/svgpipe/SharedPart.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Fonts.h"
#include "svgworker/Owned.h"

#include <librsvg/rsvg.h>
#include <unistd.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

using namespace SvgPipe;

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

using Document = Owned<RsvgHandle, &g_object_unref>;

/// Reads a document from its bytes alone: it has no base address, so nothing outside of it is opened. Null
/// where it is refused; `answer` tells its size in CSS pixels, or why.
Document read(std::span<const std::byte> bytes, Answer& answer) {
    const Owned<GInputStream, &g_object_unref> stream(
        g_memory_input_stream_new_from_data(bytes.data(), static_cast<gssize>(bytes.size()), nullptr));
    // A text may have more than the 10 MB that the parser of XML allows: an embedded picture. Smaller
    // documents keep its limits, which see entities that multiply at once.
    constexpr std::size_t mostOfOneText = 9 << 20;
    const RsvgHandleFlags flags =
        bytes.size() > mostOfOneText ? RSVG_HANDLE_FLAG_UNLIMITED : RSVG_HANDLE_FLAGS_NONE;
    GError* error = nullptr;
    Document document(rsvg_handle_new_from_stream_sync(stream.get(), nullptr, flags, nullptr, &error));
    if (document == nullptr) {
        answer = refused(error);
        return nullptr;
    }
    constexpr double cssPixelsPerInch = 96;
    rsvg_handle_set_dpi(document.get(), cssPixelsPerInch);
    std::tie(answer.width, answer.height) = sizeOf(document.get());
    answer.kind = AnswerKind::Size;
    // A smaller document would draw nothing.
    constexpr double smallest = 1e-3;
    if (isValid(answer) && answer.width >= smallest && answer.height >= smallest)
        return document;
    answer = answerOf(AnswerKind::Damaged, "its size is empty");
    return nullptr;
}

/// Draws a document of that size, stretched into the request's viewport, on `pixels`, whose rows come from
/// the top. What it does not draw on becomes transparent.
Answer drawn(const Document& document, const Answer& size, const Request& request, std::byte* pixels) {
    std::fill_n(pixels, request.bytes(), std::byte{});
    const Owned<cairo_surface_t, &cairo_surface_destroy> surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, request.width, request.height,
        cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, request.width)));
    const Owned<cairo_t, &cairo_destroy> cairo(cairo_create(surface.get()));
    // The document at its own size, stretched as a whole: its aspect ratio is not kept.
    const auto [x, y, width, height] = request.viewport;
    cairo_translate(cairo.get(), x, y);
    cairo_scale(cairo.get(), width / size.width, height / size.height);
    const RsvgRectangle page{0, 0, size.width, size.height};
    GError* error = nullptr;
    const bool isDrawn = rsvg_handle_render_document(document.get(), cairo.get(), &page, &error) != FALSE;
    const cairo_status_t status = cairo_status(cairo.get());
    if (status == CAIRO_STATUS_NO_MEMORY)
        ::_exit(memoryStatus);
    if (!isDrawn)
        return refused(error);
    if (status != CAIRO_STATUS_SUCCESS)
        return answerOf(AnswerKind::BeyondLimit, cairo_status_to_string(status));
    return answerOf(AnswerKind::Drawn, Fonts::takeMissing());
}

} // namespace

int serve(int input, int output, int memory, std::size_t documentBytes) {
    // An empty document has a part too.
    SharedPart text = sharedPart(memory, 0, documentBytes + 1);
    if (text == nullptr)
        return memoryStatus;
    Answer size;
    const Document document = read({text.get(), documentBytes}, size);
    text.reset();
    Answer answer = size;
    while (::write(output, &answer, sizeof answer) == sizeof answer && document != nullptr) {
        Request request;
        const ssize_t bytes = ::read(input, &request, sizeof request);
        if (bytes <= 0)
            return 0;
        if (bytes < ssize_t{sizeof request} || !isValid(request))
            return messageStatus;
        const SharedPart pixels = sharedPart(memory, request.place, request.bytes());
        if (pixels == nullptr)
            return memoryStatus;
        answer = drawn(document, size, request, pixels.get());
    }
    return 0;
}
