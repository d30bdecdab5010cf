#include "imaging/png/InflatedPng.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "imaging/png/PngHeader.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t typeLength = 4;
/// A chunk's length and type stand before its data, its checksum after them.
constexpr std::size_t frameLength = 4 + typeLength + 4;
/// The bit of a type's first letter that is set in ancillary chunks: a reader may skip them.
constexpr std::uint8_t ancillaryBit = 0x20;

template <std::size_t Length>
std::uint8_t* put(std::uint8_t* to, const std::array<std::uint8_t, Length>& bytes) {
    return std::ranges::copy(bytes, to).out;
}

} // namespace

bool InflatedPng::Chunk::isCritical() const {
    return (typeAndData[0] & ancillaryBit) == 0;
}

bool InflatedPng::Chunk::isPixels() const {
    return ByteReader(typeAndData).fourCharCode(0) == PngHeader::pixelsType;
}

bool InflatedPng::Chunk::isIntact() const {
    return libdeflate_crc32(0, typeAndData.data(), typeAndData.size()) == checksum;
}

std::span<const std::uint8_t> InflatedPng::Chunk::data() const {
    return typeAndData.subspan(typeLength);
}

std::size_t InflatedPng::Chunk::length() const {
    return data().size() + frameLength;
}

// The inflater's state and the part are large: they are filled only when they are needed.
InflatedPng::InflatedPng(const QByteArray& bytes) : m_bytes(bytes) {
    m_ready = left().first(std::min<std::size_t>(PngHeader::signature.size(), left().size()));
    m_position = m_ready.size();
    isal_inflate_init(&m_inflater);
    m_inflater.crc_flag = ISAL_ZLIB;
}

bool InflatedPng::read(std::uint8_t* out, std::size_t length) {
    while (length > 0) {
        if (m_ready.empty() && !advance())
            return false;
        const std::size_t part = std::min(length, m_ready.size());
        std::memcpy(out, m_ready.data(), part);
        out += part;
        length -= part;
        m_ready = m_ready.subspan(part);
    }
    return true;
}

bool InflatedPng::endPixels() {
    if (m_place != Place::InPixels)
        return true;
    // The stream may end here, or go on with more data than the pixels need.
    std::array<std::uint8_t, 1024> surplus;
    if (!inflate(surplus) || !skipPixels())
        return false;
    m_place = Place::AtPixelsEnd;
    return true;
}

std::span<const std::uint8_t> InflatedPng::left() const {
    return std::span(reinterpret_cast<const std::uint8_t*>(m_bytes.constData()),
                     static_cast<std::size_t>(m_bytes.size()))
        .subspan(m_position);
}

/// No value where the file ends within the chunk.
std::optional<InflatedPng::Chunk> InflatedPng::nextChunk() const {
    const ByteReader rest(left());
    const auto length = rest.bigEndian<std::uint32_t>(0);
    const auto typeAndData = length ? rest.slice(4, ByteCount(typeLength) + *length) : std::nullopt;
    const auto checksum = typeAndData ? rest.bigEndian<std::uint32_t>(4 + typeAndData->size()) : std::nullopt;
    if (!checksum)
        return std::nullopt;
    return Chunk{left().subspan(4, static_cast<std::size_t>(typeAndData->size())), *checksum};
}

bool InflatedPng::damaged() {
    m_isDamaged = true;
    return false;
}

bool InflatedPng::advance() {
    if (m_place == Place::InPixels)
        return takePixels();
    if (m_place == Place::AtPixelsEnd) {
        wrapPart(0, true);
        m_place = Place::BehindPixels;
        return true;
    }
    const std::optional<Chunk> chunk = nextChunk();
    if (chunk && chunk->isPixels() && m_place == Place::BeforePixels) {
        m_place = Place::InPixels;
        return takePixels();
    }
    if (chunk && chunk->isCritical() && !chunk->isIntact())
        return damaged();
    m_ready = chunk ? left().first(chunk->length()) : left();
    m_position += m_ready.size();
    return !m_ready.empty();
}

/// Gives the inflater the next chunk of pixel data. False where no such chunk follows, or it is damaged.
bool InflatedPng::takeChunk() {
    for (;;) {
        const std::optional<Chunk> chunk = nextChunk();
        if (!chunk || !chunk->isPixels())
            return false;
        if (!chunk->isIntact())
            return damaged();
        m_position += chunk->length();
        const std::span<const std::uint8_t> data = chunk->data();
        m_inflater.next_in = const_cast<std::uint8_t*>(data.data()); // ISA-L only reads them
        m_inflater.avail_in = static_cast<std::uint32_t>(data.size());
        if (!data.empty())
            return true;
    }
}

/// Fills `out`, or a part of it where the stream ends.
bool InflatedPng::inflate(std::span<std::uint8_t> out) {
    m_inflater.next_out = out.data();
    m_inflater.avail_out = static_cast<std::uint32_t>(out.size());
    while (m_inflater.avail_out > 0 && m_inflater.block_state != ISAL_BLOCK_FINISH) {
        // The inflater may keep some bytes until there is room for them.
        const bool hasInput =
            m_inflater.avail_in > 0 || m_inflater.block_state == ISAL_BLOCK_INPUT_DONE || takeChunk();
        const std::uint32_t room = m_inflater.avail_out;
        const int result = m_isDamaged ? ISAL_INVALID_BLOCK : isal_inflate(&m_inflater);
        if (result != ISAL_DECOMP_OK && result != ISAL_END_INPUT && result != ISAL_OUT_OVERFLOW)
            return damaged();
        const bool isStuck = m_inflater.avail_out == room && m_inflater.block_state != ISAL_BLOCK_FINISH;
        if (!hasInput && isStuck)
            return damaged();
    }
    return true;
}

bool InflatedPng::takePixels() {
    const std::span<std::uint8_t> part = std::span(m_part).subspan(leading, partLength);
    if (!inflate(part))
        return false;
    const bool isLast = m_inflater.block_state == ISAL_BLOCK_FINISH;
    if (isLast) {
        if (!skipPixels())
            return false;
        m_place = Place::BehindPixels;
    }
    wrapPart(partLength - m_inflater.avail_out, isLast);
    return true;
}

/// Skips the remaining chunks of pixel data. False where one is damaged.
bool InflatedPng::skipPixels() {
    for (;;) {
        const std::optional<Chunk> chunk = nextChunk();
        if (!chunk || !chunk->isPixels())
            return true;
        if (!chunk->isIntact())
            return damaged();
        m_position += chunk->length();
    }
}

/// Makes an IDAT chunk of the part's first `length` bytes.
void InflatedPng::wrapPart(std::size_t length, bool isLast) {
    constexpr std::array<std::uint8_t, 2> streamHeader{0x78, 0x01};
    constexpr std::array<std::uint8_t, 1> storedBlock{};
    constexpr std::array<std::uint8_t, 5> lastBlock{1, 0, 0, 0xff, 0xff};
    constexpr std::array<std::uint8_t, 4> noChecksum{};
    const std::size_t start = m_isFirstPart ? 0 : streamHeader.size();
    std::uint8_t* const begin = m_part.data() + start;
    std::uint8_t* const bytes = m_part.data() + leading;
    std::uint8_t* end = bytes + length;
    m_checksum = libdeflate_adler32(m_checksum, bytes, length);
    if (isLast) {
        end = put(end, lastBlock);
        end = put(end, bigEndianBytes<std::uint32_t>(m_checksum));
    }

    std::uint8_t* header =
        put(begin, bigEndianBytes<std::uint32_t>(static_cast<std::uint32_t>(end - begin) - 8));
    header = put(header, bigEndianBytes<std::uint32_t>(PngHeader::pixelsType.value));
    if (m_isFirstPart)
        header = put(header, streamHeader);
    const auto blockLength = static_cast<std::uint16_t>(length);
    header = put(header, storedBlock);
    header = put(header, littleEndianBytes<std::uint16_t>(blockLength));
    put(header, littleEndianBytes<std::uint16_t>(static_cast<std::uint16_t>(~blockLength)));
    end = put(end, noChecksum);
    m_ready = {begin, end};
    m_isFirstPart = false;
}
