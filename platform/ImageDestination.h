#pragma once

#include "platform/Result.h"
#include "platform/icns/IcnsWriter.h"

#include <QImage>
#include <QString>

#include <memory>

/// Writes one or more pictures to one file of a type that is named by its identifier.
class ImageDestination {
  public:
    /// The type of the icns icon container.
    static constexpr char icnsType[] = "com.apple.icns";

    /// A destination for `count` pictures at `path`, or null where the type is not written here or the path
    /// is none. Nothing is written before `finalize`.
    static std::unique_ptr<ImageDestination> create(const QString& path, const QString& type, int count);

    /// Adds a picture. In an icon container a size without an element is left out.
    void addImage(const QImage& image);

    /// Writes the file, whole or not at all. Malformed where not all pictures were added, one could
    /// not be encoded, or none could be kept.
    Result<Done> finalize();

    /// The file's size after `finalize`.
    qint64 bytesWritten() const { return m_bytesWritten; }

    /// The largest picture that was kept.
    const QSize& largestSize() const { return m_largestSize; }

  private:
    ImageDestination(QString path, int count) : m_path(std::move(path)), m_missing(count) {}

    QString m_path;
    int m_missing;
    IcnsWriter m_icns;
    bool m_hasFailed = false;
    QSize m_largestSize;
    qint64 m_bytesWritten = 0;
};
