#pragma once

#include <sys/stat.h>

#include <ctime>

/// When a file's bytes, or the list of items in a folder, last changed.
inline timespec modificationTime(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec;
#else
    return status.st_mtim;
#endif
}
