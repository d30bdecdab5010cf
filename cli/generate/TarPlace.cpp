#include "cli/generate/TarPlace.h"

#include "base/SystemError.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

#include <QDir>

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

constexpr qsizetype block = 512;
constexpr qsizetype longestName = 100;

/// The path relative to the root, without doubled slashes.
QString relative(const QString& path) {
    QString clean = QDir::cleanPath(u'/' + path);
    return clean.mid(1);
}

/// `number` in octal in a field of `width` bytes, of which the last is NUL.
QByteArray octal(qint64 number, int width) {
    return QByteArray::number(number, 8).rightJustified(width - 1, '0') + '\0';
}

QByteArray padded(QByteArray bytes) {
    return bytes.append((block - bytes.size() % block) % block, '\0');
}

/// One header. `type` is '0' for a file, 'x' for the extended header of the file that follows.
QByteArray header(const QByteArray& name, char type, qint64 size) {
    // 1 January 1980: tar warns of dates that are as old as its own beginning.
    constexpr qint64 date = 315532800;
    constexpr qint64 mode = 0644;
    constexpr qsizetype checksumAt = 148;
    constexpr int checksumWidth = 8;
    QByteArray bytes = name.left(longestName).leftJustified(longestName, '\0');
    bytes += octal(mode, 8) + octal(0, 8) + octal(0, 8) + octal(size, 12) + octal(date, 12);
    bytes += QByteArray(checksumWidth, ' ') + type + QByteArray(longestName, '\0') +
             QByteArray("ustar\0"
                        "00",
                        8);
    bytes = padded(bytes);
    qint64 sum = 0;
    for (const char byte : bytes)
        sum += static_cast<uchar>(byte);
    return bytes.replace(checksumAt, checksumWidth, octal(sum, checksumWidth - 1) + ' ');
}

/// "LENGTH KEY=VALUE\n", where the length counts its own digits.
QByteArray record(const QByteArray& key, const QByteArray& value) {
    const QByteArray text = ' ' + key + '=' + value + '\n';
    qsizetype length = text.size() + 1;
    while (QByteArray::number(length).size() + text.size() != length)
        length = QByteArray::number(length).size() + text.size();
    return QByteArray::number(length) + text;
}

/// The extended header of a file whose name does not fit in its own header; else nothing.
QByteArray extendedHeader(const QString& path, const QByteArray& name) {
    const bool isAscii = std::ranges::all_of(name, [](char byte) { return static_cast<uchar>(byte) < 0x80; });
    const bool isUtf8 = PathBytes::withReplacements(path) == path;
    // A short name that is not UTF-8 stands as it is: GNU tar warns of hdrcharset.
    if ((isAscii || !isUtf8) && name.size() <= longestName)
        return {};
    const QByteArray records =
        (isUtf8 ? QByteArray() : record("hdrcharset", "BINARY")) + record("path", name);
    return header("PaxHeaders/" + name, 'x', records.size()) + padded(records);
}

} // namespace

Result<Done> TarPlace::makeFolder(const QString& path) {
    for (QString folder = relative(path); !folder.isEmpty(); folder = deletingLastPathComponent(folder))
        m_folders.insert(folder);
    return Done{};
}

Result<Done> TarPlace::write(const QString& path, const QByteArray& bytes) {
    const QString clean = relative(path);
    const QString folder = deletingLastPathComponent(clean);
    if (!folder.isEmpty() && !m_folders.contains(folder))
        return systemError(ENOENT, ErrorCode::NotWritable);
    const QByteArray name = PathBytes::encoded(clean);
    put(extendedHeader(clean, name) + header(name, '0', bytes.size()) + padded(bytes));
    return Done{};
}

Result<Done> TarPlace::finish() {
    put(QByteArray(2 * block, '\0'));
    if (m_failure == 0)
        return Done{};
    const Error error = systemError(m_failure, ErrorCode::NotWritable);
    return about(QStringLiteral("standard output can't be written"), error);
}

void TarPlace::put(const QByteArray& bytes) {
    for (qsizetype at = 0; m_failure == 0 && at < bytes.size();) {
        const ssize_t n =
            ::write(m_descriptor, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (n >= 0)
            at += n;
        else if (errno != EINTR)
            m_failure = errno;
    }
}
