#include "mainwindow/MimeContents.h"

#include "files/PathBytes.h"

#include <QBuffer>
#include <QImage>
#include <QMimeData>
#include <QSysInfo>
#include <QUrl>

#include <algorithm>
#include <array>

namespace {

constexpr std::array forms{"image/svg+xml", "image/png", "image/tiff", "image/x-icns",
                           "image/webp",    "image/bmp", "image/jpeg", "image/gif"};

/// The path of a local file. The bytes of a name that is not UTF-8 are escaped in the URL.
QString pathOf(const QUrl& url) {
    QString path = url.toLocalFile();
    if (!path.contains(QChar::ReplacementCharacter) || !url.host().isEmpty())
        return path;
    return PathBytes::decoded(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()));
}

} // namespace

QStringList MimeContents::fileNames(const QMimeData& data) {
    QStringList paths;
    for (QUrl url : data.urls()) {
        if (!url.isLocalFile())
            continue;
        const QString host = url.host();
        if (host == QLatin1String("localhost") ||
            host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0)
            url.setHost({});
        paths << pathOf(url);
    }
    return paths;
}

bool MimeContents::hasPicture(const QMimeData& data) {
    return data.hasImage() ||
           std::ranges::any_of(forms, [&](const char* form) { return data.hasFormat(QLatin1String(form)); });
}

QByteArray MimeContents::picture(const QMimeData& data) {
    for (const char* form : forms) {
        QByteArray bytes = data.data(QLatin1String(form));
        if (!bytes.isEmpty())
            return bytes;
    }
    // The picture may have a form that only this system knows, or this program may have put it there itself.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return data.imageData().value<QImage>().save(&buffer, "PNG", 100) ? bytes : QByteArray();
}
