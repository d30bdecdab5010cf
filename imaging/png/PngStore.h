#pragma once

#include "base/Result.h"
#include "imaging/png/PngOptions.h"

#include <QByteArray>
#include <QImage>

#include <vector>

/// PNG files of rasters, kept while a set of icons is written: a raster that is equal byte for byte to an
/// earlier one gets the same file again, and is not compressed twice.
class PngStore {
  public:
    /// Rasters and files together take no more bytes than this. What nobody has asked for again makes room
    /// for what is new, the oldest first. What does not fit even so is encoded and not kept.
    static constexpr qsizetype mostBytes = qsizetype{7} << 20;

    /// Keeps files in `store` for as long as it lives. The store is empty when the last one for it has ended.
    class Keeping {
      public:
        explicit Keeping(PngStore& store) : m_store(store) { ++m_store.m_keepings; }
        ~Keeping();
        Keeping(const Keeping&) = delete;
        Keeping& operator=(const Keeping&) = delete;

      private:
        PngStore& m_store;
    };

    explicit PngStore(PngEffort effort = PngEffort::Fast) : m_effort(effort) {}

    /// What all files are worth.
    PngEffort effort() const { return m_effort; }

    /// `encodePng` of `raster`. Fails as that does.
    Result<QByteArray> encoded(const QImage& raster, PngChannels channels = PngChannels::Rgba);

    /// The bytes that are kept.
    qsizetype keptBytes() const { return m_bytes; }

  private:
    struct Entry {
        QImage raster;
        PngChannels channels;
        QByteArray png;
        bool isRepeated = false;
    };

    void makeRoom(qsizetype bytes);
    static qsizetype bytesOf(const Entry& entry);

    PngEffort m_effort;
    std::vector<Entry> m_entries;
    qsizetype m_bytes = 0;
    int m_keepings = 0;
};
