#pragma once

#include <QString>

#include <string>

/// What the commands of `tobrimax-cli custom-icon` were asked to do. Each returns the exit status.

struct CustomIconOptions {
    QString path;
    std::string file;           ///< the icns file, of `set`, in the file system's own bytes
    bool appleDouble = false;   ///< forks are kept in AppleDouble files beside the items
    bool compatibility = false; ///< of `set`
};

/// Makes an icns file the custom icon of a file or folder.
int runCustomIconSet(const CustomIconOptions& options);

/// Takes the custom icon off a file or folder.
int runCustomIconRemove(const CustomIconOptions& options);
