// Reads a file that may be replaced, truncated or deleted at any time. The only place that opens
// files. Files are never mapped into memory, where a truncated file would raise a signal.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zvonivec {

/// An open file. Safe to use from several threads at once.
class FileReader {
public:
    FileReader() = default;
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;
    virtual ~FileReader() = default;

    /// Opens a file for reading. Null when it doesn't exist, may not be read, or is no regular file
    /// (a folder, a pipe, a device). Never waits for the writer of a pipe.
    static std::shared_ptr<const FileReader> open(const std::string& path);

    /// Size in bytes at the time of opening.
    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Reads from an offset until the span is full. Returns the number of bytes, which is smaller
    /// only at the end of the file; nothing on an error of the disk.
    [[nodiscard]] virtual std::optional<std::size_t>
    readAt(std::uint64_t offset, std::span<std::uint8_t> target) const = 0;
};

/// Reads a file by large blocks and hands out small pieces of the current block, for callers that
/// move through the file in ascending order. For use by one thread.
class ReadBuffer {
public:
    explicit ReadBuffer(std::shared_ptr<const FileReader> file,
                        std::size_t blockSize = std::size_t{128} * 1024);

    /// Reads smaller blocks from a slow disk, so that no read takes long: the first block is
    /// small, and each is larger or smaller than the one before by the time that one took.
    void adaptToTheDisk() {
        adapts_ = true;
        nextBlock_ = std::min(FIRST_BLOCK, blockSize_);
    }

    /// Returns the wanted number of bytes from an offset, fewer at the end of the file. They stay
    /// valid until a call leaves the block, which is as long as the larger of blockSize (unless it
    /// adapts) and the number wanted when it was read.
    [[nodiscard]] std::span<const std::uint8_t> bytes(std::uint64_t offset, std::size_t wanted);

    /// Whether the disk failed in the last call. The next call reads again.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    static constexpr std::size_t FIRST_BLOCK = std::size_t{16} * 1024;
    void adapt(std::chrono::steady_clock::duration took);

    std::shared_ptr<const FileReader> file_;
    std::size_t blockSize_;
    std::size_t nextBlock_; ///< bytes of the next block
    bool adapts_ = false;
    std::vector<std::uint8_t> block_;
    std::uint64_t blockStart_ = 0;
    bool blockIsLast_ = false; ///< the block ends with the file
    bool failed_ = false;
};

} // namespace zvonivec
