#include "imaging/png/PngRowFilters.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

namespace {

using Row = std::span<const std::uint8_t>;

/// 65536 × the binary logarithm of `number`, rounded down. `number` is above 0.
constexpr std::int64_t logarithm(std::uint32_t number) {
    int whole = 0;
    while (number >> whole > 1)
        ++whole;
    // The mantissa, from 1 to 2, with 30 bits behind the point. A bit of the logarithm is whether its square
    // reaches 2.
    std::uint64_t mantissa = (std::uint64_t{number} << 30) >> whole;
    std::int64_t result = whole;
    for (int bit = 0; bit < 16; ++bit) {
        mantissa = mantissa * mantissa >> 30;
        const bool isSet = mantissa >= std::uint64_t{2} << 30;
        mantissa >>= isSet ? 1 : 0;
        result = 2 * result + (isSet ? 1 : 0);
    }
    return result;
}

/// `count` × the logarithm of `count`.
std::int64_t weighted(std::uint32_t count) {
    static constexpr auto table = [] {
        std::array<std::int64_t, 2048> products{};
        for (std::uint32_t i = 1; i < products.size(); ++i)
            products[i] = i * logarithm(i);
        return products;
    }();
    return count < table.size() ? table[count] : count * logarithm(count);
}

/// Counts the pairs of neighbours in a row.
class PairCounts {
  public:
    PairCounts() : m_counts(std::size_t{1} << 16) {}

    /// Calls `function` with the count of each pair that the row has.
    template <typename Function>
    void forEach(Row row, const Function& function) {
        for (std::size_t i = 1; i < row.size(); ++i)
            ++of(row, i);
        for (std::size_t i = 1; i < row.size(); ++i) {
            if (std::uint32_t& count = of(row, i); count > 0)
                function(std::exchange(count, 0));
        }
    }

  private:
    std::uint32_t& of(Row row, std::size_t i) {
        return m_counts[static_cast<std::size_t>(row[i - 1]) << 8 | row[i]];
    }

    std::vector<std::uint32_t> m_counts;
};

/// The cost by `costOf` of the count of each pair.
template <typename CostOf>
PngRowFilters::Cost pairCost(const CostOf& costOf) {
    return [counts = std::make_shared<PairCounts>(), costOf](Row /*above*/, Row row) {
        std::int64_t cost = 0;
        counts->forEach(row, [&](std::uint32_t count) { cost += costOf(count); });
        return cost;
    };
}

int paeth(int left, int up, int corner) {
    const int estimate = left + up - corner;
    const int toLeft = std::abs(estimate - left);
    const int toUp = std::abs(estimate - up);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toUp && toLeft <= toCorner)
        return left;
    return toUp <= toCorner ? up : corner;
}

/// A row and the one above, each behind zeros for the pixel left of it.
struct RowPair {
    const std::uint8_t* row;
    const std::uint8_t* up;
    std::size_t pixelBytes;

    int at(std::size_t i) const { return row[i]; }
    int above(std::size_t i) const { return up[i]; }
    int left(std::size_t i) const { return i < pixelBytes ? 0 : row[i - pixelBytes]; }
    int corner(std::size_t i) const { return i < pixelBytes ? 0 : up[i - pixelBytes]; }
};

template <typename Prediction>
void subtract(const RowPair& rows, std::span<std::uint8_t> out, const Prediction& predicted) {
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<std::uint8_t>(rows.at(i) - predicted(i));
}

/// Writes the filter byte and the filtered row.
void filter(const PngSamples& samples, int y, std::uint8_t type, std::span<std::uint8_t> out) {
    const std::vector<std::uint8_t> zeros(y == 0 ? samples.rowBytes : 0);
    const std::uint8_t* row = samples.bytes.data() + static_cast<std::size_t>(y) * samples.rowBytes;
    const RowPair rows{row, y == 0 ? zeros.data() : row - samples.rowBytes, samples.pixelBytes()};
    out[0] = type;
    const std::span<std::uint8_t> bytes = out.subspan(1);
    switch (type) {
    case 1:
        return subtract(rows, bytes, [&](std::size_t i) { return rows.left(i); });
    case 2:
        return subtract(rows, bytes, [&](std::size_t i) { return rows.above(i); });
    case 3:
        return subtract(rows, bytes, [&](std::size_t i) { return (rows.left(i) + rows.above(i)) / 2; });
    case 4:
        return subtract(rows, bytes,
                        [&](std::size_t i) { return paeth(rows.left(i), rows.above(i), rows.corner(i)); });
    default:
        return subtract(rows, bytes, [](std::size_t /*i*/) { return 0; });
    }
}

} // namespace

PngRowFilters::Cost PngRowFilters::sums() {
    return [](Row /*above*/, Row row) {
        std::int64_t sum = 0;
        for (const std::uint8_t byte : row.subspan(1))
            sum += byte < 128 ? byte : 256 - byte;
        return sum;
    };
}

PngRowFilters::Cost PngRowFilters::entropy() {
    return [](Row /*above*/, Row row) {
        std::array<std::uint32_t, 256> counts{};
        for (const std::uint8_t byte : row.subspan(1))
            ++counts[byte];
        std::int64_t saved = 0;
        for (const std::uint32_t count : counts)
            saved += weighted(count);
        return -saved;
    };
}

PngRowFilters::Cost PngRowFilters::pairs() {
    return pairCost([](std::uint32_t /*count*/) { return std::int64_t{1}; });
}

PngRowFilters::Cost PngRowFilters::pairEntropy() {
    return pairCost([](std::uint32_t count) { return -weighted(count); });
}

PngRowFilters::Cost PngRowFilters::lengths(std::function<std::size_t(Row)> length) {
    return [length = std::move(length), bytes = std::vector<std::uint8_t>()](Row above, Row row) mutable {
        const std::size_t context = std::min(above.size(), 2 * row.size());
        const Row last = above.last(context);
        bytes.assign(last.begin(), last.end());
        bytes.insert(bytes.end(), row.begin(), row.end());
        return static_cast<std::int64_t>(length(bytes));
    };
}

PngRowFilters::Types PngRowFilters::chosen(const PngSamples& samples, const Cost& cost) {
    const std::size_t size = 1 + samples.rowBytes;
    std::vector<std::uint8_t> done;
    done.reserve(size * static_cast<std::size_t>(samples.height));
    Types types;
    std::array<std::vector<std::uint8_t>, typeCount> rows;
    for (int y = 0; y < samples.height; ++y) {
        std::array<std::int64_t, typeCount> costs{};
        for (std::uint8_t type = 0; type < typeCount; ++type) {
            rows[type].resize(size);
            filter(samples, y, type, rows[type]);
            costs[type] = cost(done, rows[type]);
        }
        const auto best = static_cast<std::size_t>(std::ranges::min_element(costs) - costs.begin());
        types.push_back(static_cast<std::uint8_t>(best));
        done.insert(done.end(), rows[best].begin(), rows[best].end());
    }
    return types;
}

std::vector<std::uint8_t> PngRowFilters::filtered(const PngSamples& samples, const Types& types) {
    const std::size_t size = 1 + samples.rowBytes;
    std::vector<std::uint8_t> bytes(size * types.size());
    for (std::size_t y = 0; y < types.size(); ++y)
        filter(samples, static_cast<int>(y), types[y], std::span(bytes).subspan(y * size, size));
    return bytes;
}
