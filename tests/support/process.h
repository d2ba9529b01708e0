// Child processes of tests: servers that a test needs and programs that it drives.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace support {

/// Waits until a condition holds, asking every few milliseconds; False when the time has run out.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(10));

/// A child process. It is killed, and waited for, at the latest when the object goes; it also ends
/// when the test process dies.
class Process {
public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    struct Options {
        Environment environment; ///< set on top of the test's own; an empty value removes the name
        std::string outputFile;  ///< gets standard output; empty: discarded
        std::string errorFile;   ///< gets standard error; empty: the test's own
        std::string directory;   ///< working directory; empty: the test's own
    };

    Process() = default;
    /// Starts argv[0], looked up in PATH. running() is False when it could not be started.
    explicit Process(const std::vector<std::string>& argv, const Options& options = {});
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    [[nodiscard]] pid_t pid() const { return pid_; }
    bool running();
    void signal(int number) const;
    /// The exit code, 128 + signal number when a signal ended it, nothing when still running.
    std::optional<int> waitForExit(std::chrono::milliseconds limit = std::chrono::seconds(10));
    /// SIGTERM, then SIGKILL when it doesn't end within a second.
    void terminate();

private:
    void poll();
    pid_t pid_ = -1;
    std::optional<int> exitCode_;
};

/// Runs a program to its end; its exit code, or -1 when it could not be started or took too long.
int run(const std::vector<std::string>& argv, const Process::Options& options = {},
        std::chrono::milliseconds limit = std::chrono::minutes(2));

/// A folder of its own under the system's temporary folder, removed with all it holds.
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
