#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The messages between a program and its SVG worker. Each is a record of a fixed size in the byte order of
/// the machine, since both ends run on it. The worker's standard input and output are the two ends of a pipe.
///
/// The worker has memory in common with the program. The document lies at its begin; the worker answers with
/// the document's size before anything is asked for. Behind the document are places for drawings. Each
/// request for a drawing is answered, in order.
namespace SvgPipe {

/// The longest side of a drawing, and the most of its pixels.
inline constexpr std::int32_t longestSide = 1000000;
inline constexpr std::int64_t mostPixels = 16384LL * 16384LL;
inline constexpr std::size_t bytesPerPixel = 4;

/// Drawings begin at multiples of this many bytes: pages are no larger.
inline constexpr std::uint64_t placeBytes = 1 << 16;

/// The status with which the worker ends where it is refused memory.
inline constexpr int memoryStatus = 77;
/// The status with which it ends where the program's messages make no sense.
inline constexpr int messageStatus = 78;
/// The status with which it ends where it can't give up its rights.
inline constexpr int rightsStatus = 79;

/// Asks for a drawing.
struct Request {
    std::int32_t width = 0; ///< in pixels
    std::int32_t height = 0;
    /// Where the document lies on the drawing, in pixels: x, y, width, height.
    std::array<double, 4> viewport = {};
    /// Where its pixels are wanted, in bytes from the begin of the common memory. They are Cairo's: a word
    /// each of alpha, red, green and blue, premultiplied.
    std::uint64_t place = 0;

    std::size_t bytes() const {
        return bytesPerPixel * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    /// Whether both ask for the same pixels.
    bool drawsAs(const Request& other) const {
        return width == other.width && height == other.height && viewport == other.viewport;
    }
};
static_assert(sizeof(Request) == 48 && std::is_trivially_copyable_v<Request>);

enum class AnswerKind : std::uint32_t {
    Size = 1,
    Drawn = 2,
    Damaged = 3,     ///< the document can't be read or drawn; `text` says why
    BeyondLimit = 4, ///< it goes beyond a limit of the library; `text` says which
};

// It changes with the records: a program does not understand a worker of another version.
inline constexpr std::uint32_t answerMark = 0x61766757;

struct Answer {
    std::uint32_t mark = answerMark;
    AnswerKind kind = AnswerKind::Damaged;
    double width = 0; ///< of the document, in CSS pixels
    double height = 0;
    /// UTF-8 up to the first zero, or its end. With a drawing: families of fonts that it has lacked and no
    /// drawing before it, a line each.
    std::array<char, 1000> text = {};
};
static_assert(sizeof(Answer) == 1024 && std::is_trivially_copyable_v<Answer>);

/// Whether the side that receives a record can use it.
inline bool isValid(const Request& request) {
    return request.width > 0 && request.height > 0 && request.width <= longestSide &&
           request.height <= longestSide && std::int64_t{request.width} * request.height <= mostPixels &&
           request.place % placeBytes == 0 &&
           std::ranges::all_of(request.viewport, [](double number) { return std::isfinite(number); });
}
inline bool isValid(const Answer& answer) {
    const bool isSize = answer.kind == AnswerKind::Size;
    return answer.mark == answerMark && answer.kind >= AnswerKind::Size &&
           answer.kind <= AnswerKind::BeyondLimit &&
           (!isSize || (std::isfinite(answer.width) && std::isfinite(answer.height) && answer.width > 0 &&
                        answer.height > 0));
}

} // namespace SvgPipe
