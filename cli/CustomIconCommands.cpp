#include "cli/CustomIconCommands.h"

#include "cli/InputFile.h"
#include "cli/Terminal.h"
#include "files/FilePath.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ResourceFile.h"

#include <QFileInfo>

#include <functional>

namespace {

int fail(const QString& sentence) {
    Terminal::error(sentence);
    return 1;
}

/// Why an operation on that item failed, as far as it can be seen afterwards.
QString causeOf(const QString& path) {
    const ForkStore& store = currentForkStore();
    if (const Result<FinderInfo> info = store.finderInfo(path); !info)
        return info.error().sentence;
    const bool isFolder = QFileInfo(path).isDir();
    const QString withFork = isFolder ? appendingPathComponent(path, QStringLiteral("Icon\r")) : path;
    if (!isFolder || QFileInfo::exists(withFork)) {
        const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(withFork);
        if (!file)
            return file.error().sentence;
        if ((*file)->fork().isReadOnly())
            return QStringLiteral("%1: its resource fork is read-only").arg(path);
    }
    return QStringLiteral("%1: something in its folder could not be written").arg(path);
}

/// Calls `operation` with the store that was asked for; what it tells, or else the cause that is seen, is
/// printed where it fails.
int run(const CustomIconOptions& options, const QString& what,
        const std::function<bool(QString& told)>& operation) {
    const auto work = [&] {
        QString told;
        if (operation(told))
            return 0;
        return fail(QStringLiteral("%1: %2").arg(what, told.isEmpty() ? causeOf(options.path) : told));
    };
    if (options.appleDouble) {
        AppleDoubleForkStore store;
        const ForkStoreInUse inUse(store);
        return work();
    }
    if (!currentForkStore().isAvailable())
        return fail(
            QStringLiteral("files have no resource forks on this system; with --apple-double they are "
                           "kept in files beside the items, which a Mac reads from archives"));
    return work();
}

} // namespace

int runCustomIconSet(const CustomIconOptions& options) {
    const std::optional<InputFile::IcnsFile> file = InputFile::openIcns(options.file);
    if (!file)
        return 1;
    const auto family = IconFamily::initWithData(file->bytes.first(file->reader.length()));
    return run(options, QStringLiteral("the icon could not be set"), [&](QString& told) {
        const bool isFolder = QFileInfo(options.path).isDir();
        const bool isNew = !QFileInfo::exists(options.path);
        Error error{};
        const bool isSet =
            isFolder ? family->setAsCustomIconForDirectory(options.path, options.compatibility, &error)
                     : family->setAsCustomIconForFile(options.path, options.compatibility, &error);
        // That a file which is made has no date yet is no cause.
        if (isFolder)
            told = error.sentence;
        if (isSet && isNew)
            Terminal::warning(
                QStringLiteral("%1: there was no such file; an empty one was made").arg(options.path));
        return isSet;
    });
}

int runCustomIconRemove(const CustomIconOptions& options) {
    return run(options, QStringLiteral("the icon could not be removed"), [&](QString& told) {
        if (!QFileInfo(options.path).isDir())
            return IconFamily::removeCustomIconFromFile(options.path);
        Error error{};
        const bool isRemoved = IconFamily::removeCustomIconFromDirectory(options.path, &error);
        told = error.sentence;
        return isRemoved;
    });
}
