#include "project/FileWatch.h"

#include "files/FileItem.h"
#include "files/FilePath.h"

#include <algorithm>

namespace {

/// A program may save a file in several steps.
constexpr int quietMilliseconds = 200;
/// How often a file that is gone is waited for.
constexpr int mostWaits = 5;

} // namespace

FileWatch::FileWatch(std::function<void()> changed) : m_changed(std::move(changed)) {
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quietMilliseconds);
    const auto restart = [this] {
        m_waits = 0;
        m_quiet.start();
    };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_quiet, restart);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_quiet, restart);
    QObject::connect(&m_quiet, &QTimer::timeout, &m_quiet, [this] { settle(); });
}

void FileWatch::follow(const std::set<QString>& paths) {
    std::map<QString, FileItem::Stamp> states;
    for (const QString& path : paths) {
        const QString whole = FileItem::absolutePath(path);
        const auto known = m_states.find(whole);
        states.emplace(whole, known != m_states.end() ? known->second : FileItem::stamp(whole));
    }
    m_states = std::move(states);
    watch();
    // What changed before it was watched has told nobody.
    m_quiet.start();
}

/// Watches the files, and their folders too: a file that is replaced by another is no longer watched.
void FileWatch::watch() {
    QStringList wanted;
    for (const auto& [path, state] : m_states) {
        wanted << deletingLastPathComponent(path);
        if (state.isThere())
            wanted << path;
    }
    wanted.removeDuplicates();
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    QStringList added;
    QStringList left;
    std::ranges::copy_if(wanted, std::back_inserter(added),
                         [&](const QString& path) { return !watched.contains(path); });
    std::ranges::copy_if(watched, std::back_inserter(left),
                         [&](const QString& path) { return !wanted.contains(path); });
    if (!left.isEmpty())
        m_watcher.removePaths(left);
    if (!added.isEmpty())
        m_watcher.addPaths(added);
}

/// Nothing has happened for a while: looks which files are other ones now.
void FileWatch::settle() {
    bool isChanged = false;
    bool isGone = false;
    std::map<QString, FileItem::Stamp> states;
    for (const auto& [path, state] : m_states) {
        const FileItem::Stamp now = FileItem::stamp(path);
        isChanged = isChanged || !(now == state);
        isGone = isGone || (state.isThere() && !now.isThere());
        states.emplace(path, now);
    }
    // A save that takes the file away first puts the new one there in a moment.
    if (isGone && m_waits < mostWaits) {
        ++m_waits;
        m_quiet.start();
        return;
    }
    m_states = std::move(states);
    watch();
    if (isChanged)
        m_changed();
}
