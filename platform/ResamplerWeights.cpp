#include "platform/ResamplerWeights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double lobes = 3;

double lanczos3(double x) {
    if (x == 0)
        return 1;
    if (std::abs(x) >= lobes)
        return 0;
    const double angle = std::numbers::pi * x;
    return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

/// The taps of one target pixel.
struct Taps {
    int start = 0;
    std::vector<int> weights;
};

/// The taps as whole numbers that sum to exactly `ResamplerWeights::one`. `isMiddle` says that the pixel is its own
/// mirror image, and so must its taps be.
Taps quantised(int start, std::vector<double> values, bool isMiddle) {
    const std::size_t count = values.size();
    if (isMiddle) {
        for (std::size_t i = 0; i < count / 2; ++i) {
            const double mean = (values[i] + values[count - 1 - i]) / 2;
            values[i] = values[count - 1 - i] = mean;
        }
    }
    double sum = 0;
    for (const double value : values)
        sum += value;
    Taps taps{start, std::vector<int>(count)};
    int total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        taps.weights[i] = static_cast<int>(std::lround(values[i] / sum * ResamplerWeights::one));
        total += taps.weights[i];
    }
    const int rest = ResamplerWeights::one - total;
    if (!isMiddle)
        *std::ranges::max_element(taps.weights) += rest;
    else if (count % 2 == 1)
        taps.weights[count / 2] += rest;
    else {
        // Equal pairs have an even sum, so has `one`, and so has the rest.
        taps.weights[count / 2 - 1] += rest / 2;
        taps.weights[count / 2] += rest / 2;
    }
    // Zeros at the ends only cost time.
    const auto isZero = [](int weight) { return weight == 0; };
    const auto last = std::ranges::find_if_not(taps.weights.rbegin(), taps.weights.rend(), isZero).base();
    taps.weights.erase(last, taps.weights.end());
    const auto first = std::ranges::find_if_not(taps.weights, isZero);
    taps.start += static_cast<int>(first - taps.weights.begin());
    taps.weights.erase(taps.weights.begin(), first);
    return taps;
}

Taps tapsFor(const AxisMapping& mapping, int target, bool isMiddle) {
    const double ratio = mapping.ratio();
    const double stretch = std::max(ratio, 1.0);
    const double centre = (target + 0.5 - mapping.origin) * ratio;
    const double reach = lobes * stretch;
    int first = std::max(0, static_cast<int>(std::floor(centre - reach)));
    int last = std::min(mapping.sourceLength - 1, static_cast<int>(std::ceil(centre + reach)));
    if (isMiddle) {
        // The middle of the source is the middle of the window.
        const int margin = std::min(first, mapping.sourceLength - 1 - last);
        first = margin;
        last = mapping.sourceLength - 1 - margin;
    }
    std::vector<double> values;
    double sum = 0;
    for (int i = first; i <= last; ++i) {
        values.push_back(lanczos3((i + 0.5 - centre) / stretch));
        sum += values.back();
    }
    // A pixel outside the stretched source, or with hardly anything of it in reach, takes the nearest sample.
    if (values.empty() || sum < 0.1) {
        const auto nearest = static_cast<int>(std::floor(centre));
        return {std::clamp(nearest, 0, mapping.sourceLength - 1), {ResamplerWeights::one}};
    }
    return quantised(first, std::move(values), isMiddle);
}

} // namespace

ResamplerWeights::ResamplerWeights(const AxisMapping& mapping, bool alignedStarts) {
    const int count = mapping.targetLength;
    const bool symmetric = mapping.origin == 0 && mapping.length == count;
    std::vector<Taps> all(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Taps& taps = all[static_cast<std::size_t>(i)];
        if (symmetric && 2 * i >= count) {
            const Taps& mirror = all[static_cast<std::size_t>(count - 1 - i)];
            taps.weights.assign(mirror.weights.rbegin(), mirror.weights.rend());
            taps.start = mapping.sourceLength - mirror.start - static_cast<int>(mirror.weights.size());
        } else {
            taps = tapsFor(mapping, i, symmetric && 2 * i + 1 == count);
        }
    }
    for (const Taps& taps : all) {
        const int lead = alignedStarts ? taps.start % 2 : 0;
        m_pairs = std::max(m_pairs, (lead + static_cast<int>(taps.weights.size()) + 1) / 2);
    }
    m_starts.reserve(all.size());
    m_weights.assign(all.size() * static_cast<std::size_t>(2 * m_pairs), 0);
    auto* out = m_weights.data();
    for (const Taps& taps : all) {
        const int lead = alignedStarts ? taps.start % 2 : 0;
        m_starts.push_back(taps.start - lead);
        std::ranges::transform(taps.weights, out + lead, [](int weight) { return static_cast<std::int16_t>(weight); });
        out += 2 * m_pairs;
    }
}
