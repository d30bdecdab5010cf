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

/// A sample of the rows with one filter strategy. Tells how well methods compress it, as the compressed
/// length divided by the sample's length.
class Trial {
  public:
    Trial(const FilteredRows& rows, PngFilterStrategy filter)
        : m_filter(filter), m_sample(rows.sample(filter)) {}

    PngFilterStrategy filter() const { return m_filter; }

    /// By Method::Runs.
    double runs() {
        if (!m_runs)
            m_runs = runsOf(m_sample.filled());
        return *m_runs;
    }

    /// What the thorough method leaves of it, or nearly that.
    Result<double> thorough() {
        if (!m_thorough)
            m_thorough = thoroughOf(m_sample.filled());
        return *m_thorough;
    }

    // What runs and the quick method leave of its middle third.
    double runsOfMiddle() const { return runsOf(middle()); }
    Result<double> quickOfMiddle() const { return leftBy(Method::Quick, middle()); }

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
    static Result<double> thoroughOf(Bytes bytes) {
        constexpr std::size_t few = std::size_t{4} << 10;
        if (bytes.size() <= few)
            return leftBy(Method::Thorough, bytes);
        // The quick method shows it in less time.
        const Result<double> quick = leftBy(Method::Quick, bytes);
        constexpr double ofQuick = 0.97;
        return quick ? Result<double>(ofQuick * *quick) : quick;
    }
    static Result<double> leftBy(Method method, Bytes bytes) {
        const Result<std::size_t> length = Deflate::length(bytes, method);
        if (!length)
            return length.error();
        return part(*length, bytes);
    }

    PngFilterStrategy m_filter;
    FilteredRows::Buffer m_sample;
    std::optional<double> m_runs;
    std::optional<Result<double>> m_thorough;
};

/// Rows that compress to more than this part of their length are dense: they have few repetitions except
/// runs.
constexpr double dense = 0.3;

/// The thorough method's time grows with the rows. It counts as if the method left this part of them more:
/// where it saves less than that, runs are the better choice.
constexpr double thoroughTime = 0.0015;

/// About what the better method leaves of rows that are not dense.
Result<double> leftOf(Trial& trial) {
    const Result<double> thorough = trial.thorough();
    if (!thorough)
        return thorough.error();
    return std::min(trial.runs(), *thorough + thoroughTime);
}

/// The trial with the filter strategy that compresses better.
Result<Trial> betterTrial(const FilteredRows& rows) {
    Trial adaptive(rows, PngFilterStrategy::Adaptive);
    Trial plain(rows, PngFilterStrategy::None);
    // In dense rows the runs are as good a guide as the quick method, and a faster one.
    if (adaptive.runs() > dense && plain.runs() > dense)
        return adaptive.runs() < plain.runs() ? std::move(adaptive) : std::move(plain);
    const Result<double> adaptiveLeft = leftOf(adaptive);
    if (!adaptiveLeft)
        return adaptiveLeft.error();
    const Result<double> plainLeft = leftOf(plain);
    if (!plainLeft)
        return plainLeft.error();
    return *adaptiveLeft < *plainLeft ? std::move(adaptive) : std::move(plain);
}

Result<Method> methodFor(Trial& trial) {
    if (trial.runs() <= dense) {
        const Result<double> thorough = trial.thorough();
        if (!thorough)
            return thorough.error();
        return trial.runs() <= *thorough + thoroughTime ? Method::Runs : Method::Thorough;
    }
    // In dense rows the faster method may compress a little less, and a part of the sample is enough to tell.
    const Result<double> quick = trial.quickOfMiddle();
    if (!quick)
        return quick.error();
    if (trial.runsOfMiddle() <= 1.05 * *quick)
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
