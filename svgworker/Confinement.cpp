#include "svgworker/Confinement.h"

#include "svgworker/Owned.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <initializer_list>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#ifdef TOBRIMAX_HAS_SECCOMP
#include <linux/sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#endif

namespace {

/// Sets a limit for good, where it is not lower already. At the soft one the system tells the reason.
template <typename Resource>
bool setLimit(Resource resource, std::uint64_t value) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0)
        return false;
    limit.rlim_max = std::min<rlim_t>(value + 1, limit.rlim_max);
    limit.rlim_cur = std::min<rlim_t>(value, limit.rlim_max);
    return ::setrlimit(resource, &limit) == 0;
}

#ifdef TOBRIMAX_HAS_SECCOMP

/// The calls that drawing needs, whatever their arguments. A call that is not listed fails with EPERM.
constexpr int allowedCalls[] = {
    // Reading files.
    SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(readv), SCMP_SYS(close), SCMP_SYS(fstat),
    SCMP_SYS(newfstatat), SCMP_SYS(stat), SCMP_SYS(lstat), SCMP_SYS(statx), SCMP_SYS(statfs),
    SCMP_SYS(fstatfs), SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(lseek),
    SCMP_SYS(getdents64), SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(getcwd), SCMP_SYS(fcntl),
    SCMP_SYS(fadvise64),
    // Memory.
    SCMP_SYS(mmap), SCMP_SYS(munmap), SCMP_SYS(mprotect), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(brk),
    // The pipe.
    SCMP_SYS(write), SCMP_SYS(writev),
    // Threads of the library's filters.
    SCMP_SYS(futex), SCMP_SYS(sched_yield), SCMP_SYS(sched_getaffinity), SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq), SCMP_SYS(gettid), SCMP_SYS(getpid), SCMP_SYS(sigaltstack), SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(membarrier), SCMP_SYS(getcpu), SCMP_SYS(exit),
    SCMP_SYS(exit_group), SCMP_SYS(restart_syscall),
    // What libraries ask for.
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_getres), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(times), SCMP_SYS(getrusage), SCMP_SYS(getrandom),
    SCMP_SYS(uname), SCMP_SYS(sysinfo), SCMP_SYS(getuid), SCMP_SYS(geteuid), SCMP_SYS(getgid),
    SCMP_SYS(getegid), SCMP_SYS(getrlimit)};

bool addRules(scmp_filter_ctx filter) {
    const auto isAllowed = [filter](int call, std::initializer_list<scmp_arg_cmp> conditions) {
        return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call, static_cast<unsigned>(conditions.size()),
                                      conditions.begin()) == 0;
    };
    // NOLINTBEGIN(readability-magic-numbers): the numbers of arguments
    constexpr scmp_datum_t writing = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
    const auto self = static_cast<scmp_datum_t>(::getpid());
    return std::ranges::all_of(allowedCalls, [&](int call) { return isAllowed(call, {}); }) &&
           isAllowed(SCMP_SYS(open), {{1, SCMP_CMP_MASKED_EQ, writing, 0}}) &&
           isAllowed(SCMP_SYS(openat), {{2, SCMP_CMP_MASKED_EQ, writing, 0}}) &&
           // A thread and no process. The newer call's flags can't be looked at; the C library has the older
           // one for that answer.
           isAllowed(SCMP_SYS(clone), {{0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD}}) &&
           seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0 &&
           // Asks for a limit and sets none.
           isAllowed(SCMP_SYS(prlimit64), {{2, SCMP_CMP_EQ, 0, 0}}) &&
           isAllowed(SCMP_SYS(prctl), {{0, SCMP_CMP_EQ, PR_SET_NAME, 0}}) &&
           // How a process aborts.
           isAllowed(SCMP_SYS(tgkill), {{0, SCMP_CMP_EQ, self, 0}});
    // NOLINTEND(readability-magic-numbers)
}

bool giveUpRights() {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;
    // Asked with a null pointer, a kernel with filters fails to read it. An emulator of one has none.
    if (::prctl(PR_SET_SECCOMP, 2 /* SECCOMP_MODE_FILTER */, nullptr, 0, 0) != 0 && errno != EFAULT)
        return true;
    const Owned<void, &seccomp_release> filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    return filter != nullptr && addRules(filter.get()) && seccomp_load(filter.get()) == 0;
}

#else

bool giveUpRights() {
    return true;
}

#endif

} // namespace

bool Confinement::enter(int sharedMemory, std::uint64_t processorSeconds,
                        [[maybe_unused]] std::uint64_t addressSpace) {
    if (::dup2(sharedMemory, memory) != memory)
        return false;
#ifdef __GLIBC__
    ::closefrom(memory + 1);
    // With one arena the limit means the same on every machine.
    mallopt(M_ARENA_MAX, 1);
    // The library asks for a raster after the other. Pages of one that it gives back serve the next: to get
    // them anew from the system takes a tenth of a set's time.
    constexpr int largestFromHeap = 32 << 20;
    constexpr int mostKept = 64 << 20;
    mallopt(M_MMAP_THRESHOLD, largestFromHeap);
    mallopt(M_TRIM_THRESHOLD, mostKept);
#endif
    constexpr std::uint64_t mostFiles = 64;
    constexpr std::uint64_t stackBytes = 64 << 20;
    // Documents may be nested deeply. A refusal does no harm.
    setLimit(RLIMIT_STACK, stackBytes);
#ifdef TOBRIMAX_HAS_MEMORY_LIMIT
    if (!setLimit(RLIMIT_AS, addressSpace))
        return false;
#endif
    return setLimit(RLIMIT_CORE, 0) && setLimit(RLIMIT_FSIZE, 0) && setLimit(RLIMIT_NOFILE, mostFiles) &&
           setLimit(RLIMIT_CPU, processorSeconds) && giveUpRights();
}
