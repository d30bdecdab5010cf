#include "mainwindow/MimeContents.h"

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
        paths << url.toLocalFile();
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
