#include "svgworker/Confinement.h"

#include "svgworker/Owned.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#ifdef TOBRIMAX_HAS_SECCOMP
#include <linux/sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#endif

namespace {

/// Sets the soft limit, at most to the hard one.
template <typename Resource>
bool setSoftLimit(Resource resource, std::uint64_t value) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0)
        return false;
    limit.rlim_cur = std::min<rlim_t>(value, limit.rlim_max);
    return ::setrlimit(resource, &limit) == 0;
}

#ifdef TOBRIMAX_HAS_MEMORY_LIMIT
constexpr bool limitsAddressSpace = true;
#else
constexpr bool limitsAddressSpace = false; // sanitizers reserve terabytes
#endif

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

/// What the argument of that number is compared with. The library's own macros for it are C.
scmp_arg_cmp argument(unsigned number, scmp_compare comparison, scmp_datum_t datum, scmp_datum_t other = 0) {
    return {number, comparison, datum, other};
}

bool addRules(scmp_filter_ctx filter) {
    const auto isAdded = [&](std::uint32_t action, int call, auto... conditions) {
        return seccomp_rule_add(filter, action, call, sizeof...(conditions), conditions...) == 0;
    };
    for (const int call : allowedCalls) {
        if (!isAdded(SCMP_ACT_ALLOW, call))
            return false;
    }
    // NOLINTBEGIN(readability-magic-numbers): the numbers of arguments
    constexpr auto writing = std::uint64_t{O_WRONLY | O_RDWR | O_CREAT | O_TRUNC};
    const pid_t self = ::getpid();
    return isAdded(SCMP_ACT_ALLOW, SCMP_SYS(open), argument(1, SCMP_CMP_MASKED_EQ, writing, 0)) &&
           isAdded(SCMP_ACT_ALLOW, SCMP_SYS(openat), argument(2, SCMP_CMP_MASKED_EQ, writing, 0)) &&
           // A thread and no process. The newer call's flags can't be looked at; the C library has the older
           // one for that answer.
           isAdded(SCMP_ACT_ALLOW, SCMP_SYS(clone),
                   argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD)) &&
           isAdded(SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3)) &&
           // Asks for a limit and sets none.
           isAdded(SCMP_ACT_ALLOW, SCMP_SYS(prlimit64), argument(2, SCMP_CMP_EQ, 0)) &&
           isAdded(SCMP_ACT_ALLOW, SCMP_SYS(prctl), argument(0, SCMP_CMP_EQ, PR_SET_NAME)) &&
           // How a process aborts.
           isAdded(SCMP_ACT_ALLOW, SCMP_SYS(tgkill),
                   argument(0, SCMP_CMP_EQ, static_cast<std::uint64_t>(self)));
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

bool Confinement::enter(int sharedMemory, std::uint64_t processorSeconds, std::uint64_t addressSpace) {
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
    setSoftLimit(RLIMIT_STACK, stackBytes);
    return setSoftLimit(RLIMIT_CORE, 0) && setSoftLimit(RLIMIT_NOFILE, mostFiles) &&
           setSoftLimit(RLIMIT_CPU, processorSeconds) &&
           (!limitsAddressSpace || setSoftLimit(RLIMIT_AS, addressSpace)) && giveUpRights();
}
