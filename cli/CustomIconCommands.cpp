#include "cli/CustomIconCommands.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "cli/common/InputFile.h"
#include "cli/text/Terminal.h"
#include "files/FileItem.h"
#include "iconfamily/CustomIcon.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/AppleDoubleForkStore.h"
#include "platform/forks/CurrentForkStore.h"

#include <cerrno>
#include <functional>

namespace {

int fail(const QString& sentence) {
    Terminal::error(sentence);
    return 1;
}

/// Calls `operation` with the chosen store in use. If it fails, prints the cause.
int run(const CustomIconOptions& options, const QString& what,
        const std::function<Result<Done>()>& operation) {
    const auto work = [&] {
        const Result<Done> result = operation();
        return result ? 0 : fail(QStringLiteral("%1: %2").arg(what, result.error().sentence));
    };
    if (options.appleDouble) {
        AppleDoubleForkStore store;
        const ForkStoreInUse inUse(store);
        return work();
    }
    if (!currentForkStore().isAvailable())
        return fail(
            QStringLiteral("this system keeps no icons with files; with --apple-double the icon goes into a "
                           "second file beside the item, which a Mac reads from an archive"));
    return work();
}

Error missing() {
    return {ErrorCode::NotFound,
            QStringLiteral("%1; with --create an empty file is made").arg(systemSentence(ENOENT))};
}

} // namespace

int runCustomIconSet(const CustomIconOptions& options) {
    const std::optional<InputFile::IcnsFile> file = InputFile::openIcns(options.file);
    if (!file)
        return 1;
    const auto family = IconFamily::initWithData(file->bytes.first(file->reader.length()));
    if (family == nullptr)
        return InputFile::fail(options.file, outOfMemory());
    return run(options, QStringLiteral("the icon could not be set"), [&]() -> Result<Done> {
        if (FileItem::isFolder(options.path))
            return CustomIcon::setOnFolder(*family, options.path, options.compatibility).result;
        if (!options.create && !FileItem::isThere(options.path))
            return about(options.path, missing());
        // If there are several resources of a type, old systems show the first one, which is the oldest.
        if (Result<Done> removed =
                options.compatibility ? CustomIcon::removeCompatibility(options.path) : Done{};
            !removed)
            return removed;
        return CustomIcon::setOnFile(*family, options.path, options.compatibility).result;
    });
}

int runCustomIconRemove(const CustomIconOptions& options) {
    return run(options, QStringLiteral("the icon could not be removed"), [&]() -> Result<Done> {
        if (FileItem::isFolder(options.path))
            return CustomIcon::removeFromFolder(options.path).result;
        if (Result<Done> removed = CustomIcon::removeCompatibility(options.path); !removed)
            return removed;
        return CustomIcon::removeFromFile(options.path).result;
    });
}
