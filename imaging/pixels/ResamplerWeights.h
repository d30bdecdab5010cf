#pragma once

#include "imaging/pixels/AxisMapping.h"

#include <cstdint>
#include <vector>

/// The filter of one axis, ready for arithmetic in whole numbers. For each target pixel: the first source
/// sample and as many pairs of weights as every target pixel has (padded with zeros). Weights have 14
/// fractional bits and sum to exactly one.
class ResamplerWeights {
  public:
    static constexpr int fractionBits = 14;
    static constexpr int one = 1 << fractionBits;

    explicit ResamplerWeights(const AxisMapping& mapping);

    /// The same with each first sample at an even index, if need be behind a weight of zero.
    ResamplerWeights withEvenStarts() const;

    int pairs() const { return m_pairs; }
    int start(int target) const { return m_starts[static_cast<std::size_t>(target)]; }
    /// 2 × pairs() weights.
    const std::int16_t* weights(int target) const {
        return m_weights.data() + static_cast<std::size_t>(target) * static_cast<std::size_t>(2 * m_pairs);
    }

    /// Where the target pixels [begin, end) all have the same weights, each two samples behind the one
    /// before, as most have in a reduction by two. Empty where there are none.
    int uniformBegin() const { return m_uniformBegin; }
    int uniformEnd() const { return m_uniformEnd; }

  private:
    ResamplerWeights() = default;

    /// Lays the rows of `from`, of that many weights, out as far apart as the longest needs, each behind as
    /// many zeros as `leads` says.
    void layOut(const std::int16_t* from, std::size_t fromRow, const std::vector<int>& lengths,
                const std::vector<int>& leads);
    void findUniform();

    int m_pairs = 0;
    int m_uniformBegin = 0;
    int m_uniformEnd = 0;
    std::vector<int> m_starts;
    std::vector<std::int16_t> m_weights;
};
