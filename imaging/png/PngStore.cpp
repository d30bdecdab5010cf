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
    if (--m_store.m_keepings > 0)
        return;
    m_store.m_entries.clear();
    m_store.m_bytes = 0;
}

Result<QByteArray> PngStore::encoded(const QImage& raster, PngChannels channels) {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry& entry) {
        return entry.channels == channels && areEqual(entry.raster, raster);
    });
    if (found != m_entries.end()) {
        found->isRepeated = true;
        return found->png;
    }
    Result<QByteArray> png = encodePng(raster, {.channels = channels, .effort = m_effort});
    if (!png || m_keepings == 0)
        return png;
    // Without memory for one more entry the file is as good.
    const Result<Done> kept = unlessMemoryIsShort([&] {
        png->squeeze();
        Entry entry{raster, channels, *png};
        const qsizetype bytes = bytesOf(entry);
        makeRoom(bytes);
        if (bytes > mostBytes - m_bytes)
            return;
        m_entries.push_back(std::move(entry));
        m_bytes += bytes;
    });
    static_cast<void>(kept);
    return png;
}

void PngStore::makeRoom(qsizetype bytes) {
    if (bytes > mostBytes)
        return;
    for (auto entry = m_entries.begin(); bytes > mostBytes - m_bytes && entry != m_entries.end();) {
        if (entry->isRepeated) {
            ++entry;
            continue;
        }
        m_bytes -= bytesOf(*entry);
        entry = m_entries.erase(entry);
    }
}

qsizetype PngStore::bytesOf(const Entry& entry) {
    return entry.raster.sizeInBytes() + entry.png.size();
}
