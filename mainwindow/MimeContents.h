#pragma once

#include <QByteArray>
#include <QStringList>

class QMimeData;

/// The contents of a drag or of the clipboard that the image well can use.
namespace MimeContents {

/// The paths of the local files, in the list's order. A file's URL may name this machine as its host.
QStringList fileNames(const QMimeData& data);

/// Whether `data` holds a picture itself, not only the name of a file.
bool hasPicture(const QMimeData& data);

/// The bytes of the picture that `data` holds, in its best form: SVG comes first, then forms without loss,
/// then the others. Empty without a picture.
QByteArray picture(const QMimeData& data);

} // namespace MimeContents
