#include "imaging/png/PngChoice.h"

#include "base/StageTimes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace {

using Deflate::Method;
using Bytes = std::span<const std::uint8_t>;

// How much of some bytes a method leaves: the compressed length divided by their length.
double part(std::size_t length, Bytes bytes) {
    return static_cast<double>(length) / static_cast<double>(bytes.size());
}

double leftByRuns(Bytes bytes) {
    return part(Deflate::runsLength(bytes), bytes);
}

/// Rows of which runs leave more than this are dense: they have few repetitions except runs.
constexpr double dense = 0.3;

/// Rows with one filter strategy: some of them, and what runs leave of them.
struct StrategyTrial {
    StrategyTrial(const FilteredRows& rows, PngFilterStrategy strategy)
        : filter(strategy), sample(rows.sample(strategy, {6, 4})), runs(leftByRuns(sample.filled())) {}

    /// A third of the sample.
    Bytes middle() const {
        const std::size_t third = sample.size / 3;
        return sample.filled().subspan(third, std::max<std::size_t>(third, 1));
    }

    PngFilterStrategy filter;
    FilteredRows::Buffer sample;
    double runs;
};

/// A coding, and what it costs: the part that it leaves, and its time.
struct Candidate {
    PngCoding coding;
    double cost;
};

/// In dense rows the faster method may compress a little less, and a part of the sample is enough to tell.
Result<PngCoding> codingOfDense(const std::array<const StrategyTrial*, 2>& trials) {
    constexpr double runsMayLeaveMore = 1.05;
    constexpr double manyRepetitions = 0.7;
    constexpr double muchMore = 1.25;
    const StrategyTrial& trial =
        *std::ranges::min(trials, {}, [](const StrategyTrial* each) { return each->runs; });
    const double runs = leftByRuns(trial.middle());
    Candidate best{{trial.filter, Method::Runs}, runs / runsMayLeaveMore};
    for (const StrategyTrial* each : trials) {
        if (each->runs > muchMore * trial.runs)
            continue;
        const Result<std::size_t> length = Deflate::length(each->middle(), Method::Quick);
        if (!length)
            return length.error();
        const double left = part(*length, each->middle());
        if (left < best.cost)
            best = {{each->filter, left < manyRepetitions * runs ? Method::Greedy : Method::Quick}, left};
    }
    return best.coding;
}

/// What matches leave of all rows as a part of what they leave of `sample`, or nearly that.
Result<double> leftByMatches(Bytes sample, double ofSample) {
    const Result<std::size_t> length = Deflate::length(sample, Method::Greedy);
    if (!length)
        return length.error();
    // The codes at a stream's beginning weigh less in all rows.
    constexpr std::size_t codes = 30;
    return ofSample * part(*length - std::min(*length, codes), sample);
}

/// How a sample tells what matches leave of all unfiltered rows. They repeat the rows above, so bands are
/// long, and all rows have more to repeat than the sample.
struct PlainMatches {
    FilteredRows::Bands bands;
    double ofSample;
};

constexpr PlainMatches usualRows{{6, 8}, 0.95};
/// A picture's largest icons are most of its bytes.
constexpr PlainMatches longRows{{4, 16}, 0.85};

Result<double> leftByPlainMatches(const FilteredRows& rows) {
    constexpr std::size_t longRow = 1600;
    const PlainMatches& trial = rows.size(1) < longRow ? usualRows : longRows;
    return leftByMatches(rows.sample(PngFilterStrategy::None, trial.bands).filled(), trial.ofSample);
}

/// What matches leave of adaptively filtered rows, or nearly that. A part of the sample tells whether they
/// are worth a longer look.
Result<double> leftByAdaptiveMatches(const StrategyTrial& adaptive) {
    constexpr double ofSample = 0.97;
    constexpr double muchLess = 0.9;
    Result<double> left = leftByMatches(adaptive.middle(), ofSample);
    if (!left || *left > muchLess * leftByRuns(adaptive.middle()))
        return left;
    return leftByMatches(adaptive.sample.filled(), ofSample);
}

/// Time counts as bytes: a microsecond as 3 of them. Gives the time for one byte of the rows as a part of it.
constexpr double costOfTime(double nanosecondsForByte) {
    constexpr double bytesForMicrosecond = 3;
    return bytesForMicrosecond * nanosecondsForByte / 1000;
}

Result<PngCoding> codingOfSparse(const FilteredRows& rows, const StrategyTrial& adaptive,
                                 const StrategyTrial& plain) {
    const Result<double> plainMatches = leftByPlainMatches(rows);
    if (!plainMatches)
        return plainMatches.error();
    const Result<double> adaptiveMatches = leftByAdaptiveMatches(adaptive);
    if (!adaptiveMatches)
        return adaptiveMatches.error();
    // Beyond this, greedy matches leave hardly more than thorough ones, in half of the time.
    constexpr double manyMatches = 0.12;
    const auto withTime = [](double left) { return left + costOfTime(1.5 + 25 * left); };
    const std::array<Candidate, 4> candidates{
        {{{adaptive.filter, Method::Runs}, adaptive.runs + costOfTime(0.9)},
         {{plain.filter, Method::Runs}, plain.runs + costOfTime(0.6)},
         {{adaptive.filter, Method::Greedy}, withTime(*adaptiveMatches)},
         {{plain.filter, *plainMatches < manyMatches ? Method::Thorough : Method::Greedy},
          withTime(*plainMatches)}}};
    return std::ranges::min(candidates, {}, &Candidate::cost).coding;
}

} // namespace

Result<PngChoice> PngChoice::of(const FilteredRows& rows, int height, const PngOptions& options) {
    if (options.coding)
        return PngChoice{*options.coding, 0};
    const StageTimes::Timer timer(Stage::Choose);
    const StrategyTrial adaptive(rows, PngFilterStrategy::Adaptive);
    const StrategyTrial plain(rows, PngFilterStrategy::None);
    const std::array<const StrategyTrial*, 2> trials{&adaptive, &plain};
    const Result<PngCoding> coding = adaptive.runs > dense && plain.runs > dense
                                         ? codingOfDense(trials)
                                         : codingOfSparse(rows, adaptive, plain);
    if (!coding)
        return coding.error();
    const double left = coding->filter == PngFilterStrategy::Adaptive ? adaptive.runs : plain.runs;
    return PngChoice{*coding, static_cast<std::size_t>(left * static_cast<double>(rows.size(height)))};
}
