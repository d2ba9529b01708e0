#include "platform/whole_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zvonivec::whole_file {

namespace {

constexpr auto LONGEST_WAIT = std::chrono::seconds(1);
constexpr auto WAIT_STEP = std::chrono::milliseconds(5);

/// A file descriptor that is closed with the object.
class File {
public:
    explicit File(int descriptor = -1) : descriptor_(descriptor) {}
    File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    File& operator=(File&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~File() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    explicit operator bool() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

private:
    int descriptor_;
};

std::optional<struct stat> ordinaryFile(const File& file) {
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return status;
}

/// Returns the file that a path leads to through symbolic links, whether the file exists or not.
std::optional<std::string> targetOf(const std::string& path) {
    constexpr int mostLinks = 40; // as many as the system itself follows
    std::filesystem::path target(path);
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code error;
        const std::filesystem::path link = std::filesystem::read_symlink(target, error);
        if (error) {
            return target.string();
        }
        target = target.parent_path() / link;
    }
    return std::nullopt;
}

/// Opens the file for the new content and locks it against other processes.
File openLocked(const std::string& path) {
    const auto end = std::chrono::steady_clock::now() + LONGEST_WAIT;
    do {
        constexpr mode_t permissions = 0666; // without the bits in the user's mask
        File file(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                       permissions));
        const auto opened = ordinaryFile(file);
        if (!opened) {
            return File();
        }
        struct stat named {};
        if (flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            // Another process may have renamed or removed the file before it was locked.
            if (stat(path.c_str(), &named) == 0 && named.st_dev == opened->st_dev &&
                named.st_ino == opened->st_ino) {
                return file;
            }
        } else if (errno != EWOULDBLOCK) {
            return File(); // a file system without locks: waiting won't help
        }
        std::this_thread::sleep_for(WAIT_STEP);
    } while (std::chrono::steady_clock::now() < end);
    return File();
}

bool writeAll(const File& file, std::string_view bytes) {
    if (ftruncate(file.get(), 0) != 0) {
        return false;
    }
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Gives a file the owner, group and permissions of the old file, as far as the process may.
void takeOver(const File& file, const std::string& old) {
    struct stat status {};
    if (stat(old.c_str(), &status) != 0) {
        return;
    }
    if (fchown(file.get(), status.st_uid, status.st_gid) != 0) {
        // The file belongs to another user. At least the group that shares it stays.
        constexpr auto same = static_cast<uid_t>(-1);
        [[maybe_unused]] const int group = fchown(file.get(), same, status.st_gid);
    }
    fchmod(file.get(), status.st_mode & 07777U);
}

/// Writes the folder of a file to the disk, and with it the file's new name.
void syncFolderOf(const std::string& path) {
    std::string folder = std::filesystem::path(path).parent_path().string();
    if (folder.empty()) {
        folder = ".";
    }
    const File file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file) {
        fsync(file.get());
    }
}

/// A file that has been read, and stays open for what follows the bytes that were read.
struct ReadFile {
    Content content;
    File file;
    off_t size = 0;
};

ReadFile readAndKeepOpen(const std::string& path) {
    ReadFile result;
    // Without O_NONBLOCK this would wait for the writer of a pipe.
    result.file = File(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!result.file) {
        result.content.found = errno == ENOENT ? Found::nothing : Found::unusable;
        return result;
    }
    result.content.found = Found::unusable;
    const auto status = ordinaryFile(result.file);
    if (!status) {
        return result;
    }
    result.size = status->st_size;
    std::string bytes;
    bytes.resize(std::min(MOST_READ, static_cast<std::size_t>(result.size)));
    std::size_t size = 0;
    while (size < bytes.size()) {
        const ssize_t got = ::read(result.file.get(), bytes.data() + size, bytes.size() - size);
        if (got < 0) {
            return result;
        }
        if (got == 0) {
            break;
        }
        size += static_cast<std::size_t>(got);
    }
    bytes.resize(size);
    result.content = {.found = Found::file,
                      .bytes = std::move(bytes),
                      .isCut = result.size > static_cast<off_t>(MOST_READ)};
    return result;
}

/// Copies what follows the bytes that were read to the end of another file.
bool copyRest(const ReadFile& from, const File& to) {
    constexpr auto first = static_cast<off_t>(MOST_READ);
    constexpr std::size_t blockSize = std::size_t{1} << 18U;
    const off_t distance = lseek(to.get(), 0, SEEK_END) - first;
    std::vector<char> block(blockSize);
    off_t place = first;
    while (place < from.size) {
        const off_t data = lseek(from.file.get(), place, SEEK_DATA);
        if (data < 0 && errno == ENXIO) {
            break; // a hole up to the end
        }
        place = std::max(place, data); // below 0 where the file system knows no holes
        const off_t hole = lseek(from.file.get(), place, SEEK_HOLE);
        const off_t end = hole < 0 ? from.size : std::min(hole, from.size);
        while (place < end) {
            const ssize_t got =
                pread(from.file.get(), block.data(),
                      std::min(blockSize, static_cast<std::size_t>(end - place)), place);
            if (got <= 0) {
                return false;
            }
            for (ssize_t done = 0; done < got;) {
                const ssize_t written =
                    pwrite(to.get(), block.data() + done, static_cast<std::size_t>(got - done),
                           place + done + distance);
                if (written <= 0) {
                    return false;
                }
                done += written;
            }
            place += got;
        }
    }
    return ftruncate(to.get(), from.size + distance) == 0;
}

} // namespace

Content read(const std::string& path) {
    return readAndKeepOpen(path).content;
}

bool update(const std::string& path, const Change& change) {
    const auto target = targetOf(path);
    if (!target) {
        return false;
    }
    const std::string newPath = *target + ".new";
    const File file = openLocked(newPath);
    if (!file) {
        return false;
    }
    // Read after locking: another process may just have written the file.
    const ReadFile old = readAndKeepOpen(*target);
    const Found found = old.content.found;
    const bool usable =
        found == Found::nothing || (found == Found::file && access(target->c_str(), W_OK) == 0);
    const auto bytes = usable ? change(old.content) : std::nullopt;
    bool done = false;
    if (bytes) {
        takeOver(file, *target); // before the content, which may be private
        done = writeAll(file, *bytes) && (!old.content.isCut || copyRest(old, file)) &&
               fsync(file.get()) == 0 && rename(newPath.c_str(), target->c_str()) == 0;
    }
    if (done) {
        syncFolderOf(*target);
    } else {
        unlink(newPath.c_str());
    }
    return done;
}

} // namespace zvonivec::whole_file
