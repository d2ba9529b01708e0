#include "platform/refused_calls_posix.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace zvonivec {

namespace {

/// Calls that a player never makes. A name that the library doesn't know is passed over.
constexpr std::array REFUSED{
    // other programs: one that is to be run would have to be confined by other rules
    "execve", "execveat",
    // other processes and their memory
    "ptrace", "process_vm_readv", "process_vm_writev", "process_madvise", "pidfd_getfd", "kcmp",
    // namespaces and mounts
    "unshare", "setns", "mount", "umount2", "pivot_root", "chroot", "open_tree", "move_mount",
    "fsopen", "fsconfig", "fsmount", "fspick", "mount_setattr",
    // the kernel itself: modules, programs within it, counters, its keys
    "init_module", "finit_module", "delete_module", "kexec_load", "kexec_file_load", "bpf",
    "perf_event_open", "add_key", "request_key", "keyctl", "userfaultfd",
    // calls that this filter wouldn't see
    "io_uring_setup", "io_uring_enter", "io_uring_register",
    // the whole system
    "reboot", "swapon", "swapoff", "acct", "quotactl", "syslog", "settimeofday", "clock_settime",
    "clock_adjtime", "adjtimex", "sethostname", "setdomainname", "iopl", "ioperm", "lookup_dcookie",
    "open_by_handle_at", "nfsservctl", "vhangup"};

/// Kinds of namespaces, as bits of clone's first argument.
constexpr std::array NAMESPACES{CLONE_NEWNS,   CLONE_NEWCGROUP, CLONE_NEWUTS, CLONE_NEWIPC,
                                CLONE_NEWUSER, CLONE_NEWPID,    CLONE_NEWNET};

/// Requests that put characters into a terminal's input, where a shell reads them.
constexpr std::array TERMINAL_INPUT{TIOCSTI, TIOCLINUX};

/// A condition for the bits of a call's argument that are in the mask.
constexpr scmp_arg_cmp has(unsigned argument, std::uint64_t mask, std::uint64_t bits) {
    return {.arg = argument, .op = SCMP_CMP_MASKED_EQ, .datum_a = mask, .datum_b = bits};
}
/// A condition for an argument of 32 bits. The kernel doesn't look at what is above them.
constexpr scmp_arg_cmp is(unsigned argument, unsigned value) {
    return has(argument, UINT32_MAX, value);
}

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

template<typename... Conditions>
bool refuse(const Filter& filter, int error, const char* name, Conditions... conditions) {
    const int number = seccomp_syscall_resolve_name(name);
    return number == __NR_SCMP_ERROR ||
           seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(error)), number,
                            sizeof...(conditions), conditions...) == 0;
}

bool isAllowed(int family, Sockets allowed) {
    return family == AF_UNIX ||
           (allowed == Sockets::network && (family == AF_INET || family == AF_INET6));
}

/// Refuses all families of sockets but the allowed ones, those of later kernels too.
bool refuseSockets(const Filter& filter, Sockets allowed) {
    for (int family = 0; family < AF_MAX; ++family) {
        if (!isAllowed(family, allowed) &&
            !refuse(filter, EAFNOSUPPORT, "socket", is(0, static_cast<unsigned>(family)))) {
            return false;
        }
    }
    return refuse(filter, EAFNOSUPPORT, "socket",
                  scmp_arg_cmp{.arg = 0, .op = SCMP_CMP_GE, .datum_a = AF_MAX, .datum_b = 0});
}

} // namespace

bool refuseCalls(Sockets allowed) {
    const Filter filter(seccomp_init(SCMP_ACT_ALLOW), seccomp_release);
    return filter != nullptr &&
           // Programs of other word lengths aren't ended either; their calls fail.
           seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)) == 0 &&
           std::all_of(REFUSED.begin(), REFUSED.end(),
                       [&](const char* name) { return refuse(filter, EPERM, name); }) &&
           std::all_of(NAMESPACES.begin(), NAMESPACES.end(),
                       [&](int kind) {
                           const auto bit = static_cast<unsigned>(kind);
                           return refuse(filter, EPERM, "clone", has(0, bit, bit));
                       }) &&
           // Its arguments can't be looked at; the C library then calls clone.
           refuse(filter, ENOSYS, "clone3") &&
           std::all_of(TERMINAL_INPUT.begin(), TERMINAL_INPUT.end(),
                       [&](int request) {
                           return refuse(filter, EPERM, "ioctl",
                                         is(1, static_cast<unsigned>(request)));
                       }) &&
           refuseSockets(filter, allowed) && seccomp_load(filter.get()) == 0;
}

} // namespace zvonivec
