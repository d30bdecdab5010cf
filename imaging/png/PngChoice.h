#pragma once

#include "base/Result.h"
#include "imaging/png/FilteredRows.h"
#include "imaging/png/PngOptions.h"

#include <cstddef>

/// How a picture is written.
struct PngChoice {
    PngFilterStrategy filter;
    Deflate::Method method;
    std::size_t
        expectedBytes; ///< about as many as the compressed rows will have, by runs; 0 where nobody tried

    /// What `options` leave open is chosen by what becomes of a sample of the rows. OutOfMemory.
    static Result<PngChoice> of(const FilteredRows& rows, int height, const PngOptions& options);
};
