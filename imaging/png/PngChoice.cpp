#include "imaging/png/PngChoice.h"

#include "base/StageTimes.h"

#include <algorithm>
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

    /// What runs leave of it.
    double runs() {
        if (!m_runs)
            m_runs = runsOf(m_sample.filled());
        return *m_runs;
    }

    /// What the quick method leaves of it.
    Result<double> quick() {
        if (!m_quick)
            m_quick = quickOf(m_sample.filled());
        return *m_quick;
    }

    // The same of its middle third.
    double runsOfMiddle() const { return runsOf(middle()); }
    Result<double> quickOfMiddle() const { return quickOf(middle()); }

  private:
    using Bytes = std::span<const std::uint8_t>;

    Bytes middle() const {
        const std::size_t third = m_sample.size / 3;
        return m_sample.filled().subspan(third, std::max<std::size_t>(third, 1));
    }

    static double part(std::size_t length, Bytes bytes) {
        return static_cast<double>(length) / static_cast<double>(bytes.size());
    }
    static double runsOf(Bytes bytes) { return part(Deflate::runsLength(bytes), bytes); }
    static Result<double> quickOf(Bytes bytes) {
        const Result<std::size_t> length = Deflate::length(bytes, Method::Quick);
        if (!length)
            return length.error();
        return part(*length, bytes);
    }

    PngFilterStrategy m_filter;
    FilteredRows::Buffer m_sample;
    std::optional<double> m_runs;
    std::optional<Result<double>> m_quick;
};

/// Where more than that is left there are few repetitions to be found but runs.
constexpr double dense = 0.3;

/// The filter that leaves less.
Result<Trial> betterTrial(const FilteredRows& rows) {
    Trial adaptive(rows, PngFilterStrategy::Adaptive);
    Trial plain(rows, PngFilterStrategy::None);
    // In dense rows runs are as good a guide, and a faster one.
    if (adaptive.runs() > dense && plain.runs() > dense)
        return adaptive.runs() < plain.runs() ? std::move(adaptive) : std::move(plain);
    const Result<double> adaptiveLeft = adaptive.quick();
    if (!adaptiveLeft)
        return adaptiveLeft.error();
    const Result<double> plainLeft = plain.quick();
    if (!plainLeft)
        return plainLeft.error();
    return *adaptiveLeft < *plainLeft ? std::move(adaptive) : std::move(plain);
}

Result<Method> methodFor(Trial& trial) {
    const bool isDense = trial.runs() > dense;
    // In dense rows the fast method may cost a little, and a part of the sample tells.
    const Result<double> quick = isDense ? trial.quickOfMiddle() : trial.quick();
    if (!quick)
        return quick.error();
    if (isDense && trial.runsOfMiddle() <= 1.05 * *quick)
        return Method::Runs;
    // Elsewhere the thorough method finds more than the quick one shows.
    if (!isDense && trial.runs() <= 0.92 * *quick)
        return Method::Runs;
    return *quick > dense ? Method::Quick : Method::Thorough;
}

} // namespace

Result<PngChoice> PngChoice::of(const FilteredRows& rows, int height, const PngOptions& options) {
    if (options.filter && options.method)
        return PngChoice{*options.filter, *options.method, 0};
    const StageTimes::Timer timer(Stage::Choose);
    Result<Trial> trial = options.filter ? Trial(rows, *options.filter) : betterTrial(rows);
    if (!trial)
        return trial.error();
    const Result<Method> method = options.method ? Result<Method>(*options.method) : methodFor(*trial);
    if (!method)
        return method.error();
    return PngChoice{trial->filter(), *method,
                     static_cast<std::size_t>(trial->runs() * static_cast<double>(rows.size(height)))};
}
