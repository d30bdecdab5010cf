// A library for LD_PRELOAD. It makes one of a program's calls on a folder fail, or kills the program there:
//
//   FAULT_FOLDER  the folder: calls on it, and on what is in it, are counted
//   FAULT_CALL    the number of the call, from 1
//   FAULT_KIND    what happens at that call: an errno value; "kill"; "short", a write of half the bytes;
//                 "interrupt", a write that a signal interrupts before its first byte; "full", from there on
//                 nothing has room (ENOSPC)
//   FAULT_LIBRARY a part of a path: the program can't load a library whose path has this part
//   FAULT_LOG     a file for the names of the counted calls; a "!" follows the name of a call that fails
//
// Before a write fails or is killed, it has written half its bytes; before a close fails, it has closed.
// Nothing here uses the C library's own functions of the same names, and the C library need not be set up.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

struct Plan {
    const char* folder = std::getenv("FAULT_FOLDER");
    const char* log = std::getenv("FAULT_LOG");
    long call = std::getenv("FAULT_CALL") != nullptr ? std::atol(std::getenv("FAULT_CALL")) : 0;
    std::string_view kind = std::getenv("FAULT_KIND") != nullptr ? std::getenv("FAULT_KIND") : "";
};

const Plan& plan() {
    static const Plan only;
    return only;
}

bool isInFolder(const char* path) {
    const char* folder = plan().folder;
    if (folder == nullptr || path == nullptr)
        return false;
    const std::size_t length = std::strlen(folder);
    return std::strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

bool isInFolder(int descriptor) {
    char link[64];
    char path[PATH_MAX + 1] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    return plan().folder != nullptr && syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1) > 0 &&
           isInFolder(path);
}

bool isInFolder(int folder, const char* path) {
    return path[0] == '/' || folder == AT_FDCWD ? isInFolder(path) : isInFolder(folder);
}

/// Logs a counted call with a single write.
void note(const char* name, bool isFault) {
    if (plan().log == nullptr)
        return;
    char line[64];
    const int length = std::snprintf(line, sizeof line, "%s%s\n", name, isFault ? "!" : "");
    const long file =
        syscall(SYS_openat, AT_FDCWD, plan().log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    syscall(SYS_write, file, line, length);
    syscall(SYS_close, file);
}

enum class Fault { None, Error, Kill, Short };

/// Counts a call on the folder. Returns what happens to it, and sets errno for Fault::Error.
Fault faultOf(const char* name, bool isWrite = false, bool needsRoom = false) {
    static std::atomic<long> count{0};
    const long number = ++count;
    const std::string_view kind = plan().kind;
    const bool isNow = number == plan().call;
    const bool isFull = kind == "full" && number >= plan().call && needsRoom;
    const bool isOfWrites = kind == "short" || kind == "interrupt";
    const bool isFault = plan().call > 0 && (isFull || (isNow && kind != "full" && (isWrite || !isOfWrites)));
    note(name, isFault);
    if (!isFault)
        return Fault::None;
    if (kind == "kill")
        return Fault::Kill;
    if (kind == "short")
        return Fault::Short;
    errno = isFull ? ENOSPC : kind == "interrupt" ? EINTR : std::atoi(plan().kind.data());
    return Fault::Error;
}

[[noreturn]] void die() {
    for (;;)
        syscall(SYS_kill, syscall(SYS_getpid), SIGKILL);
}

/// Makes a call, unless it is counted and has a fault. A call with a fault does nothing and fails.
template <class Call>
int checked(bool isCounted, const char* name, bool needsRoom, const Call& call) {
    if (isCounted) {
        switch (faultOf(name, false, needsRoom)) {
        case Fault::Kill:
            die();
        case Fault::Error:
            return -1;
        default:
            break;
        }
    }
    return static_cast<int>(call());
}

int openIn(int folder, const char* path, int flags, mode_t mode) {
    const bool makes = (flags & O_CREAT) != 0;
    return checked(isInFolder(folder, path), makes ? "create" : "open", makes,
                   [&] { return syscall(SYS_openat, folder, path, flags, mode); });
}

/// The mode among the arguments of an `open`; 0 if there is no mode.
mode_t modeOf(int flags, std::va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// NOLINTBEGIN(cert-dcl50-cpp,cppcoreguidelines-pro-type-vararg): the C library's own signatures
extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openIn(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openIn(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openIn(folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openIn(folder, path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    if (isInFolder(descriptor)) {
        const Fault fault = faultOf("write", true, true);
        if (fault != Fault::None) {
            const int error = errno;
            const ssize_t half = error == EINTR ? 0 : syscall(SYS_write, descriptor, bytes, count / 2);
            if (fault == Fault::Kill)
                die();
            if (fault == Fault::Short)
                return half;
            errno = error;
            return -1;
        }
    }
    return syscall(SYS_write, descriptor, bytes, count);
}

int close(int descriptor) {
    if (isInFolder(descriptor)) {
        const Fault fault = faultOf("close");
        if (fault == Fault::Kill)
            die();
        if (fault == Fault::Error) {
            const int error = errno;
            syscall(SYS_close, descriptor);
            errno = error;
            return -1;
        }
    }
    return static_cast<int>(syscall(SYS_close, descriptor));
}

int fsync(int descriptor) {
    return checked(isInFolder(descriptor), "fsync", true, [&] { return syscall(SYS_fsync, descriptor); });
}

int fdatasync(int descriptor) {
    return checked(isInFolder(descriptor), "fdatasync", true,
                   [&] { return syscall(SYS_fdatasync, descriptor); });
}

int ftruncate(int descriptor, off_t length) noexcept {
    return checked(isInFolder(descriptor), "ftruncate", true,
                   [&] { return syscall(SYS_ftruncate, descriptor, length); });
}

int ftruncate64(int descriptor, off64_t length) noexcept {
    return ftruncate(descriptor, length);
}

int fchmod(int descriptor, mode_t mode) noexcept {
    return checked(isInFolder(descriptor), "fchmod", false,
                   [&] { return syscall(SYS_fchmod, descriptor, mode); });
}

// There is also a structure with this name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
int flock(int descriptor, int operation) noexcept {
    return checked(isInFolder(descriptor), "flock", false,
                   [&] { return syscall(SYS_flock, descriptor, operation); });
}
#pragma GCC diagnostic pop

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    return checked(isInFolder(toFolder, to), "rename", true,
                   [&] { return syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0); });
}

int rename(const char* from, const char* to) noexcept {
    return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept {
    return checked(isInFolder(folder, path), "mkdir", true,
                   [&] { return syscall(SYS_mkdirat, folder, path, mode); });
}

int mkdir(const char* path, mode_t mode) noexcept {
    return mkdirat(AT_FDCWD, path, mode);
}

int unlinkat(int folder, const char* path, int flags) noexcept {
    return checked(isInFolder(folder, path), "unlink", false,
                   [&] { return syscall(SYS_unlinkat, folder, path, flags); });
}

int unlink(const char* path) noexcept {
    return unlinkat(AT_FDCWD, path, 0);
}

void* dlopen(const char* path, int flags) noexcept {
    static auto* const real = reinterpret_cast<void* (*)(const char*, int)>(dlsym(RTLD_NEXT, "dlopen"));
    const char* const missing = std::getenv("FAULT_LIBRARY");
    const bool isMissing = missing != nullptr && path != nullptr && std::strstr(path, missing) != nullptr;
    return isMissing ? nullptr : real(path, flags);
}
}
// NOLINTEND(cert-dcl50-cpp,cppcoreguidelines-pro-type-vararg)
