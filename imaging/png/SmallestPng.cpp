#include "imaging/png/SmallestPng.h"

#include "base/ShortMemory.h"
#include "base/StageTimes.h"
#include "imaging/deflate/Deflate.h"
#include "imaging/png/PngRowFilters.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace {

using Deflate::Method;

/// Samples with filters, and their length after a quick compression.
struct FilterTrial {
    const PngSamples* samples;
    PngRowFilters::Types types;
    std::size_t length;
};

/// The types of each row that are worth a trial: each type in all rows, and the least by several costs.
std::vector<PngRowFilters::Types> worthTrying(const PngSamples& samples, const Deflate::Meter& meter) {
    std::vector<PngRowFilters::Types> choices;
    for (std::uint8_t type = 0; type < PngRowFilters::typeCount; ++type)
        choices.emplace_back(static_cast<std::size_t>(samples.height), type);
    const auto length = [&meter](std::span<const std::uint8_t> bytes) { return meter.length(bytes); };
    for (const PngRowFilters::Cost& cost :
         {PngRowFilters::sums(), PngRowFilters::entropy(), PngRowFilters::pairs(),
          PngRowFilters::pairEntropy(), PngRowFilters::lengths(length)})
        choices.push_back(PngRowFilters::chosen(samples, cost));
    return choices;
}

/// All trials, the shortest first.
Result<std::vector<FilterTrial>> trialsOf(const std::vector<PngSamples>& ways) {
    const StageTimes::Timer timer(Stage::Choose);
    const auto quick = Deflate::Meter::create(Method::Quick);
    const auto thorough = Deflate::Meter::create(Method::Thorough);
    if (!quick || !thorough)
        return outOfMemory();
    std::vector<FilterTrial> trials;
    for (const PngSamples& samples : ways) {
        for (PngRowFilters::Types& types : worthTrying(samples, **quick)) {
            const std::size_t length =
                (*thorough)->length(PngRowFilters::filtered(samples, types)) + samples.paletteBytes();
            trials.push_back({&samples, std::move(types), length});
        }
    }
    std::ranges::stable_sort(trials, {}, &FilterTrial::length);
    return trials;
}

} // namespace

Result<PngPixels> smallestPngPixels(const QImage& raster, PngChannels channels) {
    std::vector<PngSamples> ways = pngSamplesOf(raster, channels);
    const Result<std::vector<FilterTrial>> trials = trialsOf(ways);
    if (!trials)
        return trials.error();
    // The densest compression takes nearly all of the time: only the best of the trials get it.
    constexpr std::size_t most = 2;
    constexpr double near = 1.25;
    const StageTimes::Timer timer(Stage::Compress);
    const FilterTrial* best = nullptr;
    QByteArray shortest;
    std::size_t least = 0;
    for (const FilterTrial& trial : std::span(*trials).first(std::min(most, trials->size()))) {
        if (static_cast<double>(trial.length) > near * static_cast<double>(trials->front().length))
            break;
        QByteArray stream;
        if (const Result<Done> appended = Deflate::append(
                stream, PngRowFilters::filtered(*trial.samples, trial.types), Method::Densest);
            !appended)
            return appended.error();
        const std::size_t length = static_cast<std::size_t>(stream.size()) + trial.samples->paletteBytes();
        if (best != nullptr && length >= least)
            continue;
        best = &trial;
        shortest = std::move(stream);
        least = length;
    }
    PngSamples samples = std::move(ways[static_cast<std::size_t>(best->samples - ways.data())]);
    samples.bytes = {};
    return PngPixels{std::move(samples), std::move(shortest)};
}
