#pragma once

#include "base/Result.h"
#include "imaging/deflate/RunCoder.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Compresses into zlib streams (RFC 1950, RFC 1951). The same bytes give the same stream, on every
/// processor.
namespace Deflate {

enum class Method {
    Runs,     ///< RunCoder: of repetitions only runs of bytes and pixels; for gradients and photographs
    Quick,    ///< libdeflate's fastest level: for dense data with some repetitions
    Greedy,   ///< libdeflate: takes the first good match; for data with many repetitions, as of text
    Thorough, ///< libdeflate: looks for better matches; for flat graphics, several times as slow as runs
    Densest,  ///< libdeflate: nearly the best matches and codes; a hundred times as slow as runs
};

/// Appends `bytes` as one stream to `stream`. OutOfMemory; after an error `stream` has its old length.
Result<Done> append(QByteArray& stream, std::span<const std::uint8_t> bytes, Method method);

/// The length in bytes of the stream that `append` makes by Method::Runs. Allocates no memory.
std::size_t runsLength(std::span<const std::uint8_t> bytes);

/// The length in bytes of the stream that `append` makes by `method`. OutOfMemory.
Result<std::size_t> length(std::span<const std::uint8_t> bytes, Method method);

/// Tells the length in bytes of streams by a method with matches, again and again with the same memory.
class Meter {
  public:
    /// OutOfMemory.
    static Result<std::unique_ptr<Meter>> create(Method method);
    virtual ~Meter() = default;
    /// The length of what `append` makes. May throw std::bad_alloc.
    virtual std::size_t length(std::span<const std::uint8_t> bytes) const = 0;
};

/// Appends the same stream as `append` by Method::Runs, but from bytes that come in parts. It takes memory
/// for one block and one part. Its functions fail with OutOfMemory; what they appended is of no use then.
class RunStream {
  public:
    /// For `length` bytes in parts of at most `largestPart`. Keeps `stream` by reference.
    static Result<std::unique_ptr<RunStream>> create(QByteArray& stream, std::size_t length,
                                                     std::size_t largestPart);

    /// The place for the next part's bytes.
    std::uint8_t* nextPart() { return m_coder.nextPart(); }
    /// Takes `size` bytes from that place.
    Result<Done> addPart(std::size_t size);
    /// Call it after the last part.
    Result<Done> finish();

  private:
    RunStream(QByteArray& stream, std::size_t length, std::size_t largestPart);

    std::uint8_t* room(std::size_t size);

    QByteArray& m_stream;
    qsizetype m_end;
    std::uint32_t m_checksum = 1;
    RunCoder m_coder;
};

} // namespace Deflate
