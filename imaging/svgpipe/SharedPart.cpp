#include "imaging/svgpipe/SharedPart.h"

#include <sys/mman.h>
#include <sys/stat.h>

namespace {

#ifdef __linux__
constexpr int mapFlags = MAP_SHARED | MAP_POPULATE; // all pages are used
#else
constexpr int mapFlags = MAP_SHARED;
#endif

} // namespace

void UnmapPart::operator()(std::byte* start) const {
    ::munmap(start, bytes);
}

SharedPart sharedPart(int memory, std::uint64_t place, std::size_t bytes) {
    struct stat state {};
    const std::uint64_t end = place + bytes;
    if (::fstat(memory, &state) != 0 || end < place || end > static_cast<std::uint64_t>(state.st_size))
        return nullptr;
    void* start = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, mapFlags, memory, static_cast<off_t>(place));
    return {start != MAP_FAILED ? static_cast<std::byte*>(start) : nullptr, UnmapPart{bytes}};
}
