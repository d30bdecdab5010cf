#pragma once

#include <QByteArray>

#include <tiffio.h>

#include <cstdarg>

/// A TIFF file in memory, as libtiff wants to see it.
class TiffStream {
  public:
    /// Reads `bytes`.
    explicit TiffStream(QByteArray bytes);
    /// Writes a new file; `expectedSize` bytes are set aside for it.
    explicit TiffStream(qsizetype expectedSize);
    ~TiffStream();
    TiffStream(const TiffStream&) = delete;
    TiffStream& operator=(const TiffStream&) = delete;

    /// Null where the file could not be opened.
    TIFF* handle() const { return m_tiff; }

    /// The first thing that libtiff complained of.
    const QByteArray& error() const { return m_error; }

    /// From here on warnings count as errors: what a decoder says of pixels that it makes up for is one.
    void beginPixels() { m_warningsCount = true; }

    /// Ends a file that is written and hands over its bytes.
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
    TIFF* m_tiff = nullptr;
};
