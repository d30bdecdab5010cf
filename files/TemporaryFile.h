#pragma once

#include "files/FileDescriptor.h"

#include <QByteArray>

#include <sys/types.h>

/// A new file beside one that it is going to replace. It is locked (flock) as long as it is somebody's: one
/// that can be locked was left behind by a process that ended early, and anybody may remove it.
///
/// Every operation answers with 0 or the errno of its failure.
class TemporaryFile {
  public:
    /// In an open folder, kept by reference. Nothing is made yet.
    explicit TemporaryFile(const FileDescriptor& folder) : m_folder(folder) {}
    /// Removes the file, unless it was moved.
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Makes the file, with the permissions that the process's mask leaves.
    int create();
    int setMode(mode_t mode);
    int write(const QByteArray& bytes);
    /// Waits until the disk has it.
    int sync();
    /// No more is written; the lock stays.
    int close();
    /// Gives it a name in the same folder, replacing what has that name.
    int moveTo(const QByteArray& name);

    /// Removes temporaries from an open folder that nobody holds. What fails is left for another time.
    static void removeAbandoned(const FileDescriptor& folder);

  private:
    const FileDescriptor& m_folder;
    QByteArray m_name; ///< empty where there is no file to be removed
    FileDescriptor m_file;
    FileDescriptor m_lock; ///< the same open file: it is unlocked when both are closed
};
