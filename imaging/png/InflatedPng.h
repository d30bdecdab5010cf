#pragma once

#include <QByteArray>

#include <isa-l/igzip_lib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// A PNG file (ISO/IEC 15948) as libpng is to read it: the same chunks, but in place of its IDAT chunks
/// others, whose zlib stream has stored blocks only (RFC 1951, section 3.2.4). So ISA-L decompresses the
/// pixels' data, in half the time that zlib takes or less, and in parts.
///
/// The checksums of critical chunks and of the pixels' data are checked here. The new chunks' checksums are
/// zeros: the reader is set to ignore them. The new stream's own checksum is right.
class InflatedPng {
  public:
    /// Keeps `bytes` by reference.
    explicit InflatedPng(const QByteArray& bytes);

    /// Puts the next `length` bytes to `out`. False where there are not as many, and where something is
    /// damaged: what is wrong is to be learned from the file as it is.
    [[nodiscard]] bool read(std::uint8_t* out, std::size_t length);

    /// To be called when the reader has all pixels: surplus data, which may decompress to very much, is
    /// passed over. False as for `read`.
    [[nodiscard]] bool endPixels();

    /// Whether a checksum is wrong, the pixels' data can't be decompressed or break off, or more of them
    /// stand behind another chunk.
    bool isDamaged() const { return m_isDamaged; }

  private:
    enum class Place { BeforePixels, InPixels, AtPixelsEnd, BehindPixels };
    /// Of the file, whole.
    struct Chunk {
        std::span<const std::uint8_t> typeAndData;
        std::uint32_t checksum; ///< of both, as the file tells it

        bool isCritical() const;
        bool isPixels() const;
        bool isIntact() const;
        std::span<const std::uint8_t> data() const;
        /// With all that is around the data.
        std::size_t length() const;
    };

    static constexpr std::size_t partLength = std::size_t{32} << 10;
    /// A chunk's length and type, a zlib stream's header and a block's.
    static constexpr std::size_t leading = 8 + 2 + 5;
    /// A last block without bytes, the stream's checksum and the chunk's.
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
