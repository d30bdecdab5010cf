#pragma once

#include <QByteArray>

#include <isa-l/igzip_lib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// Gives libpng a PNG file (ISO/IEC 15948) whose pixel data are already decompressed. All chunks stay the
/// same except the IDAT chunks: new ones, with a zlib stream of stored blocks only (RFC 1951, section 3.2.4),
/// replace them. So ISA-L decompresses the pixel data, part by part, in at most half of zlib's time.
///
/// The checksums of critical chunks and of the pixel data are checked here. The new chunks have zeros as
/// checksums, and libpng is set to ignore them. The new stream's own checksum is right.
class InflatedPng {
  public:
    /// Keeps `bytes` by reference.
    explicit InflatedPng(const QByteArray& bytes);

    /// Writes the next `length` bytes to `out`. False where fewer are left, or the file is damaged. Read the
    /// original file with libpng alone to learn what is wrong.
    [[nodiscard]] bool read(std::uint8_t* out, std::size_t length);

    /// Skips surplus pixel data, which may decompress to very much. Call it when the reader has all pixels.
    /// False as for `read`.
    [[nodiscard]] bool endPixels();

    /// Whether a checksum is wrong, or the pixel data can't be decompressed, break off, or go on after
    /// another chunk.
    bool isDamaged() const { return m_isDamaged; }

  private:
    enum class Place { BeforePixels, InPixels, AtPixelsEnd, BehindPixels };
    /// A complete chunk of the file.
    struct Chunk {
        std::span<const std::uint8_t> typeAndData;
        std::uint32_t checksum; ///< of type and data, as the file states it

        bool isCritical() const;
        bool isPixels() const;
        bool isIntact() const;
        std::span<const std::uint8_t> data() const;
        /// The length of the whole chunk, not only of its data.
        std::size_t length() const;
    };

    static constexpr std::size_t partLength = std::size_t{32} << 10;
    /// Room before a part: a chunk's length and type, the zlib stream's header, a block's header.
    static constexpr std::size_t leading = 8 + 2 + 5;
    /// Room after a part: an empty last block, the stream's checksum, the chunk's checksum.
    static constexpr std::size_t trailing = 5 + 4 + 4;

    std::span<const std::uint8_t> left() const;
    std::optional<Chunk> nextChunk() const;
    bool damaged();
    bool advance();
    bool inflate(std::span<std::uint8_t> out);
    bool takeChunk();
    bool takePixels();
    bool skipPixels();
    void wrapPart(std::size_t length, bool isLast);

    const QByteArray& m_bytes;
    std::size_t m_position = 0; ///< in the file
    Place m_place = Place::BeforePixels;
    std::span<const std::uint8_t> m_ready; ///< what is read next
    bool m_isFirstPart = true;
    std::uint32_t m_checksum = 1; ///< of the new stream so far (Adler-32, RFC 1950)
    bool m_isDamaged = false;
    inflate_state m_inflater;
    std::array<std::uint8_t, leading + partLength + trailing> m_part;
};
