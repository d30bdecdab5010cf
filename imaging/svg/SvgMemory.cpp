#include "imaging/svg/SvgMemory.h"

#include "imaging/pixels/Raster.h"
#include "imaging/svgpipe/SharedPart.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <span>
#include <utility>

namespace {

/// New memory that nobody can make shorter: to read it does not fail, whatever a worker does. Elsewhere than
/// on Linux it is a file without a name.
FileDescriptor newMemory() {
#ifdef __linux__
    FileDescriptor memory(::memfd_create("svg", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const bool isSealed = ::fcntl(memory.number(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_SEAL) == 0;
    return isSealed ? std::move(memory) : FileDescriptor();
#else
    const std::unique_ptr<FILE, decltype(&std::fclose)> file(std::tmpfile(), std::fclose);
    return FileDescriptor(file != nullptr ? ::fcntl(::fileno(file.get()), F_DUPFD_CLOEXEC, 0) : -1);
#endif
}

/// The first place behind so many bytes.
std::uint64_t placeBehind(std::uint64_t bytes) {
    return (bytes / SvgPipe::placeBytes + 1) * SvgPipe::placeBytes;
}

} // namespace

SvgMemory::SvgMemory(const QByteArray& document)
    : m_memory(newMemory()), m_documentBytes(static_cast<std::size_t>(document.size())) {
    growTo(placeBehind(m_documentBytes));
    if (const SharedPart part = sharedPart(descriptor(), 0, m_documentBytes + 1))
        std::ranges::copy(std::as_bytes(std::span(document)), part.get());
    else
        m_memory = FileDescriptor();
}

bool SvgMemory::growTo(std::uint64_t bytes) {
    if (bytes > m_bytes && ::ftruncate(descriptor(), static_cast<off_t>(bytes)) == 0)
        m_bytes = bytes;
    return bytes <= m_bytes;
}

bool SvgMemory::take(SvgPipe::Request& drawing) {
    drawing.place = placeBehind(m_documentBytes);
    for (const auto& [begin, end] : m_taken) {
        if (begin - drawing.place >= drawing.bytes())
            break;
        drawing.place = end;
    }
    const std::uint64_t end = placeBehind(drawing.place + drawing.bytes() - 1);
    if (!growTo(end))
        return false;
    m_taken[drawing.place] = end;
    return true;
}

Result<QImage> SvgMemory::image(const SvgPipe::Request& drawing) const {
    QImage raster;
    if (const SharedPart part = sharedPart(descriptor(), drawing.place, drawing.bytes()))
        raster = QImage(reinterpret_cast<const uchar*>(part.get()), drawing.width, drawing.height,
                        QImage::Format_ARGB32_Premultiplied)
                     .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    return raster.isNull() ? noMemoryForPixels(drawing.width, drawing.height) : Result(raster);
}
