#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The messages between a program and its SVG worker. Each is a record of a fixed size in the byte order of
/// the machine, since both ends run on it. With each request comes a descriptor of shared memory.
///
/// The program sends the document; the worker answers with its size. Then each request for a drawing is
/// answered, in order. Any request may be answered with a refusal.
namespace SvgPipe {

// The marks change with the records: a program does not understand a worker of another version.
inline constexpr std::uint32_t requestMark = 0x71766756;
inline constexpr std::uint32_t answerMark = 0x61766756;

/// The largest document, unpacked, in bytes.
inline constexpr std::uint64_t mostDocumentBytes = 64 << 20;
/// The longest side of a drawing, and the most of its pixels.
inline constexpr std::int32_t longestSide = 1000000;
inline constexpr std::int64_t mostPixels = 16384LL * 16384LL;

/// The descriptor of the worker's end of the pipe.
inline constexpr int workerEnd = 3;

/// The status with which the worker ends where it is refused memory.
inline constexpr int memoryStatus = 77;
/// The status with which it ends where the program's messages make no sense.
inline constexpr int messageStatus = 78;
/// The status with which it ends where it can't give up its rights.
inline constexpr int rightsStatus = 79;

enum class RequestKind : std::uint32_t { Document = 1, Drawing = 2 };

struct Request {
    std::uint32_t mark = requestMark;
    RequestKind kind = RequestKind::Document;
    std::uint64_t documentBytes = 0; ///< in the shared memory
    /// A drawing's size in pixels; 4 × width × height bytes of shared memory are for them.
    std::int32_t width = 0;
    std::int32_t height = 0;
    /// Where the document lies on the drawing, in pixels.
    std::array<double, 4> viewport = {};

    bool operator==(const Request&) const = default;

    /// How much shared memory belongs to a valid request.
    std::size_t sharedBytes() const {
        constexpr std::size_t bytesPerPixel = 4;
        return kind == RequestKind::Document
                   ? static_cast<std::size_t>(documentBytes)
                   : bytesPerPixel * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};
static_assert(sizeof(Request) == 56 && std::is_trivially_copyable_v<Request>);

enum class AnswerKind : std::uint32_t { Size = 1, Drawn = 2, Refused = 3 };

/// Why the worker refuses.
enum class Refusal : std::uint32_t {
    Damaged = 1, ///< the document can't be read or drawn; `text` says why
    Limit = 2,   ///< it goes beyond a limit of the library; `text` says which
    Empty = 3,   ///< its size is empty
    Memory = 4,  ///< there is not enough memory
};

struct Answer {
    std::uint32_t mark = answerMark;
    AnswerKind kind = AnswerKind::Refused;
    Refusal refusal = Refusal::Damaged;
    std::uint32_t textLength = 0;
    double width = 0; ///< of the document, in CSS pixels
    double height = 0;
    /// UTF-8. With a drawing: families of fonts that it has lacked and no drawing before it, a line each.
    std::array<char, 992> text = {};
};
static_assert(sizeof(Answer) == 1024 && std::is_trivially_copyable_v<Answer>);

/// Whether the side that receives a record can use it.
inline bool isValid(const Request& request) {
    if (request.mark != requestMark)
        return false;
    if (request.kind == RequestKind::Document)
        return request.documentBytes <= mostDocumentBytes;
    bool isFinite = true;
    for (const double number : request.viewport)
        isFinite = isFinite && std::isfinite(number);
    return request.kind == RequestKind::Drawing && request.width > 0 && request.height > 0 &&
           request.width <= longestSide && request.height <= longestSide &&
           std::int64_t{request.width} * request.height <= mostPixels && isFinite;
}

inline bool isValid(const Answer& answer) {
    if (answer.mark != answerMark || answer.textLength > answer.text.size())
        return false;
    switch (answer.kind) {
    case AnswerKind::Size:
        return std::isfinite(answer.width) && std::isfinite(answer.height) && answer.width > 0 &&
               answer.height > 0;
    case AnswerKind::Drawn:
        return true;
    case AnswerKind::Refused:
        return answer.refusal >= Refusal::Damaged && answer.refusal <= Refusal::Memory;
    }
    return false;
}

} // namespace SvgPipe
