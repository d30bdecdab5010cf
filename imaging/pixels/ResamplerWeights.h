#pragma once

#include "imaging/pixels/AxisMapping.h"

#include <cstdint>
#include <vector>

/// The filter of one axis, ready for arithmetic in whole numbers. Each target pixel has the index of its
/// first source sample and its weights. All pixels have the same number of pairs of weights, padded with
/// zeros. Weights have 14 fractional bits and sum to exactly one.
class ResamplerWeights {
  public:
    static constexpr int fractionBits = 14;
    static constexpr int one = 1 << fractionBits;
    /// As many pairs as the longest vectors take at once.
    static constexpr int pairsTogether = 4;

    explicit ResamplerWeights(const AxisMapping& mapping);

    /// The same filter with each first sample at an even index. Where the first sample was odd, a weight of
    /// zero comes before its own.
    ResamplerWeights withEvenStarts() const;

    int pairs() const { return m_pairs; }
    int start(int target) const { return m_starts[static_cast<std::size_t>(target)]; }
    /// 2 × pairs() weights, and zeros up to stride(). A vector of 64 bytes may be read from each of them.
    const std::int16_t* weights(int target) const {
        return m_weights.data() + static_cast<std::size_t>(target) * static_cast<std::size_t>(stride());
    }
    int stride() const { return (m_pairs + pairsTogether - 1) / pairsTogether * 2 * pairsTogether; }

    /// The target pixels [begin, end) all have the same weights, and each starts two samples after the pixel
    /// before it. In a reduction by two these are most pixels.
    int uniformBegin() const { return m_uniformBegin; }
    int uniformEnd() const { return m_uniformEnd; }

  private:
    ResamplerWeights() = default;

    /// Copies rows of weights out of `from`, where they start `fromRow` weights apart. Row i has lengths[i]
    /// weights, and leads[i] zeros are put before them. All rows get the length that the longest needs.
    void layOut(const std::int16_t* from, std::size_t fromRow, const std::vector<int>& lengths,
                const std::vector<int>& leads);
    void findUniform();

    int m_pairs = 0;
    int m_uniformBegin = 0;
    int m_uniformEnd = 0;
    std::vector<int> m_starts;
    std::vector<std::int16_t> m_weights;
};
