#pragma once

#include <QString>

#include <string>

/// The options of the commands of `tobrimax-cli custom-icon`. Each run function returns the exit status.

struct CustomIconOptions {
    QString path;
    std::string file;           ///< the icns file, in the file system's own encoding; only for `set`
    bool appleDouble = false;   ///< forks are kept in AppleDouble files beside the items
    bool compatibility = false; ///< only for `set`
    bool create = false;        ///< only for `set`: makes an empty file if there is no item
};

/// Makes an icns file the custom icon of a file or folder.
int runCustomIconSet(const CustomIconOptions& options);

/// Removes the custom icon of a file or folder.
int runCustomIconRemove(const CustomIconOptions& options);
