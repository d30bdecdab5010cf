#include "files/TemporaryFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string_view>

namespace {

constexpr std::string_view prefix = ".tobrimax-";

/// ".tobrimax-PROCESS-NUMBER". Its length does not depend on the target's name, which may be the longest
/// allowed one.
QByteArray nextName() {
    static std::atomic<unsigned> counter{0};
    return QByteArray(prefix.data(), prefix.size()) + QByteArray::number(static_cast<qint64>(getpid())) +
           '-' + QByteArray::number(counter.fetch_add(1));
}

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// Whether `name` has the form that `nextName` makes.
bool isName(std::string_view name) {
    if (!name.starts_with(prefix))
        return false;
    name.remove_prefix(prefix.size());
    const std::size_t dash = name.find('-');
    return dash != std::string_view::npos && isNumber(name.substr(0, dash)) &&
           isNumber(name.substr(dash + 1));
}

/// Removes a temporary file that no process has locked.
void removeIfAbandoned(const FileDescriptor& folder, const char* name) {
    // Another program may use such a name for a link or a FIFO: links are not followed, and opening a FIFO
    // does not wait.
    constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    FileDescriptor file(openat(folder.number(), name, O_RDWR | flags));
    if (!file.isOpen())
        file = FileDescriptor(openat(folder.number(), name, O_RDONLY | flags));
    struct stat opened = {};
    struct stat named = {};
    if (!file.isOpen() || fstat(file.number(), &opened) != 0 || !S_ISREG(opened.st_mode) ||
        flock(file.number(), LOCK_EX | LOCK_NB) != 0)
        return;
    // Another process may have removed the file, and a third one may have used its name again.
    if (fstatat(folder.number(), name, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_dev == opened.st_dev &&
        named.st_ino == opened.st_ino)
        unlinkat(folder.number(), name, 0);
}

} // namespace

TemporaryFile::~TemporaryFile() {
    if (!m_name.isEmpty())
        unlinkat(m_folder.number(), m_name.constData(), 0);
}

int TemporaryFile::create() {
    constexpr int attempts = 1000;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QByteArray name = nextName();
        FileDescriptor file(openat(m_folder.number(), name.constData(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (!file.isOpen() && (errno == EEXIST || errno == EINTR))
            continue;
        if (!file.isOpen())
            return errno;
        // Before the lock was taken, another process may have taken the file for abandoned and removed it. A
        // file system without locks never lets that happen.
        struct stat status = {};
        if ((flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) ||
            (fstat(file.number(), &status) == 0 && status.st_nlink == 0))
            continue;
        m_name = name;
        m_file = std::move(file);
        m_lock = FileDescriptor(fcntl(m_file.number(), F_DUPFD_CLOEXEC, 0));
        return m_lock.isOpen() ? 0 : errno;
    }
    return EEXIST;
}

int TemporaryFile::setMode(mode_t mode) {
    return fchmod(m_file.number(), mode) == 0 ? 0 : errno;
}

int TemporaryFile::write(const QByteArray& bytes) {
    // For a long write, Linux looks for contiguous memory of the same length. A virtual machine mostly has to
    // ask its host for it, which takes several times as long as the copy.
    constexpr qsizetype longest = qsizetype{64} << 10;
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(m_file.number(), bytes.constData() + written,
                                  static_cast<std::size_t>(std::min(bytes.size() - written, longest)));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n < 0 ? errno : EIO;
        written += n;
    }
    return 0;
}

int TemporaryFile::sync() {
    return m_file.sync();
}

int TemporaryFile::close() {
    return m_file.close();
}

int TemporaryFile::moveTo(const QByteArray& name) {
    if (renameat(m_folder.number(), m_name.constData(), m_folder.number(), name.constData()) != 0)
        return errno;
    m_name.clear();
    return 0;
}

void TemporaryFile::removeAbandoned(const FileDescriptor& folder) {
    const int listed = openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (listed < 0)
        return;
    const auto close = [](DIR* entries) { closedir(entries); };
    const std::unique_ptr<DIR, decltype(close)> entries(fdopendir(listed), close);
    if (!entries) {
        ::close(listed);
        return;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): only this function reads this stream
    while (const dirent* entry = readdir(entries.get())) {
        if (isName(entry->d_name))
            removeIfAbandoned(folder, entry->d_name);
    }
}
