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

/// From a ratio of two on the filter lets nothing of the finest pattern through, that of every other sample.
/// Where the source's edge cuts taps off that is lost; the smallest change of the others that restores it,
/// and that changes neither their sum nor their centre of gravity, is added to `values`.
void restoreParity(std::vector<double>& values) {
    const auto count = static_cast<double>(values.size());
    // Three conditions on change(i) = a + b x + c s, where x is the tap's place from the middle and s is 1
    // and -1 in turn: the sum of change, of x × change and of s × change.
    double parity = 0;
    double squares = 0;
    double signs = 0;
    double signedPlaces = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double x = static_cast<double>(i) - (count - 1) / 2;
        const double s = i % 2 == 0 ? 1 : -1;
        parity += s * values[i];
        squares += x * x;
        signs += s;
        signedPlaces += s * x;
    }
    // With x centred the first two conditions give a and b from c.
    const double remaining = count - signs * signs / count - signedPlaces * signedPlaces / squares;
    if (values.size() < 4 || remaining < 1)
        return;
    const double c = -parity / remaining;
    const double a = -c * signs / count;
    const double b = -c * signedPlaces / squares;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double x = static_cast<double>(i) - (count - 1) / 2;
        values[i] += a + b * x + (i % 2 == 0 ? c : -c);
    }
}

/// Makes every `classes`-th tap, counted from `first`, whole numbers that sum to exactly `total`.
void quantiseClass(const std::vector<double>& values, std::vector<int>& weights, std::size_t first,
                   std::size_t classes, int total, bool isMiddle) {
    double sum = 0;
    for (std::size_t i = first; i < values.size(); i += classes)
        sum += values[i];
    int rest = total;
    std::size_t largest = first;
    for (std::size_t i = first; i < values.size(); i += classes) {
        weights[i] = static_cast<int>(std::lround(values[i] / sum * total));
        rest -= weights[i];
        if (weights[i] > weights[largest])
            largest = i;
    }
    const std::size_t mirror = values.size() - 1 - largest;
    const bool hasMirror = isMiddle && mirror != largest && mirror % classes == largest % classes;
    if (hasMirror) {
        // Equal pairs have an even sum, so has the total, and so has the rest.
        weights[largest] += rest / 2;
        weights[mirror] += rest / 2;
    } else {
        weights[largest] += rest;
    }
}

/// The taps as whole numbers that sum to exactly `ResamplerWeights::one`. `isMiddle` says that the pixel is
/// its own mirror image, and so must its taps be; `separatesParity` that the even and the odd taps have the
/// same sum.
Taps quantised(int start, std::vector<double> values, bool isMiddle, bool separatesParity) {
    const std::size_t count = values.size();
    if (separatesParity)
        restoreParity(values);
    if (isMiddle) {
        for (std::size_t i = 0; i < count / 2; ++i) {
            const double mean = (values[i] + values[count - 1 - i]) / 2;
            values[i] = values[count - 1 - i] = mean;
        }
    }
    Taps taps{start, std::vector<int>(count)};
    const std::size_t classes = separatesParity && count > 1 ? 2 : 1;
    for (std::size_t first = 0; first < classes; ++first)
        quantiseClass(values, taps.weights, first, classes, ResamplerWeights::one / static_cast<int>(classes),
                      isMiddle);
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
    // The samples whose middles lie inside the filter.
    int first = std::max(0, static_cast<int>(std::floor(centre - reach + 0.5)));
    int last = std::min(mapping.sourceLength - 1, static_cast<int>(std::ceil(centre + reach - 1.5)));
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
    // A pixel whose middle lies outside the stretched source, with little of it in reach, takes the nearest
    // sample. All taps in reach would sum to about the stretch.
    if (values.empty() || sum < 0.5 * stretch) {
        const auto nearest = static_cast<int>(std::floor(centre));
        return {std::clamp(nearest, 0, mapping.sourceLength - 1), {ResamplerWeights::one}};
    }
    return quantised(first, std::move(values), isMiddle, stretch >= 2);
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
        std::ranges::transform(taps.weights, out + lead,
                               [](int weight) { return static_cast<std::int16_t>(weight); });
        out += 2 * m_pairs;
    }
}
