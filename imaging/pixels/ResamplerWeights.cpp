#include "imaging/pixels/ResamplerWeights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

/// How far a filter reaches to each side, in source samples, before it is stretched.
double reachOf(ResampleFilter filter) {
    switch (filter) {
    case ResampleFilter::Nearest:
        return 0.5;
    case ResampleFilter::Linear:
        return 1;
    case ResampleFilter::Cubic:
        return 2;
    default:
        return 3;
    }
}

double lanczos3(double x) {
    constexpr double lobes = 3;
    if (x == 0)
        return 1;
    if (std::abs(x) >= lobes)
        return 0;
    const double angle = std::numbers::pi * x;
    // The sine of three times an angle is s (3 - 4 s s).
    const double s = std::sin(angle / lobes);
    return lobes * s * s * (3 - 4 * s * s) / (angle * angle);
}

double cubic(double distance) {
    const double x = std::abs(distance);
    if (x < 1)
        return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

double valueOf(ResampleFilter filter, double x) {
    switch (filter) {
    case ResampleFilter::Linear:
        return std::max(0.0, 1 - std::abs(x));
    case ResampleFilter::Cubic:
        return cubic(x);
    default:
        return lanczos3(x);
    }
}

/// The taps of one target pixel.
struct Taps {
    int start = 0;
    std::vector<int> weights;
};

/// Gives the even and the odd taps the same sum. From a ratio of two on the filter lets nothing of the finest
/// pattern through, which has a period of two samples. Where the source's edge cuts taps off, the filter
/// loses this property. The smallest change of the remaining taps that restores it, and keeps their sum and
/// their centre of gravity, is added to `values`.
void restoreParity(std::vector<double>& values) {
    const auto count = static_cast<double>(values.size());
    // change(i) = a + b x + c s. x is the tap's place from the middle; s is 1 and -1 in turn. There are three
    // conditions: on the sum of change, of x × change and of s × change.
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

/// Rounds every `classes`-th tap, counted from `first`, to a whole number. Their sum is exactly `total`.
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
        // Mirrored taps are equal, so their sum is even. The total is even, so the rest is too.
        weights[largest] += rest / 2;
        weights[mirror] += rest / 2;
    } else {
        weights[largest] += rest;
    }
}

/// The taps as whole numbers that sum to exactly `ResamplerWeights::one`. With `isMiddle` the pixel is its
/// own mirror image, and its taps are made symmetric. With `separatesParity` the even and the odd taps get
/// the same sum.
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

/// Makes the taps of one target pixel after another.
class TapMaker {
  public:
    explicit TapMaker(const AxisMapping& mapping)
        : m_mapping(mapping),
          m_ratio(mapping.ratio()),
          m_stretch(std::max(m_ratio, 1.0)),
          m_reach(reachOf(mapping.filter) * m_stretch) {}

    /// The most taps that a pixel may have.
    std::size_t bound() const { return static_cast<std::size_t>(std::ceil(2 * m_reach)) + 1; }

    Taps taps(int target, bool isMiddle) {
        const double centre = (target + 0.5 - m_mapping.origin) * m_ratio;
        const int end = m_mapping.sourceLength - 1;
        if (m_mapping.filter == ResampleFilter::Nearest)
            return {std::clamp(static_cast<int>(std::floor(centre)), 0, end), {ResamplerWeights::one}};
        // The samples whose middles lie inside the filter.
        int first = std::max(0, static_cast<int>(std::floor(centre - m_reach + 0.5)));
        int last = std::min(end, static_cast<int>(std::ceil(centre + m_reach - 1.5)));
        if (isMiddle) {
            // The middle of the source is the middle of the window.
            first = std::min(first, end - last);
            last = end - first;
        }
        // Where the ratio is a whole number, pixels away from the edges have the same taps as the pixel
        // before.
        const double phase = centre - first;
        const bool isWhole = first > 0 && last < end;
        if (isWhole && phase == m_lastPhase && !isMiddle)
            return {first + m_lastLead, m_last.weights};

        std::vector<double> values;
        double sum = 0;
        for (int i = first; i <= last; ++i) {
            values.push_back(valueOf(m_mapping.filter, (i + 0.5 - centre) / m_stretch));
            sum += values.back();
        }
        // The middle of a pixel may lie outside the stretched source, with little of the source in reach. The
        // pixel then takes the nearest sample. All taps in reach would sum to roughly the stretch.
        if (values.empty() || sum < 0.5 * m_stretch) {
            const auto nearest = static_cast<int>(std::floor(centre));
            return {std::clamp(nearest, 0, end), {ResamplerWeights::one}};
        }
        const bool separatesParity = m_stretch >= 2 && m_mapping.filter == ResampleFilter::Lanczos3;
        Taps taps = quantised(first, std::move(values), isMiddle, separatesParity);
        if (isWhole && !isMiddle) {
            m_lastPhase = phase;
            m_lastLead = taps.start - first;
            m_last = taps;
        }
        return taps;
    }

  private:
    const AxisMapping& m_mapping;
    double m_ratio;
    double m_stretch;
    double m_reach;
    double m_lastPhase = -1;
    int m_lastLead = 0;
    Taps m_last;
};

} // namespace

ResamplerWeights::ResamplerWeights(const AxisMapping& mapping) {
    const auto count = static_cast<std::size_t>(mapping.targetLength);
    // Of two samples that are equally near, Nearest takes the second one in both halves of a picture.
    const bool symmetric = 2 * mapping.origin + mapping.length == mapping.targetLength &&
                           mapping.filter != ResampleFilter::Nearest;
    TapMaker maker(mapping);
    const std::size_t wideRow = maker.bound();
    m_starts.resize(count);
    std::vector<std::int16_t> rows(count * wideRow);
    std::vector<int> lengths(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::int16_t* row = rows.data() + i * wideRow;
        const std::size_t mirror = count - 1 - i;
        if (symmetric && i > mirror) {
            const std::int16_t* other = rows.data() + mirror * wideRow;
            std::reverse_copy(other, other + lengths[mirror], row);
            lengths[i] = lengths[mirror];
            m_starts[i] = mapping.sourceLength - m_starts[mirror] - lengths[mirror];
            continue;
        }
        const Taps taps = maker.taps(static_cast<int>(i), symmetric && i == mirror);
        std::ranges::transform(taps.weights, row,
                               [](int weight) { return static_cast<std::int16_t>(weight); });
        lengths[i] = static_cast<int>(taps.weights.size());
        m_starts[i] = taps.start;
    }
    layOut(rows.data(), wideRow, lengths, std::vector<int>(count));
}

ResamplerWeights ResamplerWeights::withEvenStarts() const {
    ResamplerWeights even;
    even.m_starts = m_starts;
    const auto row = static_cast<std::size_t>(stride());
    std::vector<int> lengths;
    std::vector<int> leads;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        std::size_t length = row;
        while (length > 0 && m_weights[i * row + length - 1] == 0)
            --length;
        lengths.push_back(static_cast<int>(length));
        leads.push_back(m_starts[i] % 2);
        even.m_starts[i] -= leads[i];
    }
    even.layOut(m_weights.data(), row, lengths, leads);
    return even;
}

void ResamplerWeights::layOut(const std::int16_t* from, std::size_t fromRow, const std::vector<int>& lengths,
                              const std::vector<int>& leads) {
    for (std::size_t i = 0; i < lengths.size(); ++i)
        m_pairs = std::max(m_pairs, (leads[i] + lengths[i] + 1) / 2);
    const auto row = static_cast<std::size_t>(stride());
    constexpr std::size_t longestVector = 32;
    m_weights.resize(lengths.size() * row + longestVector);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const std::int16_t* const weights = from + i * fromRow;
        std::copy(weights, weights + lengths[i], m_weights.data() + i * row + leads[i]);
    }
    findUniform();
}

void ResamplerWeights::findUniform() {
    const int count = static_cast<int>(m_starts.size());
    const int middle = count / 2;
    const auto isLikeMiddle = [&](int i) {
        return start(i) - start(middle) == 2 * (i - middle) &&
               std::equal(weights(i), weights(i) + 2 * m_pairs, weights(middle));
    };
    m_uniformBegin = middle;
    while (m_uniformBegin > 0 && isLikeMiddle(m_uniformBegin - 1))
        --m_uniformBegin;
    m_uniformEnd = middle;
    while (m_uniformEnd < count && isLikeMiddle(m_uniformEnd))
        ++m_uniformEnd;
}
