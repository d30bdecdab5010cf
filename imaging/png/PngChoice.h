#pragma once

#include "base/Result.h"
#include "imaging/png/FilteredRows.h"
#include "imaging/png/PngOptions.h"

#include <cstddef>

/// The filter strategy and the compression method for a picture.
struct PngChoice {
    PngFilterStrategy filter;
    Deflate::Method method;
    /// The estimated length of all rows compressed by runs; 0 where no sample was tried.
    std::size_t expectedBytes;

    /// Takes what `options` give, and chooses the rest by how well a sample of the rows compresses.
    /// OutOfMemory.
    static Result<PngChoice> of(const FilteredRows& rows, int height, const PngOptions& options);
};
