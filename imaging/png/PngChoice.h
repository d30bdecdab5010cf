#pragma once

#include "imaging/png/FilteredRows.h"
#include "imaging/png/PngOptions.h"

#include <cstddef>
#include <optional>

/// How a picture is written.
struct PngChoice {
    PngFilterStrategy filter;
    Deflate::Method method;
    std::size_t
        expectedBytes; ///< about as many as the compressed rows will have, by runs; 0 where nobody tried

    /// What `options` leave open is chosen by what becomes of a sample of the rows. None where memory is
    /// short.
    static std::optional<PngChoice> of(const FilteredRows& rows, int height, const PngOptions& options);
};
