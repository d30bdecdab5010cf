#pragma once

#include "base/Result.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

/// Tests an operation with memory running out at any point of it. A test program that links this has its own
/// memory functions: `new` and `malloc` (only `new` under AddressSanitizer, which has its own `malloc`). They
/// can refuse memory to our code, the standard library and the C libraries.
namespace FailingAllocations {

/// Parts of library names. Allocations by the code of these libraries do not fail.
using Libraries = std::vector<const char*>;

/// Parts of Qt end the program if they get no memory (byte arrays and rasters do not). OpenJPEG 2.5 reads and
/// frees memory that it did not get.
inline const Libraries fragile{"libQt6", "libopenjp2"};
inline const Libraries none;

/// While it exists, no allocation fails and none is counted: for checks inside an operation.
class Pause {
  public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

/// Whether an operation succeeded. Expects OutOfMemory as the error of a failure.
template <typename T>
bool hasSucceeded(const Result<T>& result) {
    if (!result) {
        EXPECT_EQ(result.error().code, ErrorCode::OutOfMemory) << result.error().sentence.toStdString();
        EXPECT_TRUE(result.error().sentence.contains(QLatin1String("not enough memory")));
    }
    return result.operator bool();
}

/// Runs `operation` many times; each time, one allocation fails: the first, then every `step`-th after it.
/// Expects that the operation throws nothing, keeps no memory, and fails at least once. `operation` must be
/// repeatable and free what it makes. It returns false for a reported failure and true for a complete result;
/// it checks by itself that a result is complete.
void expectFailuresOf(const std::function<bool()>& operation, const Libraries& leftOut = fragile,
                      std::size_t step = 1);

/// The same where only allocations of at least so many bytes fail: the fragile libraries check those.
void expectFailuresOfLarge(std::size_t bytes, const std::function<bool()>& operation,
                           const Libraries& leftOut = none);

/// Expects that `operation` takes memory only through the fragile libraries.
void expectNoneIn(const std::function<bool()>& operation);

} // namespace FailingAllocations
