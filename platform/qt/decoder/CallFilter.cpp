#include "platform/qt/decoder/CallFilter.h"

#include "platform/qt/decoder/Sanitizers.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessel::qt {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0;
#endif

constexpr int kAllowed[] = {
    // what is open already
    SYS_read,
    SYS_write,
    SYS_readv,
    SYS_writev,
    SYS_pread64,
    SYS_lseek,
    SYS_close,
    SYS_fstat,
    SYS_fcntl,
    SYS_dup,
    SYS_ftruncate,
    SYS_recvmsg,
    SYS_sendmsg,
    SYS_ppoll,
    SYS_fadvise64,
    SYS_getdents64,
    // what is there
    SYS_newfstatat,
    SYS_statx,
    SYS_faccessat,
    SYS_readlinkat,
    SYS_getcwd,
    SYS_statfs,
    SYS_fstatfs,
    // memory
    SYS_mmap,
    SYS_mprotect,
    SYS_munmap,
    SYS_mremap,
    SYS_madvise,
    SYS_brk,
    SYS_memfd_create,
    // threads and signals
    SYS_futex,
    SYS_set_robust_list,
    SYS_rseq,
    SYS_set_tid_address,
    SYS_gettid,
    SYS_sched_yield,
    SYS_sched_getaffinity,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sigaltstack,
    SYS_tgkill,
    SYS_restart_syscall,
    SYS_exit,
    SYS_exit_group,
    SYS_prctl,
    SYS_eventfd2,
    SYS_pipe2,
    // what this process is, and the time
    SYS_getpid,
    SYS_getppid,
    SYS_getuid,
    SYS_geteuid,
    SYS_getgid,
    SYS_getegid,
    SYS_uname,
    SYS_sysinfo,
    SYS_getrusage,
    SYS_prlimit64,
    SYS_setrlimit,
    SYS_getrlimit,
    SYS_getrandom,
    SYS_clock_gettime,
    SYS_clock_getres,
    SYS_clock_nanosleep,
    SYS_nanosleep,
    SYS_gettimeofday,
    SYS_times,
#if defined(__x86_64__)
    SYS_stat,
    SYS_lstat,
    SYS_access,
    SYS_readlink,
    SYS_poll,
    SYS_pipe,
    SYS_time,
    SYS_arch_prctl,
#endif
};

// What the sanitizers' runtime does beside the program.
constexpr int kAllowedToSanitizers[] = {SYS_ptrace, SYS_wait4, SYS_getpgid, SYS_process_vm_readv, SYS_sched_getparam};

constexpr int kDangerous[] = {
    SYS_execve,
    SYS_execveat,
    SYS_kill,
    SYS_pidfd_open,
    SYS_pidfd_getfd,
    SYS_pidfd_send_signal,
    SYS_io_uring_setup,
    SYS_bpf,
    SYS_unshare,
    SYS_perf_event_open,
    SYS_setns,
    SYS_userfaultfd,
    SYS_process_vm_writev,
    SYS_add_key,
    SYS_keyctl,
    SYS_request_key,
};
constexpr int kDangerousUnlessSanitized[] = {SYS_ptrace, SYS_process_vm_readv};

constexpr std::uint32_t kWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND | (O_TMPFILE & ~O_DIRECTORY);

class Filter {
public:
    Filter()
    {
        load(offsetof(seccomp_data, arch));
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0));
        answer(SECCOMP_RET_KILL_PROCESS);
        load(offsetof(seccomp_data, nr));
    }

    void allow(int call)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number(call), 0, 1));
        answer(SECCOMP_RET_ALLOW);
    }

    /// Allows a call only when, of these bits of one argument, one or none is set.
    void allowWith(int call, unsigned argument, std::uint32_t bits, bool areSet)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number(call), 0, 4));
        load(static_cast<std::uint32_t>(offsetof(seccomp_data, args) +
                                        argument * sizeof(std::uint64_t))); // the low half
        const std::uint8_t skipWhenSet = areSet ? 0 : 1;
        const std::uint8_t skipOtherwise = areSet ? 1 : 0;
        add(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, bits, skipWhenSet, skipOtherwise));
        answer(SECCOMP_RET_ALLOW);
        refuse();
    }

    void forbid(int call)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number(call), 0, 1));
        answer(kForbidden);
    }

    /// Forbids a call whose first argument is another one.
    void forbidUnless(int call, std::uint32_t first)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number(call), 0, 4));
        load(static_cast<std::uint32_t>(offsetof(seccomp_data, args)));
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, first, 0, 1));
        answer(SECCOMP_RET_ALLOW);
        answer(kForbidden);
    }

    /// Numbers that mean the same calls in another way of calling.
    void forbidFrom(std::uint32_t least)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, least, 0, 1));
        answer(kForbidden);
    }

    void allowTheRest() { answer(SECCOMP_RET_ALLOW); }

    /// Calls that the C library can do without are unknown here, so that it takes its other way.
    void refuse() { answer(SECCOMP_RET_ERRNO | (ENOSYS & SECCOMP_RET_DATA)); }

    [[nodiscard]] bool install()
    {
        const sock_fprog program = {static_cast<unsigned short>(steps_.size()), steps_.data()};
        return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    }

private:
    static constexpr std::uint32_t kForbidden = SECCOMP_RET_ERRNO | (EPERM & SECCOMP_RET_DATA);

    static std::uint32_t number(int call) { return static_cast<std::uint32_t>(call); }
    void add(sock_filter step) { steps_.push_back(step); }
    void load(std::uint32_t offset) { add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offset)); }
    void answer(std::uint32_t value) { add(BPF_STMT(BPF_RET | BPF_K, value)); }

    std::vector<sock_filter> steps_;
};

} // namespace

bool filterCalls()
{
    if (kArchitecture == 0)
        return true;
    Filter filter;
    for (const int call : kAllowed)
        filter.allow(call);
    filter.allowWith(SYS_openat, 2, kWriting, false);
#if defined(__x86_64__)
    filter.allowWith(SYS_open, 1, kWriting, false);
#endif
    if (kIsSanitized) {
        for (const int call : kAllowedToSanitizers)
            filter.allow(call);
        filter.allow(SYS_clone);
    } else {
        filter.allowWith(SYS_clone, 0, CLONE_THREAD, true);
    }
    filter.refuse();
    return filter.install();
}

bool filterDangerousCalls(bool mayReachNetwork)
{
    constexpr std::uint32_t kOtherNumbers = 0x40000000;
    if (kArchitecture == 0)
        return true;
    Filter filter;
    filter.forbidFrom(kOtherNumbers);
    for (const int call : kDangerous)
        filter.forbid(call);
    if (!kIsSanitized)
        for (const int call : kDangerousUnlessSanitized)
            filter.forbid(call);
    if (!mayReachNetwork)
        filter.forbidUnless(SYS_socket, AF_UNIX);
    filter.allowTheRest();
    return filter.install();
}

} // namespace tessel::qt
