// Files on disks that are slow or that stall, heard in a recording.

#include "tests/engine/slow_disk.h"
#include "tests/engine/sound_test.h"
#include "tests/support/disturbance.h"

namespace zvonivec {

namespace {

using support::Samples;

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
