#include "files/FileDescriptor.h"

#include <fcntl.h>

namespace {

/// Calls `flush` again for as long as signals interrupt it. Returns 0 or the errno of a failure.
template <typename Flush>
int flushed(const Flush& flush) {
    while (flush() == -1) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

int FileDescriptor::sync() const {
#ifdef F_FULLFSYNC
    // On macOS, fsync leaves the bytes in the drive's own cache. Some file systems offer only fsync.
    const int failure = flushed([this] { return fcntl(m_number, F_FULLFSYNC); });
    if (failure != EINVAL && failure != ENOTSUP && failure != ENOTTY)
        return failure;
#endif
    return flushed([this] { return fsync(m_number); });
}
