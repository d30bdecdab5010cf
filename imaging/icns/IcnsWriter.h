#pragma once

#include "base/Result.h"
#include "imaging/png/PngStore.h"

#include <QByteArray>
#include <QImage>

/// Builds an icns file from pictures, each stored as the element that macOS reads both in a file and in an
/// application bundle: PNG from 1024 down to 64 pixels, packed colours with a mask at 32 and 16.
class IcnsWriter {
  public:
    enum class Added {
        Yes,
        NoElement, ///< no element is made for this size
    };

    /// Whether an element is made for pictures of `size`, in pixels.
    static bool hasElement(const QSize& size);

    /// Appends the element or elements of `raster` (RGBA8888_Premultiplied), all of it or nothing. A PNG
    /// comes from `pngs` if there is one. EmptySize where the raster has no pixels, OutOfMemory.
    Result<Added> addImage(const QImage& raster, PngStore* pngs = nullptr);

    bool isEmpty() const { return m_file.isEmpty(); }

    /// The file's bytes; empty where no element was added.
    const QByteArray& data() const { return m_file; }

  private:
    QByteArray m_file;
};
