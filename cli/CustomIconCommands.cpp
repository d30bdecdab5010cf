#include "cli/CustomIconCommands.h"

#include "base/ShortMemory.h"
#include "cli/InputFile.h"
#include "cli/Terminal.h"
#include "iconfamily/CustomIcon.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"

#include <QFileInfo>

#include <functional>

namespace {

int fail(const QString& sentence) {
    Terminal::error(sentence);
    return 1;
}

/// Calls `operation` with the chosen store in use. If it fails, prints the cause.
int run(const CustomIconOptions& options, const QString& what,
        const std::function<CustomIcon::Outcome()>& operation) {
    const auto work = [&] {
        const Result<Done> result = operation().result;
        return result ? 0 : fail(QStringLiteral("%1: %2").arg(what, result.error().sentence));
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
    if (family == nullptr)
        return InputFile::fail(options.file, outOfMemory());
    return run(options, QStringLiteral("the icon could not be set"), [&] {
        const bool isFolder = QFileInfo(options.path).isDir();
        const bool isNew = !QFileInfo::exists(options.path);
        CustomIcon::Outcome outcome =
            isFolder ? CustomIcon::setOnFolder(*family, options.path, options.compatibility)
                     : CustomIcon::setOnFile(*family, options.path, options.compatibility);
        if (outcome.result && isNew)
            Terminal::warning(
                QStringLiteral("%1: there was no such file; an empty one was made").arg(options.path));
        return outcome;
    });
}

int runCustomIconRemove(const CustomIconOptions& options) {
    return run(options, QStringLiteral("the icon could not be removed"), [&] {
        const bool isFolder = QFileInfo(options.path).isDir();
        return isFolder ? CustomIcon::removeFromFolder(options.path)
                        : CustomIcon::removeFromFile(options.path);
    });
}
