#include "files/FilePath.h"

#include "files/FileItem.h"
#include "files/PathBytes.h"

#include <QByteArray>
#include <QStringDecoder>

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

QString withoutTrailingSlashes(QString path) {
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace

QString fileUrlText(const QString& path) {
    QString absolute = FileItem::absolutePath(path);
    if (!absolute.endsWith(u'/') && FileItem::isFolder(path))
        absolute += u'/';
    const QByteArray bytes = PathBytes::encoded(absolute);
    // The path of a URL may hold these characters unescaped.
    return QStringLiteral("file://") + QLatin1String(bytes.toPercentEncoding("/!$&'()*+,;=:@"));
}

Result<QString> replacingPercentEscapes(const QString& path) {
    const QByteArray escaped = PathBytes::encoded(path);
    QByteArray bytes;
    bytes.reserve(escaped.size());
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '%' && i + 2 < escaped.size()) {
            const int high = hexDigit(escaped[i + 1]);
            const int low = hexDigit(escaped[i + 2]);
            if (high >= 0 && low >= 0) {
                bytes.append(static_cast<char>(high * 16 + low));
                i += 2;
                continue;
            }
        }
        bytes.append(escaped[i]);
    }
    const Error notAPath{ErrorCode::NotAPath,
                         QStringLiteral("with its percent escapes decoded, this is not a path")};
    if (bytes.contains('\0'))
        return notAPath;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return notAPath;
    return text;
}

QString deletingLastPathComponent(const QString& path) {
    const QString trimmed = withoutTrailingSlashes(path);
    const qsizetype slash = trimmed.lastIndexOf(u'/');
    if (slash < 0)
        return {};
    return slash == 0 ? QStringLiteral("/") : withoutTrailingSlashes(trimmed.left(slash));
}

QString lastPathComponent(const QString& path) {
    const QString trimmed = withoutTrailingSlashes(path);
    return trimmed.mid(trimmed.lastIndexOf(u'/') + 1);
}

QString appendingPathComponent(const QString& path, const QString& component) {
    if (path.isEmpty())
        return component;
    const QString folder = withoutTrailingSlashes(path);
    return folder.endsWith(u'/') ? folder + component : folder + u'/' + component;
}

QString nameWithoutEnding(const QString& path) {
    const QString file = lastPathComponent(path);
    const qsizetype dot = file.lastIndexOf(u'.');
    const QString name = dot > 0 ? file.first(dot) : file;
    return name == QLatin1String(".") || name == QLatin1String("..") ? file : name;
}
