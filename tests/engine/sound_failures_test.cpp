// Failures of the sound server and of files while they play.

#include "tests/engine/sound_test.h"

#include "engine/decoder_thread.h"

#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <unistd.h>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;
using support::Samples;

TEST_F(Sound, LosingTheServerIsOneErrorAndTheNextFilePlays) {
    const std::string path = noiseFile(3);
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    server.kill();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 0; }));
    EXPECT_NE(engine.engine->playState(), PlayState::playing);
    engine.queue.runFor(300ms);
    EXPECT_EQ(engine.errors, 1);
    EXPECT_EQ(engine.stops(), 0);

    engine.open(path);
    engine.controls().play(); // without a server
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 1; }));
    engine.queue.runFor(100ms);
    EXPECT_EQ(engine.errors, 2);

    server.restart();
    ASSERT_TRUE(server.running());
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    EXPECT_EQ(engine.errors, 2);
    ASSERT_TRUE(recording.waitForSilence());
    EXPECT_TRUE(support::findIn(
        recording.samples(), part(support::decodeWithMpg123(path), missedAtStart(), KEY_LENGTH)));
}

TEST_F(Sound, LosingTheServerInAPauseIsNoErrorWhenItComesBack) {
    const std::string path = noiseFile(2);
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    engine.controls().pause();
    server.restart();
    ASSERT_TRUE(server.running());
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    EXPECT_EQ(engine.errors, 0);
}

/// A sound server that stops answering and later goes on.
class HangingServer : public Sound {
protected:
    void TearDown() override {
        expectTheEngineEnds();
        // When the server answers again, the engine plays.
        engine.engine = createPlayerEngine(engine.queue.poster());
        engine.engine->settings().setAutoStart(false);
        engine.engine->settings().setVolume(100);
        const Samples expected = support::decodeWithMpg123(path);
        const support::Recording recording(server);
        engine.open(path);
        engine.controls().play();
        EXPECT_TRUE(support::waitUntil([&] {
            return support::findIn(recording.samples(), part(expected, missedAtStart(), KEY_LENGTH))
                .has_value();
        }));
    }

    template<class Action>
    static double seconds(const Action& action) {
        const auto begin = std::chrono::steady_clock::now();
        action();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    void expectNoCommandWaits() {
        PlayerEngine& player = *engine.engine;
        EXPECT_LT(seconds([&] { player.controls().pause(); }), 0.1);
        EXPECT_LT(seconds([&] { player.controls().setCurrentPosition(1); }), 0.1);
        EXPECT_LT(seconds([&] { player.controls().play(); }), 0.1);
        EXPECT_LT(seconds([&] { (void)player.controls().currentPosition(); }), 0.1);
        EXPECT_LT(seconds([&] { player.controls().stop(); }), 0.1);
        EXPECT_LT(seconds([&] { player.setURL(path); }), 0.1);
        EXPECT_LT(engine.openAsTheProgramDoes(path), 100);
        EXPECT_TRUE(player.currentMedia().isReadOnlyItem("Title"))
            << "the file waits for no device";
        EXPECT_LT(seconds([&] { player.setURL(""); }), 0.1);
    }

    void expectTheEngineEnds() {
        EXPECT_LT(seconds([&] { engine.engine.reset(); }), 0.8);
        server.thaw();
        // The abandoned thread ends by itself.
        ASSERT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; }));
    }

    const std::string path = noiseFile(3);
};

TEST_F(HangingServer, HoldsNobodyUpWhilePlaying) {
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    server.freeze();
    expectNoCommandWaits();
}

TEST_F(HangingServer, HoldsNobodyUpWhileTheDeviceIsOpened) {
    engine.open(path);
    server.freeze();
    engine.controls().play();
    engine.queue.runFor(200ms);
    expectNoCommandWaits();
}

TEST_F(HangingServer, HoldsNobodyUpWhileTheDeviceIsClosed) {
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    engine.controls().pause();
    server.freeze();
    engine.queue.runFor(2s); // an idle player closes the device
    expectNoCommandWaits();
}

TEST_F(HangingServer, StopsThePosition) {
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    server.freeze();
    const double frozen = engine.controls().currentPosition();
    engine.queue.runFor(1600ms);
    const double later = engine.controls().currentPosition();
    EXPECT_LE(later, frozen + 1.4);
    engine.queue.runFor(300ms);
    EXPECT_EQ(engine.controls().currentPosition(), later);
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(HangingServer, DoesNotDelayTheEndOfAnEngineThatPlays) {
    engine.open(path);
    ASSERT_TRUE(playUntil(0.3));
    server.freeze();
}

TEST_F(Sound, ALostServerIsALostDevice) {
    std::promise<Failure> reported;
    const auto thread = DecoderThread::create(
        {.ended = {},
         .failed = [&](std::uint64_t /*run*/,
                       const Failure& failure) { reported.set_value(failure); },
         .learnt = {}});
    thread->load(std::make_shared<LoadedFile>(noiseFile(3)));
    thread->allow(1);
    thread->start(1, 1, 0);
    EXPECT_TRUE(support::waitUntil([&] { return thread->position(1).value_or(0) > 0.3; }));
    server.kill();
    auto future = reported.get_future();
    ASSERT_EQ(future.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(causeName(future.get().cause), causeName(Failure::Cause::deviceLost));
    thread->end(500ms);
}

using SoundDeathTest = Sound;

TEST_F(SoundDeathTest, AServerThatHangsDoesNotKeepTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto endWhileItHangs = [&] {
        engine.open(noiseFile(3));
        engine.controls().play();
        engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
        server.freeze();
        alarm(5);
        engine.engine.reset();
        std::exit(42);
    };
    EXPECT_EXIT(endWhileItHangs(), testing::ExitedWithCode(42), "");
}

TEST_F(Sound, DeletedAndReplacedFilesPlayOn) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    ASSERT_EQ(std::rename(noiseFile(1, 2).c_str(), path.c_str()), 0);
    ASSERT_EQ(std::remove(path.c_str()), 0);
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const auto heard = hear(recording.samples(), expected);
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->match.length, expected.size());
}

TEST_F(Sound, ATruncatedFileIsOneError) {
    const std::string path = noiseFile(20);
    engine.open(path);
    ASSERT_TRUE(playUntil(0.2));
    ASSERT_EQ(support::run({"truncate", "-s", "40000", path}), 0);
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 0; }));
    engine.queue.runFor(200ms);
    EXPECT_EQ(engine.errors, 1);
    EXPECT_EQ(engine.stops(), 0);
}

} // namespace

} // namespace zvonivec
