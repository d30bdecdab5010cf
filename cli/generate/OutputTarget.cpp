#include "cli/generate/OutputTarget.h"

#include "base/SystemError.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

Result<Done> OutputTarget::check(const QString& out) {
    if (out.isEmpty() || out.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    QString nearest = FileItem::absolutePath(out);
    while (!FileItem::isThere(nearest) && nearest != QLatin1String("/"))
        nearest = deletingLastPathComponent(nearest);
    const QByteArray name = PathBytes::encoded(nearest);
    struct stat status = {};
    // A link that leads nowhere is no folder.
    if (stat(name.constData(), &status) != 0)
        return systemError(errno == ENOENT ? ENOTDIR : errno, ErrorCode::NotWritable);
    if (!S_ISDIR(status.st_mode))
        return systemError(ENOTDIR, ErrorCode::NotWritable);
    if (access(name.constData(), W_OK | X_OK) != 0)
        return systemError(errno, ErrorCode::NotWritable);
    return Done{};
}

void OutputTarget::open(const QString& out, GenerateReport& report) {
#ifdef Q_OS_MACOS
    const QString program = QStringLiteral("open");
#else
    const QString program = QStringLiteral("xdg-open");
#endif
    const QString path = FileItem::absolutePath(out);
    // QProcess takes arguments only as text. A URL can escape every byte.
    const bool isText = PathBytes::withReplacements(path) == path;
    if (!QProcess::startDetached(program, {isText ? path : fileUrlText(path)}))
        report.warn(QStringLiteral("the folder could not be opened: %1 does not start").arg(program));
}
