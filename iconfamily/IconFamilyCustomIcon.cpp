// Makes icon families the custom icons of files and folders.
#include "iconfamily/CustomIcon.h"
#include "iconfamily/IconFamily.h"

namespace {

/// Fills `error`, if it is not null, with the error of a file manager step. Returns whether all steps
/// succeeded.
bool answer(const CustomIcon::Outcome& outcome, Error* error) {
    if (!outcome.fileManager && error != nullptr)
        *error = outcome.fileManager.error();
    return outcome.result.operator bool();
}

} // namespace

bool IconFamily::setAsCustomIconForFile(const QString& path) const {
    return setAsCustomIconForFile(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForFile(const QString& path, bool /*withCompatibility*/) const {
    return setAsCustomIconForFile(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForFile(const QString& path, bool withCompatibility, Error* error) const {
    return answer(CustomIcon::setOnFile(*this, path, withCompatibility), error);
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path) const {
    return setAsCustomIconForDirectory(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path, bool /*withCompatibility*/) const {
    return setAsCustomIconForDirectory(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path, bool withCompatibility,
                                             Error* error) const {
    return answer(CustomIcon::setOnFolder(*this, path, withCompatibility), error);
}

bool IconFamily::removeCustomIconFromFile(const QString& path) {
    return answer(CustomIcon::removeFromFile(path), nullptr);
}

bool IconFamily::removeCustomIconFromDirectory(const QString& path, Error* error) {
    return answer(CustomIcon::removeFromFolder(path), error);
}
