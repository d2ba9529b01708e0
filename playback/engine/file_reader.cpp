#include "playback/engine/file_reader.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zvonivec {

std::shared_ptr<const FileReader> FileReader::open(const std::string& path) {
    // Without O_NONBLOCK, opening a named pipe would wait for its writer.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0) {
        ::close(descriptor);
        return nullptr;
    }
    return std::shared_ptr<const FileReader>(
        new FileReader(descriptor, static_cast<std::uint64_t>(status.st_size)));
}

FileReader::~FileReader() {
    ::close(descriptor_);
}

std::optional<std::size_t> FileReader::readAt(std::uint64_t offset,
                                              std::span<std::uint8_t> target) const {
    std::size_t done = 0;
    while (done < target.size()) {
        const ssize_t count = ::pread(descriptor_, target.data() + done, target.size() - done,
                                      static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

ReadBuffer::ReadBuffer(std::shared_ptr<const FileReader> file, std::size_t blockSize)
    : file_(std::move(file)), blockSize_(blockSize) {}

std::span<const std::uint8_t> ReadBuffer::bytes(std::uint64_t offset, std::size_t wanted) {
    const bool inside =
        offset >= blockStart_ && (offset + wanted <= blockStart_ + block_.size() || blockIsLast_);
    if (!inside) {
        block_.resize(std::max(blockSize_, wanted));
        const std::optional<std::size_t> count = file_->readAt(offset, block_);
        failed_ = failed_ || !count;
        blockIsLast_ = count && *count < block_.size();
        block_.resize(count.value_or(0));
        blockStart_ = offset;
    }
    const std::span<const std::uint8_t> block(block_);
    const std::uint64_t skipped = std::min<std::uint64_t>(offset - blockStart_, block.size());
    const auto rest = block.subspan(static_cast<std::size_t>(skipped));
    return rest.first(std::min(wanted, rest.size()));
}

} // namespace zvonivec
