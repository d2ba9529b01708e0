// Files that change or fail while they are read, on a real disk and on a simulated one.

#include "engine/reading/file_reader.h"

#include "tests/engine/engine_under_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

class OnDisk : public testing::Test {
protected:
    static std::string readText(const FileReader& file, std::uint64_t offset, std::size_t count) {
        std::vector<std::uint8_t> bytes(count);
        const auto got = file.readAt(offset, bytes);
        return got ? std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(*got))
                   : "failed";
    }

    support::TemporaryFolder folder;
    std::string path = folder.file("file");
};

TEST_F(OnDisk, ReadsFromAnyOffsetInAnyOrder) {
    support::writeFile(path, "0123456789");
    const auto file = FileReader::open(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(readText(*file, 8, 5), "89");
    EXPECT_EQ(readText(*file, 10, 5), "");
    EXPECT_EQ(readText(*file, 1000, 5), "");
    EXPECT_EQ(readText(*file, 2, 3), "234") << "after the end was met";
    EXPECT_EQ(readText(*file, 0, 0), "");
}

TEST_F(OnDisk, ReadsBeyondFourGigabytes) {
    constexpr std::uint64_t far = 5'000'000'000;
    support::writeFile(path, "begin");
    std::error_code error;
    std::filesystem::resize_file(path, far + 3, error);
    ASSERT_FALSE(error) << error.message();
    const auto file = FileReader::open(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), far + 3);
    EXPECT_EQ(readText(*file, far, 10), std::string(3, '\0'));
    EXPECT_EQ(readText(*file, 0, 5), "begin");
}

TEST_F(OnDisk, ANameIsAnyBytes) {
    path = folder.file("n\xFF\xE8zev \xC5\xBE.mp3");
    support::writeFile(path, "x");
    ASSERT_TRUE(FileReader::open(path));
}

TEST_F(OnDisk, WhatIsThereNowIsRead) {
    support::writeFile(path, std::string(100000, 'a'));
    const auto file = FileReader::open(path);
    EXPECT_EQ(readText(*file, 0, 3), "aaa");
    std::filesystem::resize_file(path, 2);
    EXPECT_EQ(readText(*file, 0, 3), "aa");
    EXPECT_EQ(readText(*file, 50000, 3), "");
    // A file that replaces it is not read.
    support::writeFile(folder.file("other"), "bbb");
    std::filesystem::rename(folder.file("other"), path);
    EXPECT_EQ(readText(*file, 0, 3), "aa");
    std::filesystem::remove(path);
    EXPECT_EQ(readText(*file, 0, 3), "aa");
}

TEST_F(OnDisk, SeveralThreadsReadAtOnce) {
    std::string content;
    for (std::uint32_t i = 0; i < 50000; ++i) {
        content += support::littleEndian(i);
    }
    support::writeFile(path, content);
    const auto file = FileReader::open(path);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::uint32_t i = 0; i < 3000; ++i) {
                const std::uint32_t number = (i * 7919 + thread * 104729) % 50000;
                const std::string read = readText(*file, std::uint64_t{number} * 4, 4);
                wrong += read != support::littleEndian(number) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

/// A disk that fails from an offset on, takes its time, or stops answering.
struct Disk {
    std::atomic<std::uint64_t> failsFrom{UINT64_MAX};
    std::chrono::milliseconds readTime{0}; ///< of each read
    std::atomic<int> reads{0};

    void hang() {
        const std::lock_guard lock(mutex);
        hangs = true;
    }
    void goOn() {
        const std::lock_guard lock(mutex);
        hangs = false;
        changed.notify_all();
    }
    /// Whether a reader is waiting for the disk.
    bool isWaitedFor() {
        const std::lock_guard lock(mutex);
        return waiting != 0;
    }
    /// Whether a file of the disk is open. Its last use happens before False is returned.
    bool hasOpenFiles() {
        const std::lock_guard lock(mutex);
        return openFiles != 0;
    }

    std::mutex mutex;
    std::condition_variable changed;
    bool hangs = false;
    int waiting = 0;
    int openFiles = 0;
};

class FileOfDisk final : public FileReader {
public:
    FileOfDisk(Disk& disk, std::string content) : disk_(disk), content_(std::move(content)) {
        const std::lock_guard lock(disk_.mutex);
        ++disk_.openFiles;
    }
    ~FileOfDisk() override {
        const std::lock_guard lock(disk_.mutex);
        --disk_.openFiles;
    }
    [[nodiscard]] std::uint64_t size() const override { return content_.size(); }
    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        {
            std::unique_lock lock(disk_.mutex);
            ++disk_.waiting;
            disk_.changed.wait(lock, [this] { return !disk_.hangs; });
            --disk_.waiting;
        }
        ++disk_.reads;
        std::this_thread::sleep_for(disk_.readTime);
        const std::uint64_t begin = std::min<std::uint64_t>(offset, content_.size());
        const std::size_t count = std::min<std::size_t>(target.size(), content_.size() - begin);
        if (begin + count > disk_.failsFrom) {
            return std::nullopt;
        }
        std::copy_n(content_.begin() + static_cast<std::ptrdiff_t>(begin), count, target.begin());
        return count;
    }

private:
    Disk& disk_;
    const std::string content_;
};

class FailingDisk : public testing::Test {
protected:
    void SetUp() override { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    /// Half a minute of silence.
    const std::string content =
        support::repeated(support::frameBytes({.bitRateIndex = 14, .size = 1044}), 1200);
    Disk disk;
    EngineUnderTest engine{
        [this](const std::string&) { return std::make_shared<const FileOfDisk>(disk, content); }};

    /// Runs until MediaError is raised, and checks that it is raised once.
    void expectOneError() {
        const auto self = std::this_thread::get_id();
        std::thread::id thread;
        engine.errors = 0;
        engine.engine->MediaError = [&] {
            ++engine.errors;
            thread = std::this_thread::get_id();
        };
        EXPECT_TRUE(engine.queue.runUntil([&] { return engine.errors > 0; }));
        engine.queue.runFor(150ms);
        EXPECT_EQ(engine.errors, 1);
        EXPECT_EQ(thread, self);
        EXPECT_EQ(engine.engine->playState(), PlayState::stopped);
        EXPECT_EQ(engine.stops(), 0);
        EXPECT_EQ(engine.controls().currentPosition(), 0);
        engine.engine->MediaError = [this] { ++engine.errors; };
    }
};

TEST_F(FailingDisk, AnErrorWhilePlayingIsOneMediaError) {
    engine.open("file");
    engine.controls().play();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; }));
    disk.failsFrom = 0;
    expectOneError();
    EXPECT_EQ(engine.engine->URL(), "file") << "the file stays";
    EXPECT_NEAR(engine.media().duration(), 1200 * 1152 / 44100.0, 1e-9);
    // Playing again raises the error again, until the disk has recovered.
    engine.controls().setCurrentPosition(20);
    engine.controls().play();
    expectOneError();
    disk.failsFrom = UINT64_MAX;
    engine.errors = 0;
    engine.controls().setCurrentPosition(20);
    engine.controls().play();
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 20.1; }));
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(FailingDisk, WhatCanBeReadIsHeardFirst) {
    disk.failsFrom = content.size() - 1000;
    engine.open("file");
    EXPECT_EQ(engine.media().getItemInfo("Filetype"), "mp3");
    EXPECT_EQ(engine.media().getItemInfo("Bitrate"), "320000");
    EXPECT_GT(engine.media().duration(), 1.0);
    engine.controls().setCurrentPosition(engine.media().duration() - 0.5);
    const auto begin = std::chrono::steady_clock::now();
    engine.controls().play();
    expectOneError();
    EXPECT_GT(std::chrono::steady_clock::now() - begin, 350ms);
}

TEST_F(FailingDisk, AnErrorAtTheBeginningIsOneMediaError) {
    disk.failsFrom = 0;
    engine.open("file");
    EXPECT_EQ(engine.media().getItemInfo("Filetype"), "");
    EXPECT_EQ(engine.media().getItemInfo("Bitrate"), "");
    EXPECT_EQ(engine.media().duration(), 0);
    engine.controls().play();
    expectOneError();
}

TEST_F(FailingDisk, AnErrorOfAFileThatWentIsNone) {
    engine.open("file");
    engine.controls().play();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; }));
    disk.failsFrom = 0;
    ASSERT_TRUE(support::waitUntil([&] { return !engine.queue.empty(); }));
    engine.engine->setURL("");
    engine.queue.runFor(100ms);
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(FailingDisk, ADiskThatHangsHoldsNobodyUp) {
    engine.open("file");
    engine.controls().play();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; }));
    disk.hang();
    ASSERT_TRUE(support::waitUntil([&] { return disk.isWaitedFor(); }));
    const auto begin = std::chrono::steady_clock::now();
    engine.controls().pause();
    engine.controls().setCurrentPosition(20);
    engine.controls().play();
    engine.controls().stop();
    engine.engine->setURL("");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 100ms);
    engine.engine.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 900ms);
    // The abandoned thread ends when the disk answers, and closes the file.
    EXPECT_TRUE(disk.hasOpenFiles());
    disk.goOn();
    EXPECT_TRUE(support::waitUntil([&] { return !disk.hasOpenFiles(); }));
    EXPECT_EQ(engine.errors, 0);
}

/// Five minutes on a disk that takes longer for them than a command may wait.
class SlowDisk : public testing::Test {
protected:
    void SetUp() override {
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        disk.readTime = 10ms;
        engine.engine->setURL("long");
        engine.controls().setCurrentPosition(290);
        const int before = disk.reads;
        engine.controls().play();
        ASSERT_TRUE(support::waitUntil([&] { return disk.reads > before + 3; }));
        ASSERT_FALSE(engine.media().isReadOnlyItem("Title")) << "the seek must be under way";
    }

    void TearDown() override {
        engine.engine.reset();
        // A thread that a busy machine has left behind ends.
        EXPECT_TRUE(support::waitUntil([&] { return !disk.hasOpenFiles(); }));
        EXPECT_TRUE(support::waitUntil([&] { return !quickDisk.hasOpenFiles(); }));
    }

    const std::string frame = support::frameBytes({.bitRateIndex = 14, .size = 1044});
    Disk disk;
    Disk quickDisk;
    EngineUnderTest engine{[this](const std::string& name) {
        const bool isLong = name == "long";
        return std::make_shared<const FileOfDisk>(isLong ? disk : quickDisk,
                                                  support::repeated(frame, isLong ? 11500 : 100));
    }};
};

TEST_F(SlowDisk, ASeekBeyondWhatIsMeasuredHoldsNoCommandUp) {
    const int before = disk.reads;
    engine.engine->setURL("short");
    ASSERT_TRUE(support::waitUntil([&] { return engine.media().isReadOnlyItem("Title"); }));
    EXPECT_EQ(engine.media().getItemInfo("Bitrate"), "320000");
    EXPECT_LE(disk.reads - before, 5) << "the seek goes on"; // its way has hundreds
}

TEST_F(SlowDisk, ASeekBeyondWhatIsMeasuredArrivesAfterAPause) {
    engine.controls().pause();
    EXPECT_EQ(engine.controls().currentPosition(), 290);
    engine.controls().play();
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 290.1; }));
    EXPECT_EQ(engine.errors, 0);
}

} // namespace

} // namespace zvonivec
