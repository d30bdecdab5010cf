#include "svgworker/Confinement.h"

#include <gtest/gtest.h>

#ifdef __linux__

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

constexpr int notEntered = 99;
constexpr std::uint64_t seconds = 60;
constexpr std::uint64_t addressSpace = std::uint64_t{64} << 30;

/// What `attempt` returns in a process that has given up its rights.
template <typename Attempt>
int confined(const Attempt& attempt) {
    const pid_t process = ::fork();
    if (process == 0) {
        const int memory = ::memfd_create("svg", 0);
        if (::ftruncate(memory, 100) != 0 || !Confinement::enter(memory, seconds, addressSpace))
            ::_exit(notEntered);
        ::_exit(attempt());
    }
    int status = 0;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    return WEXITSTATUS(status);
}

/// 0, or the errno of a call that has returned -1.
int errorOf(long result) {
    return result == -1 ? errno : 0;
}

class ConfinementTest : public testing::Test {
  public:
    void SetUp() override {
        if (::prctl(PR_SET_SECCOMP, 2, nullptr, 0, 0) != 0 && errno != EFAULT)
            GTEST_SKIP() << "no filters of system calls here";
    }
};

} // namespace

TEST_F(ConfinementTest, files_can_be_read) {
    const auto reads = [] {
        char byte = 0;
        const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
        return file < 0 ? errno : errorOf(::read(file, &byte, 1));
    };
    EXPECT_EQ(confined(reads), 0);
}

TEST_F(ConfinementTest, no_file_can_be_written) {
    EXPECT_EQ(confined([] { return errorOf(::open("/dev/null", O_WRONLY | O_CLOEXEC)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(::open("/dev/null", O_RDWR | O_CLOEXEC)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(::open("none", O_RDONLY | O_CREAT | O_CLOEXEC, 0600)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(::unlink("none")); }), EPERM);
}

TEST_F(ConfinementTest, the_memory_can_be_mapped_and_gets_no_larger) {
    const auto maps = [] {
        void* start = ::mmap(nullptr, 100, PROT_READ | PROT_WRITE, MAP_SHARED, Confinement::memory, 0);
        if (start == MAP_FAILED)
            return errno;
        *static_cast<char*>(start) = 1;
        return 0;
    };
    EXPECT_EQ(confined(maps), 0);
    EXPECT_EQ(confined([] { return errorOf(::ftruncate(Confinement::memory, 1000)); }), EPERM);
    const auto writes = [] {
        // Else the signal ends the process.
        ::signal(SIGXFSZ, SIG_IGN);
        return errorOf(::lseek(Confinement::memory, 0, SEEK_END)) != 0
                   ? errno
                   : errorOf(::write(Confinement::memory, "a", 1));
    };
    EXPECT_EQ(confined(writes), EFBIG);
}

TEST_F(ConfinementTest, no_process_and_no_connection_can_be_made) {
    EXPECT_EQ(confined([] {
                  const pid_t process = ::fork();
                  if (process == 0)
                      ::_exit(0);
                  return errorOf(process);
              }),
              EPERM);
    EXPECT_EQ(confined([] { return errorOf(::execl("/bin/true", "true", nullptr)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(::socket(AF_UNIX, SOCK_STREAM, 0)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(::kill(::getppid(), 0)); }), EPERM);
}

TEST_F(ConfinementTest, limits_can_not_be_raised) {
    const auto raises = [] {
        const rlimit more{seconds + 1, seconds + 1};
        return errorOf(::setrlimit(RLIMIT_CPU, &more));
    };
    EXPECT_EQ(confined(raises), EPERM);
    const auto told = [] {
        rlimit limit{};
        ::getrlimit(RLIMIT_CPU, &limit);
        return static_cast<int>(limit.rlim_cur);
    };
    EXPECT_EQ(confined(told), static_cast<int>(seconds));
}

TEST_F(ConfinementTest, descriptors_of_the_program_are_closed) {
    const int file = ::fcntl(STDERR_FILENO, F_DUPFD, 50);
    ASSERT_GE(file, 50);
    EXPECT_EQ(confined([file] { return errorOf(::fcntl(file, F_GETFD)); }), EBADF);
    ::close(file);
}

#endif
