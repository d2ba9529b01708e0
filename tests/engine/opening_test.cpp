// Opening files whose disk is slow, stalls or hangs: nobody waits for long, and what comes late is
// told.

#include "tests/engine/engine_under_test.h"
#include "tests/engine/slow_disk.h"
#include "tests/support/disturbance.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/no_threads.h"
#include "tests/support/process.h"

#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <thread>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Longest that a caller may wait for a disk, with a margin for a busy machine.
constexpr double LONGEST_WAIT = 80 + 60;

class FileInMemory final : public FileReader {
public:
    explicit FileInMemory(const std::string& content) : content_(content) {}
    [[nodiscard]] std::uint64_t size() const override { return content_.size(); }
    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        const auto begin = static_cast<std::size_t>(std::min<std::uint64_t>(offset, size()));
        const std::size_t count = std::min(target.size(), content_.size() - begin);
        std::memcpy(target.data(), content_.data() + begin, count);
        return count;
    }

private:
    const std::string& content_;
};

/// A disk that doesn't answer while it is shut.
class Gate {
public:
    void shut() { set(false); }
    void open() { set(true); }
    void pass() {
        std::unique_lock lock(mutex_);
        ++waiting_;
        changed_.wait(lock, [this] { return open_; });
        --waiting_;
    }
    bool isWaitedFor() {
        const std::lock_guard lock(mutex_);
        return waiting_ != 0;
    }

private:
    void set(bool open) {
        const std::lock_guard lock(mutex_);
        open_ = open;
        changed_.notify_all();
    }
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = true;
    int waiting_ = 0;
};

class Opening : public testing::Test {
protected:
    void SetUp() override { setenv("SDL_AUDIODRIVER", "dummy", 1); }
    void TearDown() override {
        gate.open();
        engine.engine.reset();
        // Abandoned threads use the members below until they end.
        EXPECT_TRUE(support::waitUntil([&] { return openCalls == openReturns; }));
        EXPECT_TRUE(support::waitUntil([&] { return files.use_count() == 1; }));
    }

    /// Opens a file: "slow…" lies on the slow disk, "hung…" behind the gate.
    std::shared_ptr<const FileReader> open(const std::string& name) {
        ++openCalls;
        const auto all = files;
        if (name.starts_with("hung")) {
            gate.pass();
        }
        std::shared_ptr<const FileReader> file;
        if (const auto found = all->find(name); found != all->end()) {
            // Keeps the contents for as long as the file is open.
            file = std::shared_ptr<const FileReader>(
                new FileInMemory(found->second), [all](const FileReader* open) { delete open; });
            if (name.starts_with("slow")) {
                file = std::make_shared<const SlowFile>(file, disk);
            }
        }
        ++openReturns;
        return file;
    }

    void expectNoLongWait(const std::string& name) {
        EXPECT_EQ(support::attemptWhileDisturbed(
                      5,
                      [&] {
                          const double took = engine.openAsTheProgramDoes(name);
                          return took < LONGEST_WAIT ? std::string() : std::to_string(took) + " ms";
                      }),
                  "");
    }
    [[nodiscard]] bool runUntilChanged() {
        return engine.queue.runUntil([this] { return engine.changes != 0; });
    }
    [[nodiscard]] std::string info(const char* name) { return engine.media().getItemInfo(name); }

    /// Frames of 320 kb/s and as many of 128 kb/s, 26.1 ms each, with a title before them.
    static std::string song(std::size_t frames) {
        return support::id3v2(3, {{"TIT2", std::string(1, '\0') + "Title"}}) +
               support::repeated(support::frameBytes({.bitRateIndex = 14, .size = 1044}), frames) +
               support::repeated(support::frameBytes({}), frames);
    }
    static double secondsOf(std::size_t frames) {
        return static_cast<double>(frames) * 1152 / 44100;
    }

    SlowDisk disk{5e6};
    Gate gate;
    std::atomic<int> openCalls{0};
    std::atomic<int> openReturns{0};
    const std::shared_ptr<std::map<std::string, std::string>> files =
        std::make_shared<std::map<std::string, std::string>>(std::map<std::string, std::string>{
            {"quick.mp3", song(100)}, {"hung.mp3", song(100)}, {"hung.txt", "Toto je text."}});
    EngineUnderTest engine{[this](const std::string& name) { return open(name); }};
};

TEST_F(Opening, AQuickFileIsKnownAtOnceAndRaisesNothing) {
    expectNoLongWait("quick.mp3");
    EXPECT_EQ(info("Filetype"), "mp3");
    EXPECT_EQ(info("Title"), "Title");
    EXPECT_NEAR(engine.media().duration(), secondsOf(200), 1e-6);
    engine.queue.runFor(50ms);
    EXPECT_EQ(engine.changes, 0);
}

TEST_F(Opening, ALargeFileOnASlowDiskHasEstimatesFirst) {
    constexpr std::size_t frames = 10000;
    files->emplace("slow.mp3", song(frames)); // 15 MB, three seconds
    expectNoLongWait("slow.mp3");
    EXPECT_EQ(info("Filetype"), "mp3");
    EXPECT_EQ(info("Bitrate"), "320000");
    const double estimate = engine.media().duration();
    EXPECT_GT(estimate, secondsOf(frames));
    EXPECT_LT(estimate, secondsOf(2 * frames) * 0.8);
    EXPECT_FALSE(engine.media().isReadOnlyItem("Title"));

    engine.engine->MediaChange = [&] {
        ++engine.changes;
        EXPECT_EQ(info("Title"), "Title");
    };
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.media().duration() != estimate; }));
    engine.queue.runWaiting();
    EXPECT_GT(engine.changes, 0);
    EXPECT_NEAR(engine.media().duration(), secondsOf(2 * frames), 1e-6);
    EXPECT_EQ(info("Bitrate"), "224000");
    EXPECT_TRUE(engine.media().isReadOnlyItem("Title"));
}

TEST_F(Opening, TheTagsComeBeforeTheLength) {
    files->emplace("slow.mp3", song(10000));
    disk.stall(400ms);
    engine.openAsTheProgramDoes("slow.mp3");
    EXPECT_EQ(info("Title"), "");
    EXPECT_TRUE(engine.queue.runUntil([&] { return info("Title") == "Title"; }));
    EXPECT_FALSE(engine.media().isReadOnlyItem("Title"));
    EXPECT_EQ(info("Bitrate"), "320000");
}

TEST_F(Opening, ADiskThatGivesNothingForASecondDelaysTheKindOnly) {
    files->emplace("slow.mp3", song(100));
    disk.stall(1s);
    expectNoLongWait("slow.mp3");
    EXPECT_EQ(info("Filetype"), "");
    EXPECT_FALSE(engine.media().isReadOnlyItem("Filetype"));
    EXPECT_EQ(engine.engine->URL(), "slow.mp3");
    EXPECT_EQ(engine.engine->playState(), PlayState::ready);
    EXPECT_EQ(engine.changes, 0);
    ASSERT_TRUE(runUntilChanged());
    EXPECT_EQ(info("Filetype"), "mp3");
    EXPECT_TRUE(engine.media().isReadOnlyItem("Filetype"));
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.media().isReadOnlyItem("Title"); }));
    EXPECT_NEAR(engine.media().duration(), secondsOf(200), 1e-6);
}

TEST_F(Opening, AnotherKindComesLateToo) {
    gate.shut();
    expectNoLongWait("hung.txt");
    EXPECT_FALSE(engine.media().isReadOnlyItem("Filetype"));
    gate.open();
    ASSERT_TRUE(runUntilChanged());
    EXPECT_EQ(info("Filetype"), "txt");
    engine.controls().play();
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.errors == 1; }));
}

TEST_F(Opening, AFileThatIsMissingAfterAllIsOfNoKind) {
    gate.shut();
    expectNoLongWait("hung, and gone");
    gate.open();
    ASSERT_TRUE(runUntilChanged());
    EXPECT_EQ(info("Filetype"), "");
    EXPECT_TRUE(engine.media().isReadOnlyItem("Filetype"));
}

TEST_F(Opening, APlayBeforeTheKindIsKnownPlaysLater) {
    gate.shut();
    engine.openAsTheProgramDoes("hung.mp3");
    engine.controls().setCurrentPosition(1);
    engine.controls().play();
    EXPECT_EQ(engine.controls().currentPosition(), 1);
    gate.open();
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 1.1; }));
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Opening, AFileBehindADeadDiskHoldsUpNoOther) {
    gate.shut();
    for (int i = 0; i < 3; ++i) {
        expectNoLongWait("hung.mp3");
        expectNoLongWait("quick.mp3");
        EXPECT_TRUE(engine.queue.runUntil([&] { return info("Filetype") == "mp3"; }, 2s));
        EXPECT_TRUE(gate.isWaitedFor());
        engine.controls().play();
        EXPECT_TRUE(
            engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; }, 5s));
    }
    engine.changes = 0;
    gate.open();
    EXPECT_TRUE(support::waitUntil([&] { return openCalls == openReturns; }));
    engine.queue.runFor(100ms);
    EXPECT_EQ(engine.changes, 0) << "the files behind the disk aren't loaded any more";
    EXPECT_EQ(engine.engine->URL(), "quick.mp3");
    EXPECT_EQ(engine.engine->playState(), PlayState::playing);
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Opening, WithoutAThreadAFileHasItsKindAndPlayingItIsAnError) {
    {
        const support::NoThreads none;
        engine.openAsTheProgramDoes("quick.mp3");
        EXPECT_EQ(info("Filetype"), "mp3");
        EXPECT_EQ(info("Bitrate"), "320000");
        for (int i = 1; i <= 2; ++i) {
            engine.controls().play();
            EXPECT_EQ(engine.engine->playState(), PlayState::playing);
            EXPECT_TRUE(engine.queue.runUntil([&] { return engine.errors == i; }));
            EXPECT_EQ(engine.engine->playState(), PlayState::stopped);
        }
        engine.controls().stop();
        engine.engine->setURL("");
        engine.openAsTheProgramDoes("hung.txt");
        EXPECT_EQ(info("Filetype"), "txt");
        engine.openAsTheProgramDoes("quick.mp3");
    }
    // As soon as there are threads, the file plays.
    engine.controls().play();
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; }));
    EXPECT_EQ(engine.errors, 2);
    EXPECT_TRUE(engine.queue.runUntil([&] { return engine.media().isReadOnlyItem("Title"); }));
    EXPECT_EQ(info("Title"), "Title");
}

TEST_F(Opening, WithoutAThreadTheEngineBeginsAndEnds) {
    const support::NoThreads none;
    const auto other = createMp3Engine(engine.queue.poster(), &FileReader::open);
    other->settings().setVolume(30);
    other->setURL("");
    other->controls().play();
    other->controls().stop();
    EXPECT_EQ(other->settings().volume(), 30);
}

TEST_F(Opening, UnloadingWaitsForNoDisk) {
    gate.shut();
    engine.openAsTheProgramDoes("hung.mp3");
    const support::Disturbance disturbance;
    const auto begin = std::chrono::steady_clock::now();
    engine.engine->setURL("");
    EXPECT_TRUE(std::chrono::steady_clock::now() - begin < 50ms || disturbance.happened());
    EXPECT_TRUE(engine.media().isReadOnlyItem("Filetype"));
    gate.open();
    EXPECT_TRUE(support::waitUntil([&] { return openCalls == openReturns; }));
    engine.queue.runFor(50ms);
    EXPECT_EQ(engine.changes, 0);
}

TEST_F(Opening, TheProgramEndsMeanwhile) {
    gate.shut();
    engine.openAsTheProgramDoes("hung.mp3");
    const auto begin = std::chrono::steady_clock::now();
    engine.engine.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 800ms);
    EXPECT_TRUE(gate.isWaitedFor());
    gate.open();
    engine.queue.runFor(50ms);
    EXPECT_EQ(engine.changes, 0);
}

} // namespace

} // namespace zvonivec
