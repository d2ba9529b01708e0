// slow_disk FOLDER PLACE MOOD: shows the files of a folder at another place as a disk would that is
// slow or broken. The file MOOD says how it is at the moment: empty for well, "stall" for one that
// serves nothing, "fail" for errors, "rate 10000" for that many bytes a second. Ends with a signal.
#define FUSE_USE_VERSION 31

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <fuse.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

std::string folder;   // NOLINT(*-avoid-non-const-global-variables): FUSE's functions are plain ones
std::string moodFile; // NOLINT(*-avoid-non-const-global-variables)

std::string mood() {
    std::string line;
    std::ifstream stream(moodFile);
    std::getline(stream, line);
    return line;
}

/// Takes the time that the disk needs for some bytes. Returns false when it fails.
bool work(std::size_t bytes) {
    std::string now = mood();
    while (now == "stall") {
        std::this_thread::sleep_for(10ms);
        now = mood();
    }
    if (now.starts_with("rate ")) {
        const double rate = std::strtod(now.c_str() + 5, nullptr);
        std::this_thread::sleep_for(
            std::chrono::duration<double>(static_cast<double>(bytes) / rate));
    }
    return now != "fail";
}

int attributes(const char* path, struct stat* result, fuse_file_info* /*info*/) {
    if (!work(0)) {
        return -EIO;
    }
    return lstat((folder + path).c_str(), result) == 0 ? 0 : -errno;
}

int openFile(const char* path, fuse_file_info* info) {
    if (!work(0)) {
        return -EIO;
    }
    const int file = open((folder + path).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return -errno;
    }
    info->fh = static_cast<std::uint64_t>(file);
    info->direct_io = 1; // each read comes here
    return 0;
}

int readFile(const char* /*path*/, char* to, std::size_t size, off_t offset, fuse_file_info* info) {
    const ssize_t count = pread(static_cast<int>(info->fh), to, size, offset);
    if (count < 0) {
        return -errno;
    }
    return work(static_cast<std::size_t>(count)) ? static_cast<int>(count) : -EIO;
}

int closeFile(const char* /*path*/, fuse_file_info* info) {
    return close(static_cast<int>(info->fh)) == 0 ? 0 : -errno;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: slow_disk FOLDER PLACE MOOD\n", stderr);
        return 2;
    }
    folder = argv[1];
    moodFile = argv[3];
    fuse_operations operations = {};
    operations.getattr = attributes;
    operations.open = openFile;
    operations.read = readFile;
    operations.release = closeFile;
    // In the foreground, with one thread: whatever waits holds up all that comes after it.
    char foreground[] = "-f";
    char oneThread[] = "-s";
    char* words[] = {argv[0], foreground, oneThread, argv[2], nullptr};
    return fuse_main(4, words, &operations, nullptr);
}
