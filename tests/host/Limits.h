#pragma once

#include <csignal>
#include <cstddef>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives nothing can be written to files, or no more than so many bytes to each, as on a full disk.
class CFullDisk
{
public:
    explicit CFullDisk(rlim_t bytes = 0)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = ::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~CFullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        ::signal(SIGXFSZ, m_handler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

private:
    rlimit m_before{};
    sighandler_t m_handler;
};

/// While it lives the superuser, as whom tests may run, is refused what others are: what the modes of a file
/// forbid, and to give a file to somebody.
class CPlainUser
{
public:
    CPlainUser()
    {
        ::syscall(SYS_capget, &m_header, m_before);
        __user_cap_data_struct plain[2] = {m_before[0], m_before[1]};
        for (const unsigned right : Rights)
            plain[0].effective &= ~(1U << right);
        ::syscall(SYS_capset, &m_header, plain);
    }
    ~CPlainUser() { ::syscall(SYS_capset, &m_header, m_before); }
    CPlainUser(const CPlainUser&) = delete;
    CPlainUser& operator=(const CPlainUser&) = delete;

    /// The same for what this process, a child, becomes; it cannot be taken back.
    static void Become()
    {
        for (const unsigned right : Rights)
            ::prctl(PR_CAPBSET_DROP, right, 0, 0, 0);
    }

private:
    static constexpr unsigned Rights[] = {CAP_CHOWN, CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER};

    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2]{};
};

/// From now on the system gives this process, and whatever it becomes, no thread. For children: it cannot be
/// taken back. False when the system does not let it be forbidden.
inline bool ForbidThreads()
{
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS), // the C library falls back to clone()
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, CLONE_THREAD, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAGAIN),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof filter / sizeof *filter, filter};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}
