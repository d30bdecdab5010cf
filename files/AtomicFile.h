#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <optional>

/// Files that are there whole or not at all.
namespace AtomicFile {

/// Whether a write is only done when the disk has it.
enum class Durability { Cached, Synced };

struct Options {
    Durability durability = Durability::Cached;
    std::optional<mode_t> newMode{}; ///< of a file that was not there; else what the process's mask leaves
};

/// Writes `bytes` to a temporary in the folder of `path` and moves it into place, replacing any file of that
/// name. The folder must exist. Every step is checked; after a failure no temporary stays, and what was there
/// is untouched, but where the folder itself could not be synced: then the new file is in place. The first
/// write into a folder removes the temporaries that killed processes left there. Not for several threads at
/// once.
///
/// A link to a file is followed, one that leads nowhere is replaced. Of a file with more than one name this
/// one gets the new bytes, the others keep the old ones. Devices, FIFOs, sockets and folders are refused. An
/// older file's permissions are kept, whether or not they allow writing to it.
Result<Done> write(const QString& path, const QByteArray& bytes, const Options& options = {});

} // namespace AtomicFile
