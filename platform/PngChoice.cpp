#include "platform/PngChoice.h"

#include "platform/StageTimes.h"

#include <array>
#include <cstddef>
#include <optional>
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
            left = static_cast<double>(Deflate::length(m_sample.filled(), method)) /
                   static_cast<double>(m_sample.size);
        return *left;
    }

  private:
    PngFilterStrategy m_filter;
    FilteredRows::Buffer m_sample;
    std::array<std::optional<double>, 3> m_left;
};

/// From here on a sample is called dense: where less is left there are more repetitions to be found.
constexpr double denseRuns = 0.35;
constexpr double dense = 0.3;

/// The filter that leaves less.
Trial betterTrial(const FilteredRows& rows) {
    Trial adaptive(rows, PngFilterStrategy::Adaptive);
    Trial plain(rows, PngFilterStrategy::None);
    // In dense rows runs are as good a guide, and a faster one.
    const Method guide = adaptive.left(Method::Runs) > denseRuns && plain.left(Method::Runs) > denseRuns
                             ? Method::Runs
                             : Method::Quick;
    return adaptive.left(guide) < plain.left(guide) ? std::move(adaptive) : std::move(plain);
}

/// None where memory is short.
std::optional<Method> methodFor(Trial& trial) {
    const double quick = trial.left(Method::Quick);
    if (quick == 0)
        return std::nullopt;
    // In dense rows the fast method may cost a little. Elsewhere the thorough one finds more than the quick
    // one shows.
    const bool isDense = quick > dense;
    const double allowed = isDense ? 1.05 : 0.92;
    if (trial.left(Method::Runs) <= allowed * quick)
        return Method::Runs;
    return isDense ? Method::Quick : Method::Thorough;
}

} // namespace

std::optional<PngChoice> PngChoice::of(const FilteredRows& rows, int height, const PngOptions& options) {
    if (options.filter && options.method)
        return PngChoice{*options.filter, *options.method, 0};
    const StageTimes::Timer timer(Stage::Choose);
    Trial trial = options.filter ? Trial(rows, *options.filter) : betterTrial(rows);
    const std::optional<Method> method = options.method ? options.method : methodFor(trial);
    if (!method)
        return std::nullopt;
    const double left = trial.left(*method == Method::Runs ? Method::Runs : Method::Quick);
    return PngChoice{trial.filter(), *method,
                     static_cast<std::size_t>(left * static_cast<double>(rows.size(height)))};
}
