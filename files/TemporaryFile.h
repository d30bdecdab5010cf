#pragma once

#include "files/FileDescriptor.h"

#include <QByteArray>

#include <sys/types.h>

/// A new file in the same folder as the file that it will replace. It is locked (flock) as long as a process
/// uses it. A temporary that can be locked was left behind by a process that ended early; any process may
/// remove it.
///
/// Every operation returns 0 or the errno of its failure.
class TemporaryFile {
  public:
    /// For a file in an open folder. Keeps a reference to `folder`; nothing is created yet.
    explicit TemporaryFile(const FileDescriptor& folder) : m_folder(folder) {}
    /// Removes the file, unless it was moved.
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Creates the file, with the permissions that the process's umask leaves.
    int create();
    int setMode(mode_t mode);
    int write(const QByteArray& bytes);
    /// Waits until the disk has the bytes.
    int sync();
    /// Ends the writing; the file stays locked.
    int close();
    /// Renames the file within its folder and replaces an existing file of that name.
    int moveTo(const QByteArray& name);

    /// Removes the temporaries in an open folder that no process has locked. Failures are ignored; a later
    /// call may succeed.
    static void removeAbandoned(const FileDescriptor& folder);

  private:
    const FileDescriptor& m_folder;
    QByteArray m_name; ///< empty if there is no file to remove
    FileDescriptor m_file;
    FileDescriptor m_lock; ///< a duplicate of m_file's descriptor: the file is unlocked when both are closed
};
