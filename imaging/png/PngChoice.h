#pragma once

#include "base/Result.h"
#include "imaging/png/FilteredRows.h"
#include "imaging/png/PngOptions.h"

#include <cstddef>

/// The coding of a picture.
struct PngChoice {
    PngCoding coding;
    /// The estimated length of all rows compressed by runs; 0 where no sample was tried.
    std::size_t expectedBytes;

    /// Takes what `options` give, or chooses by how well samples of the rows compress. OutOfMemory.
    static Result<PngChoice> of(const FilteredRows& rows, int height, const PngOptions& options);
};
