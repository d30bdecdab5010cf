#include "cli/Terminal.h"

#include "platform/Log.h"

#include <QChar>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

bool logIsShown = false;

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

void onMessage(QtMsgType /*type*/, const QMessageLogContext& context, const QString& message) {
    const bool isOurs =
        context.category != nullptr && std::strcmp(context.category, tobrimaxLog().categoryName()) == 0;
    if (isOurs && logIsShown)
        write(stderr, Terminal::escaped(message) + u'\n');
}

} // namespace

QString Terminal::escaped(const QString& text) {
    QString shown;
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (c == u'\n')
            shown += QLatin1String("\\n");
        else if (c.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else if (c.category() == QChar::Other_Format || code == 0x2028 || code == 0x2029)
            shown += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown;
}

bool Terminal::print(const QString& line) {
    write(stdout, line + u'\n');
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

int Terminal::outputFailure() {
    error(QStringLiteral("standard output can't be written"));
    return 1;
}

void Terminal::error(const QString& sentence) {
    write(stderr, QStringLiteral("tobrimax-cli: error: ") + escaped(sentence) + u'\n');
}

void Terminal::warning(const QString& sentence) {
    write(stderr, QStringLiteral("tobrimax-cli: warning: ") + escaped(sentence) + u'\n');
}

void Terminal::showDiagnosticLog(bool isShown) {
    logIsShown = isShown;
    qInstallMessageHandler(onMessage);
}

Terminal::ProgressBar::ProgressBar(int total, bool isWanted)
    : m_total(total), m_isShown(isWanted && total > 0 && isatty(STDERR_FILENO) != 0) {
    draw();
}

Terminal::ProgressBar::~ProgressBar() {
    if (m_isShown)
        write(stderr, QStringLiteral("\r\x1b[K"));
}

void Terminal::ProgressBar::advance() {
    m_done = std::min(m_done + 1, m_total);
    draw();
}

void Terminal::ProgressBar::draw() const {
    if (!m_isShown)
        return;
    constexpr int width = 32;
    const int filled = width * m_done / m_total;
    write(stderr, QStringLiteral("\r[%1%2] %3/%4 icons\x1b[K")
                      .arg(QString(filled, u'='), QString(width - filled, u' '))
                      .arg(m_done)
                      .arg(m_total));
}
