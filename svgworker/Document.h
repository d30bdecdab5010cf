#pragma once

#include "imaging/svgpipe/SvgMessages.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

/// Why a document can't be read or drawn.
struct DrawingFailure {
    SvgPipe::Refusal refusal = SvgPipe::Refusal::Damaged;
    std::string text; ///< in the library's words; may be empty
};

/// An SVG document, drawn by librsvg from its bytes alone: it has no base address, so nothing outside of it
/// is opened.
class Document {
  public:
    /// Reads a document that is not compressed. A failure goes to `failure`, and there is no value.
    static std::unique_ptr<Document> read(std::span<const std::byte> bytes, DrawingFailure& failure);
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// In CSS pixels: its width and height, or else those of its view box, or else those of what it draws.
    double width() const { return m_width; }
    double height() const { return m_height; }

    /// Draws the whole document, stretched into the request's viewport, on `pixels`: RGBA, premultiplied,
    /// rows from the top, transparent before. No value where that succeeds.
    std::optional<DrawingFailure> draw(const SvgPipe::Request& request, std::uint8_t* pixels) const;

  private:
    struct Handle;
    explicit Document(std::unique_ptr<Handle> handle);

    std::unique_ptr<Handle> m_handle;
    double m_width = 0;
    double m_height = 0;
};
