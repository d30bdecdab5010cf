#include "imaging/svg/SharedRaster.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

namespace {

/// A mapping as an image's clean-up information.
struct Mapping {
    void* memory;
    std::size_t bytes;
};

void unmap(void* information) {
    const std::unique_ptr<Mapping> mapping(static_cast<Mapping*>(information));
    ::munmap(mapping->memory, mapping->bytes);
}

std::size_t bytesOf(const QSize& size) {
    return std::size_t{4} * static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
}

#ifdef __linux__

/// Memory whose size is fixed: reading it does not fail, whatever the worker does.
FileDescriptor sharedMemory(std::size_t bytes) {
    FileDescriptor memory(::memfd_create("drawing", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!memory.isOpen() || ::ftruncate(memory.number(), static_cast<off_t>(bytes)) != 0 ||
        ::fcntl(memory.number(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return {};
    return memory;
}

constexpr int mapFlags = MAP_SHARED | MAP_POPULATE;

#else

/// A file without a name.
FileDescriptor sharedMemory(std::size_t bytes) {
    const std::unique_ptr<FILE, decltype(&std::fclose)> file(std::tmpfile(), std::fclose);
    if (file == nullptr)
        return {};
    FileDescriptor memory(::fcntl(::fileno(file.get()), F_DUPFD_CLOEXEC, 0));
    if (!memory.isOpen() || ::ftruncate(memory.number(), static_cast<off_t>(bytes)) != 0)
        return {};
    return memory;
}

constexpr int mapFlags = MAP_SHARED;

#endif

} // namespace

Result<SharedRaster> SharedRaster::create(const QSize& size) {
    SharedRaster raster;
    raster.m_size = size;
    raster.m_memory = sharedMemory(bytesOf(size));
    if (!raster.m_memory.isOpen())
        return noMemoryForPixels(size.width(), size.height());
    return raster;
}

Result<QImage> SharedRaster::image() const {
    const std::size_t bytes = bytesOf(m_size);
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, mapFlags, m_memory.number(), 0);
    if (memory == MAP_FAILED)
        return noMemoryForPixels(m_size.width(), m_size.height());
    const Result<Mapping*> mapping = unlessMemoryIsShort([&] { return new Mapping{memory, bytes}; });
    if (!mapping) {
        ::munmap(memory, bytes);
        return mapping.error();
    }
    Result<QImage> image = unlessMemoryIsShort([&] {
        return QImage(static_cast<uchar*>(memory), m_size.width(), m_size.height(),
                      QImage::Format_RGBA8888_Premultiplied, unmap, *mapping);
    });
    if (!image || image->isNull()) {
        unmap(*mapping);
        return noMemoryForPixels(m_size.width(), m_size.height());
    }
    return image;
}
