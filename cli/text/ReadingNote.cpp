#include "cli/text/ReadingNote.h"

#include "cli/text/Terminal.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

// What the handler writes and tells; it may not take memory.
std::array<char, 512> text{};
volatile std::sig_atomic_t length = 0;
volatile std::sig_atomic_t isShown = 0;
struct sigaction before = {};

void write(const char* bytes, std::size_t count) {
    // A terminal that is gone is nobody to tell.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, bytes, count);
}

void onTimer(int /*signal*/) {
    const int cause = errno;
    write(text.data(), static_cast<std::size_t>(length));
    isShown = 1;
    errno = cause;
}

void setTimer(suseconds_t microseconds) {
    itimerval timer{};
    timer.it_value.tv_usec = microseconds;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

/// The words for `path`, cut to one line of `columns`.
QByteArray wordsFor(const QString& path, int columns) {
    const QString start = QStringLiteral("reading ");
    const QString end = QStringLiteral("…");
    QString name = Terminal::escaped(path.section(u'/', -1, -1, QString::SectionSkipEmpty));
    // A character may take two columns.
    const qsizetype room = std::max<qsizetype>(1, (columns - start.size() - end.size() - 1) /
                                                      (name.toUtf8().size() > name.size() ? 2 : 1));
    name.truncate(room);
    return (start + name + end).toUtf8();
}

} // namespace

ReadingNote::ReadingNote(const QString& path, bool isWanted) {
    constexpr suseconds_t halfASecond = 500000;
    if (!isWanted || !Terminal::canErase())
        return;
    const QByteArray words = wordsFor(path, Terminal::columns(STDERR_FILENO));
    length = static_cast<std::sig_atomic_t>(
        std::min<std::size_t>(static_cast<std::size_t>(words.size()), text.size()));
    std::copy_n(words.begin(), length, text.begin());
    isShown = 0;
    // What the signal interrupts goes on as if nothing had been.
    struct sigaction action = {};
    action.sa_handler = onTimer;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    if (sigaction(SIGALRM, &action, &before) != 0)
        return;
    setTimer(halfASecond);
    m_isStarted = true;
}

ReadingNote::~ReadingNote() {
    if (!m_isStarted)
        return;
    setTimer(0);
    sigaction(SIGALRM, &before, nullptr);
    constexpr char erase[] = "\r\x1b[K";
    if (isShown != 0)
        write(erase, std::strlen(erase));
}
