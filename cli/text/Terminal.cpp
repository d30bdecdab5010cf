#include "cli/text/Terminal.h"

#include "base/Log.h"
#include "files/PathBytes.h"

#include <QChar>

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

namespace {

bool logIsShown = false;
Terminal::Capture* capture = nullptr;

/// Whether a terminal may do something other than show the character.
bool isUnsafe(char32_t c) {
    if (c >= 0x20 && c < 0x7F)
        return false;
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
    case QChar::Other_Surrogate:
        return true;
    default:
        return false;
    }
}

QString hexadecimal(char32_t c, int digits) {
    return QStringLiteral("%1").arg(static_cast<uint>(c), digits, 16, QLatin1Char('0'));
}

/// `text` with each character that `isUnsafe` replaced by the result of `escape`.
template <class Escape>
QString escapedBy(const Escape& escape, const QString& text) {
    // Most texts are printable ASCII and need no escapes.
    if (std::ranges::all_of(text, [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; }))
        return text;
    QString shown;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        const bool isPair = unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const char32_t c = isPair ? QChar::surrogateToUcs4(unit, text[++at]) : char32_t{unit.unicode()};
        if (isUnsafe(c))
            shown += escape(c);
        else
            shown += QStringView(QChar::fromUcs4(c));
    }
    return shown;
}

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    if (capture != nullptr)
        capture->add(stream, bytes);
    else
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
    const auto escape = [](char32_t c) -> QString {
        if (c == U'\n')
            return QStringLiteral("\\n");
        if (QChar::category(c) == QChar::Other_Control)
            return QStringLiteral("\\x") + hexadecimal(c, 2);
        const auto byte = c <= 0xFFFF ? PathBytes::rawByte(QChar(static_cast<char16_t>(c))) : std::nullopt;
        if (byte)
            return QStringLiteral("\\x") + hexadecimal(*byte, 2);
        return c <= 0xFFFF ? QStringLiteral("\\u") + hexadecimal(c, 4)
                           : QStringLiteral("\\U") + hexadecimal(c, 8);
    };
    return escapedBy(escape, text);
}

QString Terminal::escapedJson(const QString& text) {
    const auto escape = [](char32_t c) {
        QString units;
        const auto encoded = QChar::fromUcs4(c);
        for (const QChar unit : QStringView(encoded))
            units += QStringLiteral("\\u") + hexadecimal(unit.unicode(), 4);
        return units;
    };
    return escapedBy(escape, text);
}

bool Terminal::print(const QString& line) {
    return printText(line + u'\n');
}

bool Terminal::printText(const QString& text) {
    write(stdout, text);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

bool Terminal::passOn(std::FILE* stream, const QByteArray& bytes) {
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    return std::fflush(stream) == 0 && std::ferror(stream) == 0;
}

Terminal::Capture::Capture() {
    capture = this;
}

Terminal::Capture::~Capture() {
    capture = nullptr;
}

void Terminal::Capture::add(std::FILE* stream, const QByteArray& bytes) {
    (stream == stdout ? m_output : m_errors) += bytes;
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

void Terminal::note(const QString& sentence) {
    write(stderr, QStringLiteral("tobrimax-cli: note: ") + escaped(sentence) + u'\n');
}

void Terminal::showDiagnosticLog(bool isShown) {
    logIsShown = isShown;
    qInstallMessageHandler(onMessage);
}

bool Terminal::canErase() {
    const QByteArray terminal = qgetenv("TERM");
    return capture == nullptr && isatty(STDERR_FILENO) != 0 && !terminal.isEmpty() && terminal != "dumb";
}

int Terminal::columns(int stream) {
    constexpr int usual = 80;
    winsize size = {};
    return ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

Terminal::ProgressBar::ProgressBar(int total, bool isWanted, Unit unit)
    : m_total(total), m_isShown(isWanted && total > 0 && canErase()), m_unit(unit) {
    m_timer.start();
    draw();
}

Terminal::ProgressBar::~ProgressBar() {
    hide();
}

void Terminal::ProgressBar::advance() {
    m_done = std::min(m_done + 1, m_total);
    draw();
}

void Terminal::ProgressBar::hide() const {
    if (m_isShown)
        write(stderr, QStringLiteral("\r\x1b[K"));
}

QString Terminal::ProgressBar::rate() const {
    if (m_unit == Unit::Icons || m_done == 0)
        return {};
    const double seconds = static_cast<double>(std::max<qint64>(m_timer.elapsed(), 1)) / 1000;
    return QStringLiteral(", %1 a second").arg(m_done / seconds, 0, 'f', 1);
}

void Terminal::ProgressBar::draw() const {
    if (!m_isShown)
        return;
    constexpr int width = 32;
    const int filled = width * m_done / m_total;
    write(stderr, QStringLiteral("\r[%1%2] %3/%4 %5%6\x1b[K")
                      .arg(QString(filled, u'='), QString(width - filled, u' '))
                      .arg(m_done)
                      .arg(m_total)
                      .arg(m_unit == Unit::Icons ? QStringLiteral("icons") : QStringLiteral("sets"), rate()));
}
