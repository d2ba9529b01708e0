// Child processes of tests: servers that a test needs, and programs that it controls.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace support {

/// Waits until a condition holds, checking it every few milliseconds. Returns false when the time
/// limit has passed.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(10));

/// A child process. The destructor ends it and waits for its end. It also ends when the test
/// process dies.
class Process {
public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    struct Options {
        Environment environment; ///< added to the test's own; an empty value removes the variable
        std::string outputFile;  ///< for standard output; empty: discarded
        std::string errorFile;   ///< for standard error; empty: the test's own
        std::string directory;   ///< working directory; empty: the test's own
    };

    Process() = default;
    /// Starts argv[0], looked up in PATH. When that fails, running() is false.
    explicit Process(const std::vector<std::string>& argv, const Options& options = {});
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    [[nodiscard]] pid_t pid() const { return pid_; }
    bool running();
    void signal(int number) const;
    /// Returns the exit code, or 128 + the number of the signal that ended the process, or nothing
    /// when it is still running.
    std::optional<int> waitForExit(std::chrono::milliseconds limit = std::chrono::seconds(10));
    /// Sends SIGTERM, and SIGKILL when the process doesn't end within a second.
    void terminate();

private:
    void poll();
    pid_t pid_ = -1;
    std::optional<int> exitCode_;
};

/// Runs a program to its end. Returns its exit code, or -1 when it could not be started or took too
/// long.
int run(const std::vector<std::string>& argv, const Process::Options& options = {},
        std::chrono::milliseconds limit = std::chrono::minutes(2));

/// A folder in the system's temporary folder. The destructor removes it with its content.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

} // namespace support
