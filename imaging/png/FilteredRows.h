#pragma once

#include "imaging/png/PngFilter.h"
#include "imaging/png/PngOptions.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// A picture's rows as the bytes that are compressed: with straight colours, filtered, each behind the byte
/// that says how. Keeps the raster by reference. For this room alone, whose `encodePng` tells of it: what
/// makes rows may throw std::bad_alloc.
class FilteredRows {
  public:
    /// Bytes without a value until one is written.
    struct Buffer {
        explicit Buffer(std::size_t capacity)
            : bytes(std::make_unique_for_overwrite<std::uint8_t[]>(capacity)) {}

        std::span<const std::uint8_t> filled() const { return {bytes.get(), size}; }

        std::unique_ptr<std::uint8_t[]> bytes;
        std::size_t size = 0;
    };

    /// RGBA8888 or RGBA8888_Premultiplied.
    explicit FilteredRows(const QImage& raster)
        : m_raster(raster), m_rowBytes(4 * static_cast<std::size_t>(raster.width())) {}

    /// The bytes of `rows` rows.
    std::size_t size(int rows) const { return (1 + m_rowBytes) * static_cast<std::size_t>(rows); }

    Buffer all(PngFilterStrategy strategy) const;
    /// Bands of rows that lie evenly spread over the picture; all of a small picture.
    Buffer sample(PngFilterStrategy strategy) const;

    /// One row after the other.
    class Sequence {
      public:
        /// From row `first` on. The row before counts, though it is not given.
        Sequence(const FilteredRows& rows, PngFilterStrategy strategy, int first);

        /// Writes the next row: `size(1)` bytes.
        void next(std::uint8_t* out);

      private:
        const FilteredRows& m_rows;
        PngFilterStrategy m_strategy;
        PngFilter m_filter;
        int m_y;
    };

  private:
    void append(Buffer& buffer, int first, int count, PngFilterStrategy strategy) const;
    void straightRow(int y, std::uint8_t* out) const;

    const QImage& m_raster;
    std::size_t m_rowBytes;
};
