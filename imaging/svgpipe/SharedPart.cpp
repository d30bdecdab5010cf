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

SharedPart::SharedPart(int memory, std::uint64_t place, std::size_t bytes) : m_count(bytes) {
    struct stat state {};
    if (::fstat(memory, &state) != 0 || static_cast<std::uint64_t>(state.st_size) < place + bytes ||
        place + bytes < place)
        return;
    void* start = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, mapFlags, memory, static_cast<off_t>(place));
    if (start != MAP_FAILED)
        m_bytes = static_cast<std::byte*>(start);
}

SharedPart::~SharedPart() {
    if (m_bytes != nullptr)
        ::munmap(m_bytes, m_count);
}
