#include "cli/generate/OutputTarget.h"

#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

#include <QProcess>

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
