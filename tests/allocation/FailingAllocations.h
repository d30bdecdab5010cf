#pragma once

#include "base/Result.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

/// What happens to an operation when memory runs out at any point of it. A program that this is linked into
/// has memory functions of its own, `new` as well as `malloc` (under AddressSanitizer, which brings its own
/// `malloc`, only `new`). They refuse what they are asked for by our code, the standard library and the C
/// libraries.
namespace FailingAllocations {

/// Parts of the names of libraries whose own code is left out.
using Libraries = std::vector<const char*>;

/// Parts of Qt end the program where they get no memory (byte arrays and rasters do not). OpenJPEG 2.5
/// reads and frees what it did not get.
inline const Libraries fragile{"libQt6", "libopenjp2"};
inline const Libraries none;

/// While it lives, nothing fails and nothing is kept account of: for what an operation checks.
class Pause {
  public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

/// Whether an operation succeeded. Expects that want of memory is the only cause of a failure.
template <typename T>
bool hasSucceeded(const Result<T>& result) {
    if (!result) {
        EXPECT_EQ(result.error().code, ErrorCode::OutOfMemory) << result.error().sentence.toStdString();
        EXPECT_TRUE(result.error().sentence.contains(QLatin1String("not enough memory")));
    }
    return result.operator bool();
}

/// Runs `operation` often: each time the next one of its allocations fails, or that `step` further on.
/// Expects that nothing is thrown, that nothing is kept, and that it fails at least once. `operation` returns
/// false where it reports failure, true where it had its whole result in spite of all, and expects by itself
/// that there is nothing between the two. It can be repeated, and lets go of what it makes.
void expectFailuresOf(const std::function<bool()>& operation, const Libraries& leftOut = fragile,
                      std::size_t step = 1);

/// Expects that all memory that `operation` takes is taken by the fragile libraries.
void expectNoneIn(const std::function<bool()>& operation);

} // namespace FailingAllocations
