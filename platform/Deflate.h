#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <span>

/// Compresses into zlib streams (RFC 1950, RFC 1951). The same bytes give the same stream.
namespace Deflate {

enum class Method {
    Quick,    ///< ISA-L: several times as fast, and the smaller one for data with few repetitions
    Thorough, ///< libdeflate: the smaller one for all other data
};

/// Appends `bytes` as one stream to `stream`. False where memory is short; `stream` then has the length that
/// it had.
bool append(QByteArray& stream, std::span<const std::uint8_t> bytes, Method method);

/// The length of such a stream; 0 where memory is short.
std::size_t length(std::span<const std::uint8_t> bytes, Method method);

} // namespace Deflate
