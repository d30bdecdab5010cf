#pragma once

#include "base/ShortMemory.h"

#include <QByteArray>

#include <tiffio.h>

#include <cstdarg>

/// A TIFF file in memory, which libtiff reads or writes.
class TiffStream {
  public:
    /// Reads `bytes`.
    explicit TiffStream(QByteArray bytes);
    /// Writes a new file and reserves `expectedSize` bytes for it. Only this room uses it: it may throw
    /// std::bad_alloc, which the room's public functions turn into OutOfMemory.
    explicit TiffStream(qsizetype expectedSize);
    ~TiffStream();
    TiffStream(const TiffStream&) = delete;
    TiffStream& operator=(const TiffStream&) = delete;

    /// Null where the file could not be opened.
    TIFF* handle() const { return m_tiff; }

    /// libtiff's first error message; empty where there was no error.
    const QByteArray& error() const { return m_error; }

    /// Whether memory was short, as far as the system and this stream itself know.
    bool isMemoryShort() const { return m_isMemoryShort || m_refused.wasSeen(); }

    /// From here on warnings count as errors, but for those that are known to be harmless: decoders only warn
    /// of pixels that they make up for.
    void beginPixels() { m_warningsCount = true; }

    /// Finishes a written file and returns its bytes.
    QByteArray close();

  private:
    void open(const char* mode);
    static TiffStream& self(thandle_t handle) { return *static_cast<TiffStream*>(handle); }
    static tmsize_t read(thandle_t handle, void* out, tmsize_t length);
    static tmsize_t write(thandle_t handle, void* in, tmsize_t length);
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static toff_t size(thandle_t handle);
    static int onWarning(TIFF* tiff, void* handle, const char* module, const char* format, va_list arguments);
    static int onError(TIFF* tiff, void* handle, const char* module, const char* format, va_list arguments);

    QByteArray m_bytes;
    qsizetype m_position = 0;
    QByteArray m_error;
    bool m_warningsCount = false;
    bool m_brokeOff = false; ///< the last read got fewer bytes than it asked for
    bool m_isMemoryShort = false;
    RefusedMemory m_refused;
    TIFF* m_tiff = nullptr;
};
