#include "imaging/deflate/Deflate.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"

#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>

namespace {

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

/// A library refuses settings; the ones here it takes.
Error refused(const QString& library) {
    return {ErrorCode::Unsupported, QStringLiteral("%1 can't compress this").arg(library)};
}

Result<Done> appendThorough(QByteArray& stream, std::span<const std::uint8_t> bytes) {
    // Of much data the next level takes a quarter more time for some percent less.
    constexpr std::size_t much = std::size_t{512} << 10;
    const int level = bytes.size() > much ? 5 : 6;
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(level));
    if (!compressor)
        return outOfMemory();
    const qsizetype start = stream.size();
    const std::size_t room = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
    stream.resize(start + static_cast<qsizetype>(room));
    const std::size_t length =
        libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), stream.data() + start, room);
    if (length == 0)
        return refused(QStringLiteral("libdeflate"));
    stream.resize(start + static_cast<qsizetype>(length));
    return Done{};
}

/// Deflate with a window of 32 KiB, no dictionary, the fastest of four levels.
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

/// The compressor's state and its tables, which it fills itself.
struct QuickState {
    isal_zstream stream;
    std::uint8_t tables[ISAL_DEF_LVL1_DEFAULT];
};

/// ISA-L looks so far ahead of the place that it compresses.
constexpr std::size_t lookAhead = ISAL_LOOK_AHEAD;

Result<Done> appendQuick(QByteArray& stream, std::span<const std::uint8_t> bytes) {
    // While ISA-L 2.30 goes on from a stream's first place it takes the state's own address for bytes: into
    // its table of what stands where comes an entry that another run of the program has elsewhere. With just
    // enough bytes for that first place it stops behind it, and reads the next ones properly.
    constexpr std::size_t forOnePlace = lookAhead + 1;
    if (bytes.size() <= forOnePlace)
        return appendThorough(stream, bytes);
    const std::unique_ptr<QuickState> state(new (std::nothrow) QuickState);
    if (!state)
        return outOfMemory();
    isal_zstream& zlib = state->stream;
    isal_deflate_init(&zlib);
    zlib.level = 1;
    zlib.level_buf = state->tables;
    zlib.level_buf_size = sizeof state->tables;
    zlib.gzip_flag = IGZIP_ZLIB;
    // It counts in 32 bits.
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max() / 2;
    const qsizetype start = stream.size();
    qsizetype end = start;
    stream.resize(start + static_cast<qsizetype>(bytes.size() + bytes.size() / 64 + 512));
    const std::uint8_t* const last = bytes.data() + bytes.size();
    zlib.next_in = const_cast<std::uint8_t*>(bytes.data()); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    do {
        if (end == stream.size())
            stream.resize(stream.size() + stream.size() / 2);
        const auto in = zlib.next_in == bytes.data()
                            ? forOnePlace
                            : std::min(most, static_cast<std::size_t>(last - zlib.next_in));
        const auto room = std::min(most, static_cast<std::size_t>(stream.size() - end));
        zlib.avail_in = static_cast<std::uint32_t>(in);
        zlib.end_of_stream = zlib.next_in + in == last ? 1 : 0;
        zlib.next_out = reinterpret_cast<std::uint8_t*>(stream.data()) + end;
        zlib.avail_out = static_cast<std::uint32_t>(room);
        if (isal_deflate(&zlib) != COMP_OK)
            return refused(QStringLiteral("ISA-L"));
        end += static_cast<qsizetype>(room - zlib.avail_out);
    } while (zlib.internal_state.state != ZSTATE_END);
    stream.resize(end);
    return Done{};
}

} // namespace

Result<Done> Deflate::append(QByteArray& stream, std::span<const std::uint8_t> bytes, Method method) {
    const qsizetype length = stream.size();
    const auto append = [&] {
        switch (method) {
        case Method::Runs:
            return appendRuns(stream, bytes);
        case Method::Quick:
            return appendQuick(stream, bytes);
        case Method::Thorough:
            break;
        }
        return appendThorough(stream, bytes);
    };
    Result<Done> appended = unlessMemoryIsShort(append);
    if (!appended)
        stream.truncate(length);
    return appended;
}

Result<std::unique_ptr<Deflate::RunStream>> Deflate::RunStream::create(QByteArray& stream, std::size_t length,
                                                                       std::size_t largestPart) {
    // The constructor is private.
    return unlessMemoryIsShort(
        [&] { return std::unique_ptr<RunStream>(new RunStream(stream, length, largestPart)); });
}

Deflate::RunStream::RunStream(QByteArray& stream, std::size_t length, std::size_t largestPart)
    : m_stream(stream.append(runsHeader.data(), runsHeader.size())),
      m_end(stream.size()),
      m_coder(length, largestPart) {}

/// Where the next bytes are written, which come from `size` further ones.
std::uint8_t* Deflate::RunStream::room(std::size_t size) {
    // Not as much as the whole stream could need, which mostly is many times what it does.
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
