#pragma once

#include <sys/stat.h>

#include <ctime>

/// When the item was last changed: a file's bytes, or which items a folder has.
inline timespec modificationTime(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec;
#else
    return status.st_mtim;
#endif
}
