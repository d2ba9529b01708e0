// Files on a disk that is slow or that stalls.
#pragma once

#include "engine/reading/file_reader.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <thread>
#include <utility>

namespace zvonivec {

/// A disk that gives so many bytes a second. The system keeps what it has read, by pages, so only
/// the first reading of a page takes time.
class SlowDisk {
public:
    explicit SlowDisk(double bytesPerSecond) : bytesPerSecond_(bytesPerSecond) {}

    /// Gives nothing for a while.
    void stall(std::chrono::milliseconds time) {
        const std::lock_guard lock(mutex_);
        stalledUntil_ = Clock::now() + time;
    }

    void read(std::uint64_t begin, std::uint64_t end) {
        const std::lock_guard lock(mutex_); // one read at a time
        for (std::uint64_t page = begin / PAGE; page * PAGE < end; ++page) {
            if (kept_.insert(page).second) {
                due_ =
                    std::max({due_, stalledUntil_, Clock::now() - std::chrono::milliseconds(20)}) +
                    std::chrono::duration_cast<Clock::duration>(
                        std::chrono::duration<double>(PAGE / bytesPerSecond_));
            }
        }
        std::this_thread::sleep_until(due_);
    }

    [[nodiscard]] std::uint64_t kept() {
        const std::lock_guard lock(mutex_);
        return kept_.size() * PAGE;
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::uint64_t PAGE = 4096;
    const double bytesPerSecond_;
    std::mutex mutex_;
    std::set<std::uint64_t> kept_; ///< pages that have been read
    Clock::time_point due_;        ///< when the last page has come
    Clock::time_point stalledUntil_;
};

class SlowFile final : public FileReader {
public:
    SlowFile(std::shared_ptr<const FileReader> file, SlowDisk& disk)
        : file_(std::move(file)), disk_(disk) {}
    [[nodiscard]] std::uint64_t size() const override { return file_->size(); }
    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        disk_.read(offset, std::min<std::uint64_t>(offset + target.size(), size()));
        return file_->readAt(offset, target);
    }

private:
    const std::shared_ptr<const FileReader> file_;
    SlowDisk& disk_;
};

} // namespace zvonivec
