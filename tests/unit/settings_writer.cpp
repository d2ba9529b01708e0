// settings_writer FILE KEY FIRST COUNT: sets KEY in [General] to FIRST, FIRST + 1, ... COUNT
// values.
//
// Replaces some of the system's calls: they print their names on standard output, and are slow
// where two writers could meet. With NO_LOCKS in the environment, locking fails as on a file system
// without locks.
#include "platform/modDeklarace.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

int call(const char* name, int file, long result) {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error);
    std::printf("%s %s\n", name, path.filename().c_str());
    return static_cast<int>(result);
}

} // namespace

extern "C" {

// Under another name, because there is a struct flock too.
int lockSlowly(int file, int operation) noexcept __asm__("flock");
int lockSlowly(int file, int operation) noexcept {
    if (std::getenv("NO_LOCKS") != nullptr) {
        errno = ENOLCK;
        return -1;
    }
    // Another process may rename the file now, after it has been opened.
    static std::mt19937 random(static_cast<unsigned>(getpid()));
    std::this_thread::sleep_for(
        std::chrono::microseconds(std::uniform_int_distribution<int>(0, 1000)(random)));
    return call("flock", file, syscall(SYS_flock, file, operation));
}

int fchmod(int file, mode_t mode) noexcept {
    return call("fchmod", file, syscall(SYS_fchmod, file, mode));
}

int ftruncate(int file, off_t size) noexcept {
    return call("ftruncate", file, syscall(SYS_ftruncate, file, size));
}

int fsync(int file) {
    return call("fsync", file, syscall(SYS_fsync, file));
}

int rename(const char* from, const char* to) noexcept {
    std::puts("rename");
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

} // extern "C"

int main(int argc, char** argv) {
    if (argc != 5) {
        return 2;
    }
    const int first = std::stoi(argv[3]);
    for (int i = first; i < first + std::stoi(argv[4]); ++i) {
        zvonivec::modDeklarace::WritePrivateProfileStringA("General", argv[2], std::to_string(i),
                                                           argv[1]);
    }
    return 0;
}
