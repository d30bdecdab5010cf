#include "platform/PngFilter.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr std::size_t pixelBytes = 4;

enum FilterType : std::uint8_t { NoneType, SubType, UpType, AverageType, PaethType };

int paeth(int left, int above, int aboveLeft) {
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int aboveOrCorner = toAbove <= toAboveLeft ? above : aboveLeft;
    return toLeft <= toAbove && toLeft <= toAboveLeft ? left : aboveOrCorner;
}

/// The first pixel has nothing to its left: zeros stand there.
void filterRow(FilterType type, const std::uint8_t* row, const std::uint8_t* above, std::size_t rowBytes,
               std::uint8_t* out) {
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    switch (type) {
    case NoneType:
        std::memcpy(out, row, rowBytes);
        break;
    case SubType:
        std::memcpy(out, row, pixelBytes);
        for (std::size_t i = pixelBytes; i < rowBytes; ++i)
            out[i] = byte(row[i] - row[i - pixelBytes]);
        break;
    case UpType:
        for (std::size_t i = 0; i < rowBytes; ++i)
            out[i] = byte(row[i] - above[i]);
        break;
    case AverageType:
        for (std::size_t i = 0; i < pixelBytes; ++i)
            out[i] = byte(row[i] - above[i] / 2);
        for (std::size_t i = pixelBytes; i < rowBytes; ++i)
            out[i] = byte(row[i] - (row[i - pixelBytes] + above[i]) / 2);
        break;
    case PaethType:
        for (std::size_t i = 0; i < pixelBytes; ++i)
            out[i] = byte(row[i] - above[i]);
        for (std::size_t i = pixelBytes; i < rowBytes; ++i)
            out[i] = byte(row[i] - paeth(row[i - pixelBytes], above[i], above[i - pixelBytes]));
        break;
    }
}

/// The sum of the bytes' magnitudes, each taken as signed.
std::size_t cost(const std::uint8_t* bytes, std::size_t count) {
    std::size_t sum = 0;
    // In blocks whose sum fits 32 bits: the inner loop is then one that compilers vectorise.
    constexpr std::size_t block = 1U << 20;
    for (std::size_t start = 0; start < count; start += block) {
        const std::size_t end = start + block < count ? start + block : count;
        std::uint32_t part = 0;
        for (std::size_t i = start; i < end; ++i)
            part +=
                static_cast<std::uint32_t>(std::abs(static_cast<int>(static_cast<std::int8_t>(bytes[i]))));
        sum += part;
    }
    return sum;
}

} // namespace

PngFilter::PngFilter(std::size_t rowBytes) : m_rowBytes(rowBytes), m_zeros(rowBytes), m_candidate(rowBytes) {}

void PngFilter::none(const std::uint8_t* row, std::size_t rowBytes, std::uint8_t* out) {
    out[0] = NoneType;
    std::memcpy(out + 1, row, rowBytes);
}

void PngFilter::adaptive(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* out) {
    if (above == nullptr)
        above = m_zeros.data();
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const FilterType type : {NoneType, SubType, UpType, AverageType, PaethType}) {
        filterRow(type, row, above, m_rowBytes, m_candidate.data());
        const std::size_t sum = cost(m_candidate.data(), m_rowBytes);
        if (sum < least) {
            least = sum;
            out[0] = type;
            std::memcpy(out + 1, m_candidate.data(), m_rowBytes);
        }
    }
}
