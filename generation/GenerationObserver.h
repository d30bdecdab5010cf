#pragma once

#include "base/Result.h"

#include <QSize>
#include <QString>

/// Receives each file that a generation writes or fails to write. A failure does not stop the generation and
/// is reported only here.
class GenerationObserver {
  public:
    struct File {
        QString idiom;
        QString path;
        QSize pixelSize; ///< the size of the largest picture in the file
        qint64 bytes = 0;
    };

    virtual ~GenerationObserver() = default;

    virtual void fileWritten(const File& file) = 0; ///< The file is there, whole.

    /// `path` is the file or folder that could not be written, or the name of the catalogue if no catalogue
    /// could be loaded.
    virtual void failed(const QString& path, const Error& error) = 0;
};
