#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The filters of PNG rows of four bytes a pixel (ISO/IEC 15948, chapter 9). Takes one row after the other:
///
///     fill(filter.nextRow());
///     filter.adaptive(out);
class PngFilter {
  public:
    explicit PngFilter(std::size_t rowBytes);

    /// Where the next row's bytes are to be put. The row that was there before becomes the one above; above
    /// the first there are zeros.
    std::uint8_t* nextRow();

    /// Writes a filter byte and the filtered row (1 + row bytes), with the filter whose bytes, taken as
    /// signed, have the least sum of magnitudes; of equals the one with the lowest number.
    void adaptive(std::uint8_t* out) const;

    /// The filter byte of rows that are left as they are.
    static constexpr std::uint8_t noneType = 0;

  private:
    std::size_t m_rowBytes;
    std::array<std::vector<std::uint8_t>, 2> m_rows; ///< each behind a pixel of zeros
    std::size_t m_current = 0;
};
