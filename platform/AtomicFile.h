#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QString>

/// Files that are there whole or not at all.
namespace AtomicFile {

/// Whether a write is only done when the disk has it.
enum class Durability { Cached, Synced };

/// Writes `bytes` to a temporary in the folder of `path` and moves it into place, replacing any file of that
/// name. The folder must exist. Every step is checked; after a failure no temporary stays and an older file
/// of that name is untouched. A link to a file is followed, one that leads nowhere is replaced; devices,
/// FIFOs and folders are refused. The new file has the permissions that the process's
/// mask leaves.
Result<Done> write(const QString& path, const QByteArray& bytes, Durability durability = Durability::Cached);

/// The cause of `error` (an errno value) as the system words it, "No space left on device" for example.
QString systemSentence(int error);

} // namespace AtomicFile
