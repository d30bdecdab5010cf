#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The filters of PNG rows of three or four bytes a pixel (ISO/IEC 15948, chapter 9). Takes one row after the
/// other:
///
///     fill(filter.nextRow());
///     filter.adaptive(out);
class PngFilter {
  public:
    PngFilter(std::size_t rowBytes, std::size_t pixelBytes);

    /// The place for the next row's bytes. The row before it becomes the row above. Above the first row there
    /// are zeros.
    std::uint8_t* nextRow();

    /// Writes a filter byte and the filtered row: 1 + row bytes in all. Takes the filter whose bytes, read as
    /// signed numbers, have the least sum of magnitudes; of equal sums the filter with the lowest number.
    void adaptive(std::uint8_t* out) const;

    /// The filter byte of unfiltered rows.
    static constexpr std::uint8_t noneType = 0;

  private:
    std::size_t m_rowBytes;
    std::size_t m_pixelBytes;
    std::array<std::vector<std::uint8_t>, 2>
        m_rows; ///< zeros stand before each, as many as a pixel may have bytes
    std::size_t m_current = 0;
};
