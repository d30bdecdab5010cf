#include "imaging/png/PngChoice.h"

#include "base/StageTimes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

namespace {

using Deflate::Method;

/// A sample filtered one way.
class Trial {
  public:
    Trial(const FilteredRows& rows, PngFilterStrategy filter)
        : m_filter(filter), m_sample(rows.sample(filter)) {}

    PngFilterStrategy filter() const { return m_filter; }

    /// What a method leaves of it; 0 where memory is short.
    double left(Method method) {
        std::optional<double>& left = m_left[static_cast<std::size_t>(method)];
        if (!left)
            left = partLeft(m_sample.filled(), method);
        return *left;
    }

    /// The same of its middle third.
    double leftOfMiddle(Method method) const {
        const std::size_t third = m_sample.size / 3;
        return partLeft(m_sample.filled().subspan(third, std::max<std::size_t>(third, 1)), method);
    }

  private:
    static double partLeft(std::span<const std::uint8_t> bytes, Method method) {
        return static_cast<double>(Deflate::length(bytes, method)) / static_cast<double>(bytes.size());
    }

    PngFilterStrategy m_filter;
    FilteredRows::Buffer m_sample;
    std::array<std::optional<double>, 3> m_left;
};

/// Where more than that is left there are few repetitions to be found but runs.
constexpr double dense = 0.3;

/// The filter that leaves less. None where memory is short.
std::optional<Trial> betterTrial(const FilteredRows& rows) {
    Trial adaptive(rows, PngFilterStrategy::Adaptive);
    Trial plain(rows, PngFilterStrategy::None);
    // In dense rows runs are as good a guide, and a faster one.
    const Method guide = adaptive.left(Method::Runs) > dense && plain.left(Method::Runs) > dense
                             ? Method::Runs
                             : Method::Quick;
    if (adaptive.left(guide) == 0 || plain.left(guide) == 0)
        return std::nullopt;
    return adaptive.left(guide) < plain.left(guide) ? std::move(adaptive) : std::move(plain);
}

/// None where memory is short.
std::optional<Method> methodFor(Trial& trial) {
    const bool isDense = trial.left(Method::Runs) > dense;
    // In dense rows the fast method may cost a little, and a part of the sample tells.
    const double quick = isDense ? trial.leftOfMiddle(Method::Quick) : trial.left(Method::Quick);
    if (quick == 0)
        return std::nullopt;
    if (isDense && trial.leftOfMiddle(Method::Runs) <= 1.05 * quick)
        return Method::Runs;
    // Elsewhere the thorough method finds more than the quick one shows.
    if (!isDense && trial.left(Method::Runs) <= 0.92 * quick)
        return Method::Runs;
    return quick > dense ? Method::Quick : Method::Thorough;
}

} // namespace

std::optional<PngChoice> PngChoice::of(const FilteredRows& rows, int height, const PngOptions& options) {
    if (options.filter && options.method)
        return PngChoice{*options.filter, *options.method, 0};
    const StageTimes::Timer timer(Stage::Choose);
    std::optional<Trial> trial = options.filter ? Trial(rows, *options.filter) : betterTrial(rows);
    if (!trial)
        return std::nullopt;
    const std::optional<Method> method = options.method ? options.method : methodFor(*trial);
    if (!method)
        return std::nullopt;
    return PngChoice{
        trial->filter(), *method,
        static_cast<std::size_t>(trial->left(Method::Runs) * static_cast<double>(rows.size(height)))};
}
