#pragma once

#include <QByteArray>
#include <QStringList>

class QMimeData;

/// What of a drag or of the clipboard the image well can use.
namespace MimeContents {

/// The paths of the local files, in the list's order. A file's URL may name this machine as its host.
QStringList fileNames(const QMimeData& data);

/// Whether there is a picture that is not in a file.
bool hasPicture(const QMimeData& data);

/// The bytes of that picture in its best form: a drawing before samples, samples without a loss before
/// others. Empty without one.
QByteArray picture(const QMimeData& data);

} // namespace MimeContents
