#pragma once

#include "files/FileItem.h"

#include <QFileSystemWatcher>
#include <QString>
#include <QTimer>

#include <functional>
#include <map>
#include <set>

/// Tells when files change: when one is written, replaced by another, gone, or there again. Changes that
/// follow each other quickly are told once. Needs the event loop; nothing is polled.
class FileWatch {
  public:
    explicit FileWatch(std::function<void()> changed);

    /// Follows these files from now on, and no others. A file that was followed before keeps the state that
    /// was told last, so that no change between is lost.
    void follow(const std::set<QString>& paths);

  private:
    void watch();
    void settle();

    std::function<void()> m_changed;
    QFileSystemWatcher m_watcher;
    QTimer m_quiet;
    int m_waits = 0;
    std::map<QString, FileItem::Stamp> m_states; ///< by absolute path, as they were told last
};
