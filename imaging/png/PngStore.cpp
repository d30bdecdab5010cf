#include "imaging/png/PngStore.h"

#include "base/ShortMemory.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace {

bool areEqual(const QImage& one, const QImage& other) {
    if (one.size() != other.size() || one.format() != other.format())
        return false;
    const auto rowBytes = static_cast<std::size_t>(one.width()) * static_cast<std::size_t>(one.depth()) / 8;
    for (int y = 0; y < one.height(); ++y) {
        if (std::memcmp(one.constScanLine(y), other.constScanLine(y), rowBytes) != 0)
            return false;
    }
    return true;
}

} // namespace

PngStore::Keeping::~Keeping() {
    m_store.m_keeps = false;
    m_store.m_entries.clear();
    m_store.m_bytes = 0;
}

Result<QByteArray> PngStore::encoded(const QImage& raster, PngChannels channels) {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry& entry) {
        return entry.channels == channels && areEqual(entry.raster, raster);
    });
    if (found != m_entries.end())
        return found->png;
    Result<QByteArray> png = encodePng(raster, {.channels = channels});
    if (!png || !m_keeps)
        return png;
    const qsizetype bytes = raster.sizeInBytes() + png->size();
    if (bytes > mostBytes - m_bytes)
        return png;
    // Without memory for one more entry the file is as good.
    const Result<Done> kept = unlessMemoryIsShort([&] { m_entries.push_back({raster, channels, *png}); });
    if (kept)
        m_bytes += bytes;
    return png;
}
