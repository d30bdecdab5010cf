#pragma once

#include "files/AtomicFile.h"
#include "files/OutputPlace.h"
#include "imaging/icns/IcnsWriter.h"

#include <QImage>
#include <QString>

#include <functional>
#include <optional>

/// What an encoder is told about one picture. A format ignores the properties that it has no use for.
struct ImageProperties {
    std::optional<float> lossyCompressionQuality = {}; ///< from 0 to 1; without one it is 1
    std::optional<qint32> tiffCompression = {};        ///< the value of TIFF's own tag 259; 5 is LZW
    PngStore* pngs = nullptr;                          ///< where PNG encodings come from, if there is one

    bool operator==(const ImageProperties&) const = default;
};

/// Writes one or more pictures to one file. An identifier names the file's type; the file's name does not
/// matter.
class ImageDestination {
  public:
    // The identifiers of the types.
    static constexpr char icnsType[] = "com.apple.icns";
    static constexpr char jpegType[] = "public.jpeg";
    static constexpr char tiffType[] = "public.tiff";
    static constexpr char bmpType[] = "com.microsoft.bmp";
    static constexpr char gifType[] = "com.compuserve.gif";
    static constexpr char pngType[] = "public.png";
    static constexpr char jpeg2000Type[] = "public.jpeg-2000";

    /// A destination for `count` pictures at `path`. NotAPath where the path is empty or contains a null
    /// character, Unsupported where the type is not written here or can't hold `count` pictures (all types
    /// but icns hold one). Nothing is written before `finalize`.
    static Result<ImageDestination> create(const QString& path, const QString& type, int count);

    /// Adds a picture of any pixel format. An icns file leaves out pictures of sizes that have no element.
    /// EmptySize where the picture has no pixels, TooLarge where a side is too long for the format,
    /// OutOfMemory.
    Result<Done> addImage(const QImage& picture, const ImageProperties& properties = {});

    /// Writes the file, whole or not at all. Fails with the first error of `addImage`; with Malformed where
    /// fewer or more than `count` pictures were added, or all of them were left out; else as AtomicFile.
    Result<Done> finalize(AtomicFile::Durability durability = AtomicFile::Durability::Cached);

    /// The same, with the file going to `place`.
    Result<Done> finalize(OutputPlace& place);

    /// The file's size after `finalize`.
    qint64 bytesWritten() const { return m_bytesWritten; }

    /// The size in pixels of the largest picture that was kept.
    const QSize& largestSize() const { return m_largestSize; }

  private:
    Result<Done> finalizeBy(const std::function<Result<Done>()>& write);
    Result<Done> keep(const QImage& picture, const ImageProperties& properties);

    ImageDestination(QString path, QString type, int count)
        : m_path(std::move(path)), m_type(std::move(type)), m_missing(count) {}

    QString m_path;
    QString m_type;
    int m_missing;
    IcnsWriter m_icns;
    QByteArray m_file;              ///< before `finalize` only of types that hold one picture
    std::optional<Error> m_failure; ///< the first error of `addImage`
    QSize m_largestSize;
    qint64 m_bytesWritten = 0;
};
