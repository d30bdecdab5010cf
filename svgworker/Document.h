#pragma once

#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Owned.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

extern "C" void g_object_unref(void* object);
struct _RsvgHandle; // NOLINT: librsvg's name

/// An SVG document, drawn by librsvg from its bytes alone: it has no base address, so nothing outside of it
/// is opened.
class Document {
  public:
    /// Reads a document that is not compressed. `answer` becomes its size in CSS pixels: its width and
    /// height, or else those of its view box, or else those of what it draws. Null where it is refused;
    /// `answer` tells why.
    static std::unique_ptr<Document> read(std::span<const std::byte> bytes, SvgPipe::Answer& answer);

    /// Draws the whole document, stretched into the request's viewport, on `pixels`, whose rows come from the
    /// top. What it does not draw on becomes transparent.
    SvgPipe::Answer draw(const SvgPipe::Request& request, std::byte* pixels) const;

  private:
    using Handle = Owned<_RsvgHandle, &g_object_unref>;
    Document(Handle handle, double width, double height)
        : m_handle(std::move(handle)), m_width(width), m_height(height) {}

    Handle m_handle;
    double m_width;
    double m_height;
};
