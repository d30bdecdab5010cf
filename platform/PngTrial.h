#pragma once

#include "platform/FilteredRows.h"
#include "platform/PngWriter.h"

/// Chooses what `options` leave open, the filter, the method or both, by what they make of a sample of the
/// rows. False where memory is short.
bool chooseByTrial(const FilteredRows& rows, PngOptions& options);
