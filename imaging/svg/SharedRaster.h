#pragma once

#include "base/Result.h"
#include "files/FileDescriptor.h"

#include <QImage>
#include <QSize>

/// The pixels of one drawing, in memory that the worker shares.
class SharedRaster {
  public:
    SharedRaster() = default;
    /// Memory for 4 bytes a pixel, all zero. The worker can't change its size. OutOfMemory is the only error.
    static Result<SharedRaster> create(const QSize& size);

    /// For sending to the worker.
    int descriptor() const { return m_memory.number(); }

    /// The raster, RGBA8888_Premultiplied, on this memory. OutOfMemory is the only error.
    Result<QImage> image() const;

  private:
    FileDescriptor m_memory;
    QSize m_size;
};
