#pragma once

#include <QSize>
#include <QString>

#include <optional>
#include <string>

/// What `tobrimax-cli export` was asked to do.
struct ExportOptions {
    std::string picture; ///< in the file system's own bytes
    quint64 format = 0;  ///< as ImageExport counts them
    QString out;
    std::optional<QSize> size; ///< in pixels; without one that of the picture
};

/// Writes the picture in one format. Returns the exit status.
int runExport(const ExportOptions& options);
