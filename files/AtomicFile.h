#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <optional>

/// Writes files atomically: a file is there with all its bytes, or not at all.
namespace AtomicFile {

/// Synced: the write is complete when the bytes are on the disk. Cached: the system writes them to the disk
/// later.
enum class Durability { Cached, Synced };

struct Options {
    Durability durability = Durability::Cached;
    std::optional<mode_t> newMode{}; ///< the mode of a new file; if empty, 0666 less the process's umask
};

/// Writes `bytes` to a temporary file in the folder of `path` and renames it to `path`, replacing any file of
/// that name. The folder must exist. Every step is checked. After a failure no temporary file stays and the
/// old file is untouched, with one exception: if only the sync of the folder fails, the new file is already
/// in place. The first write into a folder removes the temporaries that killed processes left there. Not
/// thread-safe.
///
/// A link to a file is followed; a link that leads nowhere is replaced. If a file has several hard links,
/// only this name gets the new bytes; the other names keep the old ones. Devices, FIFOs, sockets and folders
/// are refused. The permissions of an existing file are kept, whether or not they allow writing to it.
Result<Done> write(const QString& path, const QByteArray& bytes, const Options& options = {});

/// Fails as `write` would, as far as this can be told without writing.
Result<Done> check(const QString& path);

} // namespace AtomicFile
