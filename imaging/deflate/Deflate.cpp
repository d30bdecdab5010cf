#include "imaging/deflate/Deflate.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace {

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

/// By libdeflate at `level`. Its matches do not depend on the processor.
Result<Done> appendMatches(QByteArray& stream, std::span<const std::uint8_t> bytes, int level) {
    const Compressor compressor(libdeflate_alloc_compressor(level));
    if (!compressor)
        return outOfMemory();
    const qsizetype start = stream.size();
    const std::size_t room = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
    stream.resize(start + static_cast<qsizetype>(room));
    const std::size_t length =
        libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), stream.data() + start, room);
    if (length == 0)
        return Error{ErrorCode::Unsupported, QStringLiteral("libdeflate can't compress this")};
    stream.resize(start + static_cast<qsizetype>(length));
    return Done{};
}

/// A zlib header: deflate with a window of 32 KiB, no dictionary, the fastest of four levels.
constexpr std::array<char, 2> runsHeader{'\x78', '\x01'};

Result<Done> appendRuns(QByteArray& stream, std::span<const std::uint8_t> bytes) {
    constexpr std::size_t largestPart = std::size_t{64} << 10;
    const auto runs = Deflate::RunStream::create(stream, bytes.size(), largestPart);
    if (!runs)
        return runs.error();
    while (!bytes.empty()) {
        const std::span<const std::uint8_t> part = bytes.first(std::min(bytes.size(), largestPart));
        std::ranges::copy(part, (*runs)->nextPart());
        if (Result<Done> added = (*runs)->addPart(part.size()); !added)
            return added;
        bytes = bytes.subspan(part.size());
    }
    return (*runs)->finish();
}

/// libdeflate's level for a method with matches.
int levelOf(Deflate::Method method) {
    switch (method) {
    case Deflate::Method::Runs:
    case Deflate::Method::Quick:
        return 1;
    case Deflate::Method::Greedy:
        return 4;
    case Deflate::Method::Thorough:
        return 6;
    case Deflate::Method::Densest:
        break;
    }
    return 12;
}

class CompressorMeter final : public Deflate::Meter {
  public:
    explicit CompressorMeter(Compressor compressor) : m_compressor(std::move(compressor)) {}

    std::size_t length(std::span<const std::uint8_t> bytes) const override {
        m_room.resize(libdeflate_zlib_compress_bound(m_compressor.get(), bytes.size()));
        return libdeflate_zlib_compress(m_compressor.get(), bytes.data(), bytes.size(), m_room.data(),
                                        m_room.size());
    }

  private:
    Compressor m_compressor;
    mutable std::vector<std::uint8_t> m_room;
};

} // namespace

Result<Done> Deflate::append(QByteArray& stream, std::span<const std::uint8_t> bytes, Method method) {
    const qsizetype length = stream.size();
    const auto append = [&] {
        return method == Method::Runs ? appendRuns(stream, bytes)
                                      : appendMatches(stream, bytes, levelOf(method));
    };
    Result<Done> appended = unlessMemoryIsShort(append);
    if (!appended)
        stream.truncate(length);
    return appended;
}

Result<std::unique_ptr<Deflate::Meter>> Deflate::Meter::create(Method method) {
    return unlessMemoryIsShort([&]() -> Result<std::unique_ptr<Meter>> {
        Compressor compressor(libdeflate_alloc_compressor(levelOf(method)));
        if (!compressor)
            return outOfMemory();
        return std::unique_ptr<Meter>(std::make_unique<CompressorMeter>(std::move(compressor)));
    });
}

Result<std::unique_ptr<Deflate::RunStream>> Deflate::RunStream::create(QByteArray& stream, std::size_t length,
                                                                       std::size_t largestPart) {
    // Not std::make_unique: the constructor is private.
    return unlessMemoryIsShort(
        [&] { return std::unique_ptr<RunStream>(new RunStream(stream, length, largestPart)); });
}

Deflate::RunStream::RunStream(QByteArray& stream, std::size_t length, std::size_t largestPart)
    : m_stream(stream.append(runsHeader.data(), runsHeader.size())),
      m_end(stream.size()),
      m_coder(length, largestPart) {}

/// Makes room for what `size` further bytes are compressed to, and returns where it begins.
std::uint8_t* Deflate::RunStream::room(std::size_t size) {
    // Room for only these bytes: the whole stream could need many times more than it mostly takes.
    const std::size_t most = RunCoder::bound(RunBlock::mostBytes + size);
    m_stream.resize(m_end + static_cast<qsizetype>(most));
    return reinterpret_cast<std::uint8_t*>(m_stream.data()) + m_end;
}

Result<Done> Deflate::RunStream::addPart(std::size_t size) {
    return unlessMemoryIsShort([&] {
        m_checksum = libdeflate_adler32(m_checksum, m_coder.nextPart(), size);
        m_end += static_cast<qsizetype>(m_coder.addPart(size, room(size)));
    });
}

Result<Done> Deflate::RunStream::finish() {
    return unlessMemoryIsShort([&] {
        m_end += static_cast<qsizetype>(m_coder.finish(room(0)));
        m_stream.resize(m_end);
        ByteWriter(m_stream).bigEndian<quint32>(m_checksum);
    });
}

std::size_t Deflate::runsLength(std::span<const std::uint8_t> bytes) {
    return runsHeader.size() + RunCoder::length(bytes) + sizeof(std::uint32_t);
}

Result<std::size_t> Deflate::length(std::span<const std::uint8_t> bytes, Method method) {
    if (method == Method::Runs)
        return runsLength(bytes);
    QByteArray stream;
    if (const Result<Done> appended = append(stream, bytes, method); !appended)
        return appended.error();
    return static_cast<std::size_t>(stream.size());
}
