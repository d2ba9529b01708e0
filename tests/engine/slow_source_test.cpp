// Files on disks that are slow or that stall, heard in a recording.

#include "tests/engine/sound_test.h"
#include "tests/support/disturbance.h"

#include <mutex>
#include <set>
#include <thread>

namespace zvonivec {

namespace {

using support::Samples;

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
                due_ = std::max({due_, stalledUntil_, Clock::now() - 20ms}) +
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

class SlowSource : public Sound {
protected:
    SlowSource() : Sound(support::PulseServer::Kind::noRewinding) {}

    std::string track(double seconds, const char* kilobits) {
        std::string path = folder.file("slow.mp3");
        EXPECT_TRUE(support::encodeNoise(path, seconds, {"-b", kilobits}, RATE, 2, 1));
        return path;
    }

    /// Plays a file from a disk of so many bytes a second, which stalls in the middle. Expects
    /// every sample, without silence in between.
    void expectNoGap(const std::string& path, double bytesPerSecond,
                     std::chrono::milliseconds stall) {
        const Samples expected = support::decodeWithMpg123(path);
        const auto attempt = [&] {
            const std::size_t silence = silenceIn(path, expected, bytesPerSecond, stall);
            return silence == 0 ? std::string()
                                : std::to_string(silence * 1000 / 2 / RATE) + " ms of silence";
        };
        EXPECT_EQ(support::attemptWhileDisturbed(4, attempt), "");
    }

    std::size_t silenceIn(const std::string& path, const Samples& expected, double bytesPerSecond,
                          std::chrono::milliseconds stall) {
        SlowDisk disk(bytesPerSecond);
        EngineUnderTest slow{[&](const std::string& name) {
            return std::make_shared<const SlowFile>(FileReader::open(name), disk);
        }};
        slow.engine->settings().setVolume(100);
        const support::Recording recording(server);
        slow.engine->setURL(path);
        slow.controls().play();
        if (stall > 0ms) {
            EXPECT_TRUE(slow.queue.runUntil([&] { return slow.controls().currentPosition() > 2; }));
            EXPECT_LT(disk.kept(), FileReader::open(path)->size() * 3 / 4) << "nothing to wait for";
            disk.stall(stall);
        }
        EXPECT_TRUE(slow.queue.runUntil([&] { return slow.stops() != 0; }, 40s));
        EXPECT_TRUE(recording.waitForSilence());
        EXPECT_EQ(slow.errors, 0);
        const auto heard = hear(recording.samples(), expected);
        if (!heard) {
            return 0;
        }
        EXPECT_EQ(heard->match.length, expected.size());
        return heard->match.silence;
    }
};

TEST_F(SlowSource, TwiceTheBitRateIsEnough) {
    expectNoGap(track(8, "128"), 2 * 128000 / 8.0, 0ms);
}

TEST_F(SlowSource, AHundredKilobytesASecondAreEnough) {
    expectNoGap(track(10, "320"), 100000, 0ms);
}

TEST_F(SlowSource, AStallOfTheDiskIsNotHeard) {
    // At twice the bit rate the player is as far ahead as it has played.
    expectNoGap(track(10, "320"), 2 * 320000 / 8.0, 1500ms);
}

} // namespace

} // namespace zvonivec
