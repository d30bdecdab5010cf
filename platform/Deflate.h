#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <span>

/// Compresses into zlib streams (RFC 1950, RFC 1951). The same bytes give the same stream.
namespace Deflate {

enum class Method {
    Bytes,    ///< ByteCoder: looks for no repetitions; the fastest by far
    Quick,    ///< ISA-L: looks for the plainest repetitions; for data with few of them
    Thorough, ///< libdeflate: the smallest for all other data, several times as slow
};

/// Appends `bytes` as one stream to `stream`. False where memory is short; `stream` then has the length that
/// it had.
[[nodiscard]] bool append(QByteArray& stream, std::span<const std::uint8_t> bytes, Method method);

/// The length of such a stream; 0 where memory is short.
std::size_t length(std::span<const std::uint8_t> bytes, Method method);

} // namespace Deflate
