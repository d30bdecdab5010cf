#pragma once

#include "base/Result.h"

#include <QSize>
#include <QString>

/// Hears of each file of a generation as it is written or fails. The engine itself goes on after a failure
/// and tells nobody else.
class GenerationObserver {
  public:
    struct File {
        QString idiom;
        QString path;
        QSize pixelSize; ///< of the largest picture in it
        qint64 bytes = 0;
    };

    virtual ~GenerationObserver() = default;

    virtual void fileWritten(const File& file) = 0;

    /// `path` is the file or folder that could not be written, or the name of the catalogue where there is
    /// none.
    virtual void failed(const QString& path, const Error& error) = 0;
};
