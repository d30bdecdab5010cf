// Takes any bytes for what a program asks of its SVG worker: the worker answers and comes to an end.

#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Session.h"
#include "tests/fuzz/Require.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace {

constexpr std::string_view document =
    "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><circle r='9'/></svg>";

/// Memory with the document and two places for drawings.
int memory() {
    const int descriptor = ::memfd_create("svg", MFD_CLOEXEC);
    require(::pwrite(descriptor, document.data(), document.size(), 0) == ssize_t{document.size()});
    require(::ftruncate(descriptor, 3 * SvgPipe::placeBytes) == 0);
    return descriptor;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int shared = memory();
    std::array<int, 2> requests{};
    std::array<int, 2> answers{};
    require(::pipe(requests.data()) == 0 && ::pipe(answers.data()) == 0);
    // As many as the pipe holds answers for: they are read at the end.
    constexpr std::size_t mostBytes = 60 * sizeof(SvgPipe::Request);
    const std::span<const std::uint8_t> bytes(data, std::min(size, mostBytes));
    require(::write(requests[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    ::close(requests[1]);
    const int status = serve(requests[0], answers[1], shared, document.size());
    require(status == 0 || status == SvgPipe::messageStatus || status == SvgPipe::memoryStatus);
    ::close(requests[0]);
    ::close(answers[1]);
    SvgPipe::Answer answer;
    std::size_t count = 0;
    while (const ssize_t read = ::read(answers[0], &answer, sizeof answer)) {
        require(read == sizeof answer && isValid(answer));
        ++count;
    }
    require(count > 0 && count <= 1 + bytes.size() / sizeof(SvgPipe::Request));
    ::close(answers[0]);
    return 0;
}
