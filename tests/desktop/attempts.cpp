// What code of an attacker would try, as a library that is loaded into a process before its own
// program runs (LD_PRELOAD). At SIGUSR2 the process's first thread tries everything and writes a
// line for each attempt to standard error: "attempt NAME: done" or "attempt NAME: refused, ERROR".
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/bpf.h>
#include <linux/perf_event.h>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Returns 0, or the error of the last call.
int errorOf(bool done) {
    return done ? 0 : errno;
}

std::string inHome(const char* name) {
    const char* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/" + name;
}

int openAndClose(const std::string& path, int flags) {
    const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
    const int error = errorOf(file >= 0);
    close(file);
    return error;
}

int socketOf(int family, int type) {
    const int made = socket(family, type, 0);
    const int error = errorOf(made >= 0);
    close(made);
    return error;
}

int connectTo(const sockaddr_un& address, socklen_t length) {
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    const int error =
        errorOf(connect(made, reinterpret_cast<const sockaddr*>(&address), length) == 0);
    close(made);
    return error;
}

/// Runs a function in a child process, and returns what it returns there, an error or 0.
template<typename Function>
int inChild(Function function) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(function());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return ECHILD;
    }
    return WEXITSTATUS(status);
}

/// Executes an open file, which ends with 0; returns only with an error.
int execute(int file) {
    std::array<char*, 2> arguments{const_cast<char*>("true"), nullptr};
    std::array<char*, 1> environment{nullptr};
    syscall(SYS_execveat, file, "", arguments.data(), environment.data(), AT_EMPTY_PATH);
    return errno;
}

int executePath(const char* path, const char* argument, const char* value) {
    return inChild([=] {
        execl(path, path, argument, value, nullptr);
        return errno;
    });
}

/// Copies the program "true" to an open file.
bool copyProgram(int target) {
    const int source = open("/bin/true", O_RDONLY | O_CLOEXEC);
    std::array<char, 4096> piece{};
    ssize_t size = 0;
    while ((size = read(source, piece.data(), piece.size())) > 0 &&
           write(target, piece.data(), static_cast<std::size_t>(size)) == size) {
    }
    close(source);
    return size == 0;
}

int appendToShellStart() {
    return openAndClose(inHome(".bashrc"), O_WRONLY | O_APPEND | O_CREAT);
}
int makeKey() {
    return openAndClose(inHome(".ssh/authorized_keys"), O_WRONLY | O_CREAT);
}
int makeAutostart() {
    return openAndClose(inHome(".config/autostart/x.desktop"), O_WRONLY | O_CREAT);
}
int emptyDocument() {
    return openAndClose(inHome("document"), O_WRONLY | O_TRUNC);
}
int makeInTmp() {
    const std::string path = "/tmp/attempt-" + std::to_string(getpid());
    const int error = openAndClose(path, O_WRONLY | O_CREAT);
    unlink(path.c_str());
    return error;
}
int makeInVarTmp() {
    const std::string path = "/var/tmp/attempt-" + std::to_string(getpid());
    const int error = openAndClose(path, O_WRONLY | O_CREAT);
    unlink(path.c_str());
    return error;
}
int makeFolder() {
    return errorOf(mkdir(inHome("folder").c_str(), 0700) == 0);
}
int makeLink() {
    return errorOf(symlink("/etc/passwd", inHome("link").c_str()) == 0);
}
int makePipe() {
    return errorOf(mkfifo(inHome("pipe").c_str(), 0600) == 0);
}
int renameDocument() {
    return errorOf(rename(inHome("document").c_str(), inHome("renamed").c_str()) == 0 &&
                   rename(inHome("renamed").c_str(), inHome("document").c_str()) == 0);
}
int linkDocument() {
    return errorOf(link(inHome("document").c_str(), inHome("hard").c_str()) == 0);
}
int removeDocument() {
    return errorOf(unlink(inHome("document").c_str()) == 0);
}

int runShell() {
    return executePath("/bin/sh", "-c", "true");
}
int runInterpreterOfLibraries() {
    return executePath("/lib64/ld-linux-x86-64.so.2", "/bin/true", nullptr);
}
int runFromMemory() {
    return inChild([] {
        const int file = memfd_create("attempt", 0);
        return copyProgram(file) ? execute(file) : errno;
    });
}

int traceParent() {
    return errorOf(ptrace(PTRACE_SEIZE, getppid(), nullptr, nullptr) == 0 &&
                   ptrace(PTRACE_INTERRUPT, getppid(), nullptr, nullptr) == 0 &&
                   waitpid(getppid(), nullptr, __WALL) > 0 &&
                   ptrace(PTRACE_DETACH, getppid(), nullptr, nullptr) == 0);
}
int readMemoryOfParent() {
    return openAndClose("/proc/" + std::to_string(getppid()) + "/mem", O_RDONLY);
}
int copyMemoryOfParent() {
    char byte = 0;
    iovec here{&byte, 1};
    iovec there{&byte, 1}; // an address that need not be there: EFAULT means that it may read
    const bool done = process_vm_readv(getppid(), &here, 1, &there, 1, 0) == 1;
    return done || errno == EFAULT ? 0 : errno;
}
int signalParent() {
    return errorOf(kill(getppid(), SIGCONT) == 0);
}

int socketOfInternet() {
    return socketOf(AF_INET, SOCK_STREAM);
}
int socketOfDatagrams() {
    return socketOf(AF_INET, SOCK_DGRAM);
}
int socketOfInternet6() {
    return socketOf(AF_INET6, SOCK_STREAM);
}
int socketOfKernel() {
    return socketOf(AF_NETLINK, SOCK_RAW);
}

int makeNamespace() {
    return inChild([] { return errorOf(unshare(CLONE_NEWUSER) == 0); });
}
int cloneNamespace() {
    const long child =
        syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, nullptr, nullptr, nullptr, nullptr);
    if (child == 0) {
        _exit(0);
    }
    const int error = errorOf(child > 0);
    waitpid(static_cast<pid_t>(child), nullptr, 0);
    return error;
}
int mountFolder() {
    return inChild([] {
        return errorOf(unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
                       mount("none", "/mnt", "tmpfs", 0, nullptr) == 0);
    });
}
int loadIntoKernel() {
    bpf_attr attributes{};
    attributes.map_type = BPF_MAP_TYPE_ARRAY;
    attributes.key_size = attributes.value_size = 4;
    attributes.max_entries = 1;
    const long map = syscall(SYS_bpf, BPF_MAP_CREATE, &attributes, sizeof attributes);
    const int error = errorOf(map >= 0);
    close(static_cast<int>(map));
    return error;
}
int countEvents() {
    perf_event_attr attributes{};
    attributes.size = sizeof attributes;
    attributes.type = PERF_TYPE_SOFTWARE;
    attributes.config = PERF_COUNT_SW_TASK_CLOCK;
    attributes.exclude_kernel = 1;
    const long counter = syscall(SYS_perf_event_open, &attributes, 0, -1, -1, 0);
    const int error = errorOf(counter >= 0);
    close(static_cast<int>(counter));
    return error;
}
int makeRing() {
    std::array<char, 256> parameters{};
    const long ring = syscall(SYS_io_uring_setup, 1, parameters.data());
    const int error = errorOf(ring >= 0);
    close(static_cast<int>(ring));
    return error;
}
int addKey() {
    return errorOf(syscall(SYS_add_key, "user", "attempt", "x", 1, -2) >= 0);
}
int handleFaults() {
    constexpr int ownFaultsAlone = 1;
    const long made = syscall(SYS_userfaultfd, ownFaultsAlone);
    const int error = errorOf(made >= 0);
    close(static_cast<int>(made));
    return error;
}
int typeIntoTerminalBy(std::uint64_t request) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    const char letter = 'x';
    // Another error means that the call reached the terminal.
    const bool refused = syscall(SYS_ioctl, terminal, request, &letter) != 0 && errno == EPERM;
    close(terminal);
    return refused ? EPERM : 0;
}
int typeIntoTerminal() {
    return typeIntoTerminalBy(TIOCSTI);
}
/// The kernel looks at 32 bits of the request alone.
int typeIntoTerminalByALongRequest() {
    return typeIntoTerminalBy(TIOCSTI | std::uint64_t{1} << 32U);
}

// What can't be taken from the program, and is written down as that.
int readDocument() {
    return openAndClose(inHome("document"), O_RDONLY);
}
int openDocumentForAll() {
    return errorOf(chmod(inHome("document").c_str(), 0644) == 0);
}
int connectToAgent() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = inHome("agent");
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return connectTo(address, sizeof address);
}
int replaceTheProgram() {
    const std::string copy = std::string(inHome("../program/zvonivec.new"));
    const int file = open(copy.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0700);
    const int error = errorOf(file >= 0);
    close(file);
    unlink(copy.c_str());
    return error;
}

struct Attempt {
    const char* name;
    int (*make)();
};

// The document is removed at the end, after everything that needs it.
constexpr std::array ATTEMPTS{
    Attempt{"append to ~/.bashrc", appendToShellStart},
    Attempt{"make ~/.ssh/authorized_keys", makeKey},
    Attempt{"make an autostart entry", makeAutostart},
    Attempt{"make a file in /tmp", makeInTmp},
    Attempt{"make a file in /var/tmp", makeInVarTmp},
    Attempt{"make a folder", makeFolder},
    Attempt{"make a symbolic link", makeLink},
    Attempt{"make a pipe", makePipe},
    Attempt{"link a document", linkDocument},
    Attempt{"rename a document", renameDocument},
    Attempt{"empty a document", emptyDocument},
    Attempt{"run a shell", runShell},
    Attempt{"run the loader of programs", runInterpreterOfLibraries},
    Attempt{"run a program from memory", runFromMemory},
    Attempt{"trace another process", traceParent},
    Attempt{"open another process's memory", readMemoryOfParent},
    Attempt{"copy another process's memory", copyMemoryOfParent},
    Attempt{"send another process a signal", signalParent},
    Attempt{"open an internet socket", socketOfInternet},
    Attempt{"open a datagram socket", socketOfDatagrams},
    Attempt{"open an IPv6 socket", socketOfInternet6},
    Attempt{"open a socket to the kernel", socketOfKernel},
    Attempt{"unshare a namespace", makeNamespace},
    Attempt{"clone into a namespace", cloneNamespace},
    Attempt{"mount a folder", mountFolder},
    Attempt{"load something into the kernel", loadIntoKernel},
    Attempt{"count events of the processor", countEvents},
    Attempt{"make an io_uring", makeRing},
    Attempt{"add a key to the kernel's", addKey},
    Attempt{"handle page faults", handleFaults},
    Attempt{"type into a terminal", typeIntoTerminal},
    Attempt{"type into a terminal by a long request", typeIntoTerminalByALongRequest},
    Attempt{"read a document", readDocument},
    Attempt{"change a document's permissions", openDocumentForAll},
    Attempt{"connect to a local socket", connectToAgent},
    Attempt{"make a file beside the player", replaceTheProgram},
    Attempt{"remove a document", removeDocument},
};

void tryAll(int) {
    for (const Attempt& attempt : ATTEMPTS) {
        const int error = attempt.make();
        if (error == 0) {
            dprintf(STDERR_FILENO, "attempt %s: done\n", attempt.name);
        } else {
            dprintf(STDERR_FILENO, "attempt %s: refused, %s\n", attempt.name,
                    strerrorname_np(error));
        }
    }
    dprintf(STDERR_FILENO, "attempts: all made\n");
}

[[gnu::constructor]] void prepare() {
    struct sigaction action {};
    action.sa_handler = tryAll;
    sigaction(SIGUSR2, &action, nullptr);
    dprintf(STDERR_FILENO, "attempts: ready\n");
}

} // namespace
