#include "imaging/svgpipe/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

#ifdef __linux__

int newMemory() {
    return ::memfd_create("svg", MFD_CLOEXEC | MFD_ALLOW_SEALING);
}

bool fixSize(int memory) {
    return ::fcntl(memory, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0;
}

// All of its pages are used.
constexpr int mapFlags = MAP_SHARED | MAP_POPULATE;

#else

/// A file without a name.
int newMemory() {
    const std::unique_ptr<FILE, decltype(&std::fclose)> file(std::tmpfile(), std::fclose);
    return file != nullptr ? ::fcntl(::fileno(file.get()), F_DUPFD_CLOEXEC, 0) : -1;
}

bool fixSize(int /*memory*/) {
    return true;
}

constexpr int mapFlags = MAP_SHARED;

#endif

/// The system maps no empty memory.
std::size_t atLeastOne(std::size_t bytes) {
    return std::max<std::size_t>(bytes, 1);
}

} // namespace

SharedMemory::~SharedMemory() {
    closeDescriptor();
    if (!m_mapped.empty())
        ::munmap(m_mapped.data(), m_mapped.size());
}

void SharedMemory::closeDescriptor() {
    if (isOpen())
        ::close(std::exchange(m_descriptor, -1));
}

SharedMemory SharedMemory::create(std::size_t bytes) {
    SharedMemory memory(newMemory());
    if (memory.isOpen() && (::ftruncate(memory.m_descriptor, static_cast<off_t>(atLeastOne(bytes))) != 0 ||
                            !fixSize(memory.m_descriptor)))
        memory.closeDescriptor();
    return memory;
}

SharedMemory SharedMemory::holding(std::span<const std::byte> bytes) {
    SharedMemory memory = create(bytes.size());
    for (std::size_t done = 0; memory.isOpen() && done < bytes.size();) {
        const ssize_t written =
            ::pwrite(memory.m_descriptor, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
        if (written <= 0)
            memory.closeDescriptor();
        else
            done += static_cast<std::size_t>(written);
    }
    return memory;
}

std::byte* SharedMemory::map(std::size_t bytes) {
    bytes = atLeastOne(bytes);
    struct stat state {};
    if (!isOpen() || ::fstat(m_descriptor, &state) != 0 || static_cast<std::uint64_t>(state.st_size) < bytes)
        return nullptr;
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, mapFlags, m_descriptor, 0);
    if (memory == MAP_FAILED)
        return nullptr;
    closeDescriptor();
    m_mapped = {static_cast<std::byte*>(memory), bytes};
    return m_mapped.data();
}
