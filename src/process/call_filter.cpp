// SPDX-License-Identifier: MIT
#include "process/call_filter.h"

#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <type_traits>

namespace {

/** Names, as this machine's system may lack some of them. */
constexpr std::array kDenied{
    // the network, and other programs' sockets
    "socket", "connect", "bind", "listen", "accept", "accept4", "socketcall",
    // programs and processes
    "execve", "execveat", "fork", "vfork",
    // other processes
    "kill", "tkill", "rt_sigqueueinfo", "rt_tgsigqueueinfo", "pidfd_open", "pidfd_getfd", "pidfd_send_signal",
    "ptrace", "process_vm_readv", "process_vm_writev", "process_madvise", "kcmp", "msgget", "semget",
    "shmget", "mq_open",
    // rights and views of the system
    "setuid", "setgid", "setreuid", "setregid", "setresuid", "setresgid", "setgroups", "setfsuid", "setfsgid",
    "capset", "mount", "umount2", "pivot_root", "chroot", "unshare", "setns", "move_mount", "open_tree",
    "fsopen", "fsmount", "mount_setattr", "personality", "sethostname", "setdomainname",
    // what belongs to files of other folders
    "chmod", "fchmodat", "fchmodat2", "chown", "lchown", "fchownat", "utime", "utimes", "utimensat",
    "futimesat", "setxattr", "lsetxattr", "fsetxattr", "removexattr", "lremovexattr", "fremovexattr", "mknod",
    "mknodat", "open_by_handle_at", "name_to_handle_at", "quotactl", "fanotify_init",
    // large parts of the kernel
    "bpf", "perf_event_open", "userfaultfd", "io_uring_setup", "io_uring_enter", "io_uring_register",
    "keyctl", "add_key", "request_key", "init_module", "finit_module", "delete_module", "kexec_load",
    "kexec_file_load", "reboot", "swapon", "swapoff", "acct", "settimeofday", "clock_settime", "adjtimex",
    "clock_adjtime", "iopl", "ioperm", "syslog", "vhangup"};

struct CFilterDeleter {
    void operator()(void* filter) const { seccomp_release(filter); }
};
using CFilter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, CFilterDeleter>;

constexpr std::uint32_t Refuse(int errorNumber) {
    return SCMP_ACT_ERRNO(static_cast<std::uint32_t>(errorNumber));
}

scmp_arg_cmp Argument(unsigned place, scmp_compare compare, scmp_datum_t a, scmp_datum_t b = 0) {
    return {place, compare, a, b};
}

bool DenyIf(scmp_filter_ctx filter, int call, const scmp_arg_cmp& condition) {
    return seccomp_rule_add_array(filter, Refuse(EPERM), call, 1, &condition) == 0;
}

bool AddRules(scmp_filter_ctx filter) {
    const bool denied = std::all_of(kDenied.begin(), kDenied.end(), [&](const char* name) {
        const int call = seccomp_syscall_resolve_name(name);
        return call == __NR_SCMP_ERROR ||
               seccomp_rule_add_array(filter, Refuse(EPERM), call, 0, nullptr) == 0;
    });
    // A clone is either a thread or a process. clone3 hides which; the C library then takes clone.
    const auto self = static_cast<scmp_datum_t>(::getpid());
    return denied && DenyIf(filter, SCMP_SYS(clone), Argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)) &&
           seccomp_rule_add_array(filter, Refuse(ENOSYS), SCMP_SYS(clone3), 0, nullptr) == 0 &&
           DenyIf(filter, SCMP_SYS(tgkill), Argument(0, SCMP_CMP_NE, self)) &&
           DenyIf(filter, SCMP_SYS(ioctl), Argument(1, SCMP_CMP_MASKED_EQ, 0xFFFFFFFF, TIOCSTI)) &&
           DenyIf(filter, SCMP_SYS(ioctl), Argument(1, SCMP_CMP_MASKED_EQ, 0xFFFFFFFF, TIOCLINUX));
}

}  // namespace

bool FilterSystemCalls() {
    const CFilter filter(seccomp_init(SCMP_ACT_ALLOW));
    return filter && AddRules(filter.get()) && seccomp_load(filter.get()) == 0;
}
