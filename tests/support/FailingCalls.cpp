#include "tests/support/FailingCalls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <future>
#include <iterator>
#include <thread>
#include <vector>

namespace tessel {

namespace {

constexpr std::uint32_t kCalls[] = {
#ifdef SYS_open
    SYS_open,       SYS_mkdir,     SYS_rmdir,     SYS_unlink,     SYS_rename,    SYS_link,       SYS_symlink,
    SYS_stat,       SYS_lstat,     SYS_access,    SYS_chmod,      SYS_readlink,
#endif
    SYS_openat,     SYS_mkdirat,   SYS_unlinkat,  SYS_renameat2,  SYS_linkat,    SYS_symlinkat,  SYS_newfstatat,
    SYS_statx,      SYS_fstat,     SYS_faccessat, SYS_faccessat2, SYS_fchmod,    SYS_fchmodat,   SYS_readlinkat,
    SYS_mknodat,    SYS_read,      SYS_pread64,   SYS_write,      SYS_fsync,     SYS_syncfs,     SYS_utimensat,
    SYS_flistxattr, SYS_fgetxattr, SYS_fsetxattr, SYS_lgetxattr,  SYS_lsetxattr, SYS_getdents64, SYS_flock,
    SYS_ftruncate,  SYS_fdatasync, SYS_pwrite64,  SYS_lseek,
};

// A listener that the kernel asks about the calling thread's calls from now on; negative where it does not.
int listenToCalls()
{
    std::vector<sock_filter> program = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, 0)}; // the call's number comes first
    for (std::size_t i = 0; i < std::size(kCalls); ++i)
        program.push_back(
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kCalls[i], static_cast<std::uint8_t>(std::size(kCalls) - i), 0));
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    return static_cast<int>(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter));
}

// Of no use to a test, which the machine outlives, and slower than all the others together.
bool waitsForTheDisk(int call)
{
    return call == SYS_fsync || call == SYS_fdatasync || call == SYS_syncfs;
}

// Until the thread that is asked about has ended.
// @param atNth what the n-th call fails with, negative, or 0 for it to be made
int answerCalls(int listener, int n, const std::function<int()>& atNth)
{
    // Linux 6.6 answers several times faster when it is asked to; the headers may be older.
    constexpr std::uint64_t kWakeAtOnce = 1;
    ::ioctl(listener, SECCOMP_IOW(4, std::uint64_t), kWakeAtOnce);
    int count = 0;
    pollfd question = {listener, POLLIN, 0};
    while (::poll(&question, 1, -1) > 0 && (question.revents & POLLIN)) {
        seccomp_notif call = {};
        if (::ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0)
            continue;
        seccomp_notif_resp answer = {};
        answer.id = call.id;
        answer.error = ++count == n ? atNth() : 0;
        const bool isMade = answer.error == 0 && !waitsForTheDisk(call.data.nr);
        answer.flags = isMade ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
        ::ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
    }
    return count;
}

bool run(int n, const std::function<int()>& atNth, const std::function<void()>& work)
{
    std::promise<int> listening;
    std::thread thread([&] {
        listening.set_value(listenToCalls());
        work();
    });
    const int listener = listening.get_future().get();
    const int count = listener < 0 ? 0 : answerCalls(listener, n, atNth);
    thread.join();
    ::close(listener);
    return count >= n;
}

} // namespace

bool runWithFailingCall(int n, int errorNumber, const std::function<void()>& work)
{
    return run(
        n, [&] { return -errorNumber; }, work);
}

bool runInterrupted(int n, const std::function<void()>& meanwhile, const std::function<void()>& work)
{
    const auto atNth = [&] {
        meanwhile();
        return 0;
    };
    return run(n, atNth, work);
}

bool canMakeCallsFail()
{
    bool hasFailed = false;
    return runWithFailingCall(1, EIO, [&] { hasFailed = ::access("/", F_OK) != 0 && errno == EIO; }) && hasFailed;
}

} // namespace tessel
