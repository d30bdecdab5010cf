#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The filters of PNG rows of four bytes a pixel (ISO/IEC 15948, chapter 9).
class PngFilter {
  public:
    explicit PngFilter(std::size_t rowBytes);

    /// Writes the filter byte and `row` to `out` (1 + row bytes).
    static void none(const std::uint8_t* row, std::size_t rowBytes, std::uint8_t* out);

    /// Writes the filter byte and the filtered `row` to `out`, with the filter whose bytes, taken as signed,
    /// have the least sum of magnitudes. `above` is the row before, null for the first.
    void adaptive(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* out);

  private:
    std::size_t m_rowBytes;
    std::vector<std::uint8_t> m_zeros;
    std::vector<std::uint8_t> m_candidate;
};
