// Reading of a file that may be replaced, truncated or deleted at any time. The only place that
// opens files; the file is never mapped into memory, so losing it can't raise a signal.
#pragma once

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

    /// Opens a file for reading; null when there is none, it may not be read, or it is no regular
    /// file (a folder, a pipe, a device). Never waits for a writer.
    static std::shared_ptr<const FileReader> open(const std::string& path);

    /// Bytes at the time of opening.
    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Reads up to a span's length from an offset. The count is short at the end of the file only;
    /// nothing when the file can't be read.
    [[nodiscard]] virtual std::optional<std::size_t>
    readAt(std::uint64_t offset, std::span<std::uint8_t> target) const = 0;
};

/// A window over a file that moves by whole blocks, for readers that look at small pieces in
/// ascending order. For one thread.
class ReadBuffer {
public:
    explicit ReadBuffer(std::shared_ptr<const FileReader> file,
                        std::size_t blockSize = std::size_t{128} * 1024);

    /// The bytes from an offset, wanted of them or as many as there are before the end of the file.
    /// Valid until the next call.
    [[nodiscard]] std::span<const std::uint8_t> bytes(std::uint64_t offset, std::size_t wanted);

    /// Whether the last read failed for another reason than the end of the file. The next call
    /// reads anew.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    std::shared_ptr<const FileReader> file_;
    std::size_t blockSize_;
    std::vector<std::uint8_t> block_;
    std::uint64_t blockStart_ = 0;
    bool blockIsLast_ = false; ///< the block reaches to the end of the file
    bool failed_ = false;
};

} // namespace zvonivec
