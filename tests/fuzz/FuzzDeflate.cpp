// Compresses any bytes, and repetitions that they describe, by runs. Another library reads the same bytes
// back.

#include "imaging/deflate/Deflate.h"
#include "tests/fuzz/Require.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// The bytes that `data` describes. Every two bytes of `data` add one byte, or repeat the bytes 1
/// to 15 places back, up to 32 KiB of them.
Bytes told(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t most = 400000;
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < size && bytes.size() < most; i += 2) {
        const std::size_t distance = data[i] % 16U;
        if (distance == 0 || distance > bytes.size()) {
            bytes.push_back(data[i + 1]);
            continue;
        }
        const std::size_t length = (data[i + 1] % 16U + 1) << (data[i] / 16U % 12U);
        for (std::size_t n = 0; n < length; ++n)
            bytes.push_back(bytes[bytes.size() - distance]);
    }
    return bytes;
}

QByteArray inParts(const Bytes& bytes, std::size_t part) {
    QByteArray stream;
    const Result<std::unique_ptr<Deflate::RunStream>> runs =
        Deflate::RunStream::create(stream, bytes.size(), part);
    require(runs.operator bool());
    for (std::size_t at = 0; at < bytes.size(); at += part) {
        const std::size_t size = std::min(part, bytes.size() - at);
        std::copy_n(bytes.data() + at, size, (*runs)->nextPart());
        require((*runs)->addPart(size).operator bool());
    }
    require((*runs)->finish().operator bool());
    return stream;
}

void check(const Bytes& bytes, std::size_t part) {
    QByteArray stream;
    require(Deflate::append(stream, bytes, Deflate::Method::Runs).operator bool());
    require(static_cast<std::size_t>(stream.size()) == *Deflate::length(bytes, Deflate::Method::Runs));
    require(inParts(bytes, part) == stream);
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor*)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    Bytes back(bytes.size() + 1);
    std::size_t length = 0;
    require(libdeflate_zlib_decompress(decompressor.get(), stream.constData(),
                                       static_cast<std::size_t>(stream.size()), back.data(), back.size(),
                                       &length) == LIBDEFLATE_SUCCESS);
    back.resize(length);
    require(back == bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::size_t part = size > 0 ? 1 + std::size_t{97} * data[0] : 1;
    check(Bytes(data, data + size), part);
    check(told(data, size), part);
    return 0;
}
