#include "engine/reading/file_reader.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>
#include <utility>

namespace zvonivec {

namespace {

class DiskFile final : public FileReader {
public:
    explicit DiskFile(const std::filesystem::path& path) {
        // No buffer: callers read large pieces, and a buffer could hold outdated bytes.
        stream_.rdbuf()->pubsetbuf(nullptr, 0);
        stream_.open(path, std::ios::binary | std::ios::ate);
        const std::streamoff end = stream_ ? std::streamoff(stream_.tellg()) : -1;
        good_ = end >= 0;
        size_ = good_ ? static_cast<std::uint64_t>(end) : 0;
    }

    [[nodiscard]] bool good() const { return good_; }
    [[nodiscard]] std::uint64_t size() const override { return size_; }

    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        const std::lock_guard lock(mutex_);
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(offset));
        stream_.read(reinterpret_cast<char*>(target.data()),
                     static_cast<std::streamsize>(target.size()));
        if (stream_.bad() || (stream_.fail() && !stream_.eof())) {
            return std::nullopt;
        }
        return static_cast<std::size_t>(stream_.gcount());
    }

private:
    bool good_ = false;
    std::uint64_t size_ = 0;
    mutable std::mutex mutex_;
    mutable std::ifstream stream_; ///< guarded by mutex_
};

} // namespace

std::shared_ptr<const FileReader> FileReader::open(const std::string& path) {
    // On POSIX systems the bytes stay as they are; on Windows UTF-8 becomes UTF-16.
    const std::filesystem::path file(std::u8string(path.begin(), path.end()));
    // Opening a pipe would wait for its writer, so the kind of file is checked first.
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return nullptr;
    }
    auto opened = std::make_shared<const DiskFile>(file);
    return opened->good() ? std::move(opened) : nullptr;
}

ReadBuffer::ReadBuffer(std::shared_ptr<const FileReader> file, std::size_t blockSize)
    : file_(std::move(file)), blockSize_(blockSize), nextBlock_(blockSize) {}

void ReadBuffer::adapt(std::chrono::steady_clock::duration took) {
    using namespace std::chrono_literals;
    constexpr std::size_t smallest = std::size_t{4} * 1024;
    if (took > 100ms) {
        nextBlock_ = std::max(smallest, nextBlock_ / 4);
    } else if (took < 20ms) {
        nextBlock_ = std::min(blockSize_, nextBlock_ * 2);
    }
}

std::span<const std::uint8_t> ReadBuffer::bytes(std::uint64_t offset, std::size_t wanted) {
    const bool inside =
        offset >= blockStart_ && (offset + wanted <= blockStart_ + block_.size() || blockIsLast_);
    if (!inside) {
        block_.resize(std::max(nextBlock_, wanted));
        const auto begin = std::chrono::steady_clock::now();
        const std::optional<std::size_t> count = file_->readAt(offset, block_);
        if (adapts_) {
            adapt(std::chrono::steady_clock::now() - begin);
        }
        failed_ = !count;
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
