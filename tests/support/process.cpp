#include "tests/support/process.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

using namespace std::chrono_literals;

namespace {

void sendTo(const std::string& file, int descriptor) {
    const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (target >= 0) {
        dup2(target, descriptor);
    }
}

} // namespace

Process::Process(const std::vector<std::string>& argv, const Options& options) {
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ != 0) {
        return;
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(127);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const auto& [name, value] : options.environment) {
        if (value.empty()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    sendTo("/dev/null", STDOUT_FILENO);
    if (!options.outputFile.empty()) {
        sendTo(options.outputFile, STDOUT_FILENO);
    }
    if (!options.errorFile.empty()) {
        sendTo(options.errorFile, STDERR_FILENO);
    }
    if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) {
        _exit(127);
    }
    std::vector<char*> pointers;
    for (const std::string& argument : argv) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

Process::Process(Process&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)), exitCode_(other.exitCode_) {}

Process& Process::operator=(Process&& other) noexcept {
    if (this != &other) {
        terminate();
        pid_ = std::exchange(other.pid_, -1);
        exitCode_ = other.exitCode_;
    }
    return *this;
}

Process::~Process() {
    terminate();
}

void Process::poll() {
    int status = 0;
    if (pid_ > 0 && !exitCode_ && waitpid(pid_, &status, WNOHANG) == pid_) {
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
}

bool Process::running() {
    poll();
    return pid_ > 0 && !exitCode_;
}

void Process::signal(int number) const {
    if (pid_ > 0 && !exitCode_) {
        kill(pid_, number);
    }
}

std::optional<int> Process::waitForExit(std::chrono::milliseconds limit) {
    waitUntil([this] { return !running(); }, limit);
    return exitCode_;
}

void Process::terminate() {
    if (!running()) {
        return;
    }
    signal(SIGTERM);
    if (!waitForExit(1s)) {
        signal(SIGKILL);
        waitForExit(10s);
    }
}

int run(const std::vector<std::string>& argv, const Process::Options& options,
        std::chrono::milliseconds limit) {
    Process process(argv, options);
    return process.waitForExit(limit).value_or(-1);
}

} // namespace support
