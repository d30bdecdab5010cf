#pragma once

#include "imaging/deflate/Deflate.h"

#include <optional>

/// The samples of a pixel.
enum class PngChannels {
    Rgba,   ///< colour type 6
    Rgb,    ///< colour type 2, without an alpha channel
    Fewest, ///< any colour type and depth that keeps each pixel: only with PngEffort::Best
};

/// How much work a file's length is worth.
enum class PngEffort {
    Fast, ///< the coding is chosen by a look at samples
    Best, ///< many codings are tried, and the shortest file is taken
};

/// How a PNG's rows are filtered before compression.
enum class PngFilterStrategy {
    None,     ///< no filter: best for flat graphics
    Adaptive, ///< for each row the filter with the least sum of absolute differences: best for photographs
};

/// How a PNG's rows become a zlib stream.
struct PngCoding {
    PngFilterStrategy filter;
    Deflate::Method method;
};

struct PngOptions {
    /// Where it is not given, it is chosen for the picture by samples of its rows, for a small picture by all
    /// rows.
    std::optional<PngCoding> coding = {};
    PngChannels channels = PngChannels::Rgba;
    PngEffort effort = PngEffort::Fast; ///< Best leaves `coding` out of account
};
