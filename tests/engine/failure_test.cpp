// Causes of failures: what the decoder, the device and the decoder thread report.

#include "engine/decoder_thread.h"
#include "engine/failure.h"

#include "tests/support/mp3_samples.h"
#include "tests/support/no_threads.h"
#include "tests/support/process.h"

#include <chrono>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace zvonivec {

namespace {

using Cause = Failure::Cause;

class Failures : public testing::Test {
protected:
    void SetUp() override { setenv("SDL_AUDIODRIVER", "dummy", 1); }
    void TearDown() override { thread->end(std::chrono::milliseconds(500)); }

    std::string track(int frames) {
        std::string path = folder.file("track.mp3");
        support::writeFile(
            path, support::repeated(support::frameBytes({.bitRateIndex = 14, .size = 1044}),
                                    static_cast<std::size_t>(frames)));
        return path;
    }

    /// Plays a file and returns the failure; nothing when it doesn't come.
    std::optional<Failure> failureOf(const std::shared_ptr<LoadedFile>& file) {
        reported = {};
        thread->load(file);
        ++run;
        thread->allow(run);
        thread->start(run, run, 0);
        auto future = reported.get_future();
        if (future.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
            return std::nullopt;
        }
        const auto [failedRun, failure] = future.get();
        EXPECT_EQ(failedRun, run);
        return failure;
    }

    void expectCause(const std::string& path, Cause cause) {
        const auto failure = failureOf(std::make_shared<LoadedFile>(path));
        ASSERT_TRUE(failure);
        EXPECT_EQ(causeName(failure->cause), causeName(cause));
    }

    support::TemporaryFolder folder;
    std::uint64_t run = 0;
    std::promise<std::pair<std::uint64_t, Failure>> reported;
    std::shared_ptr<DecoderThread> thread =
        DecoderThread::create({.ended = {},
                               .failed =
                                   [this](std::uint64_t failedRun, const Failure& failure) {
                                       reported.set_value({failedRun, failure});
                                   },
                               .learnt = {}});
};

TEST_F(Failures, AMissingFileIsNotOpened) {
    expectCause(folder.file("missing.mp3"), Cause::notOpened);
    expectCause(folder.path(), Cause::notOpened);
}

TEST_F(Failures, WithoutAThreadNothingPlays) {
    const auto file = std::make_shared<LoadedFile>(track(200));
    const auto noThread = [&] {
        const support::NoThreads none;
        const auto failure = failureOf(file);
        ASSERT_TRUE(failure);
        EXPECT_EQ(causeName(failure->cause), causeName(Cause::noThread));
        EXPECT_NE(failure->text, "");
    };
    noThread();
    thread->load(file); // the decoder's thread is there now, the device's isn't
    noThread();
}

TEST_F(Failures, AnotherKindIsNotMp3) {
    support::writeFile(folder.file("text.mp3"), "Toto je text.");
    expectCause(folder.file("text.mp3"), Cause::notMp3);
}

TEST_F(Failures, AFileThatLosesItsFramesIsTruncated) {
    const std::string path = track(2000);
    const auto file = std::make_shared<LoadedFile>(path);
    file->measure()->walkToFrame(2000);
    ASSERT_EQ(support::run({"truncate", "-s", "5000", path}), 0);
    const auto failure = failureOf(file);
    ASSERT_TRUE(failure);
    EXPECT_EQ(causeName(failure->cause), causeName(Cause::truncated));
}

/// A file whose disk fails from an offset on.
class BadDisk final : public FileReader {
public:
    BadDisk(std::shared_ptr<const FileReader> file, std::uint64_t from)
        : file_(std::move(file)), from_(from) {}
    [[nodiscard]] std::uint64_t size() const override { return file_->size(); }
    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        return offset >= from_ ? std::nullopt : file_->readAt(offset, target);
    }

private:
    const std::shared_ptr<const FileReader> file_;
    const std::uint64_t from_;
};

TEST_F(Failures, ADiskThatFailsIsUnreadable) {
    const auto disk = std::make_shared<BadDisk>(FileReader::open(track(2000)), 60'000);
    const auto failure = failureOf(std::make_shared<LoadedFile>(disk));
    ASSERT_TRUE(failure);
    EXPECT_EQ(causeName(failure->cause), causeName(Cause::unreadable));
}

TEST_F(Failures, ADeviceThatCantBeOpenedHasTheLibrarysText) {
    setenv("SDL_AUDIODRIVER", "pulseaudio", 1);
    setenv("PULSE_SERVER", ("unix:" + folder.file("nothing")).c_str(), 1);
    const auto failure = failureOf(std::make_shared<LoadedFile>(track(200)));
    ASSERT_TRUE(failure);
    EXPECT_EQ(causeName(failure->cause), causeName(Cause::noDevice));
    EXPECT_NE(failure->text, "");
    unsetenv("PULSE_SERVER");
}

TEST(FailureNames, AreAllDifferent) {
    std::vector<std::string> names;
    for (const Cause cause : {Cause::notOpened, Cause::notMp3, Cause::unreadable, Cause::truncated,
                              Cause::decoderSetUp, Cause::noDevice, Cause::deviceLost}) {
        names.emplace_back(causeName(cause));
        EXPECT_NE(names.back(), "");
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

/// Says what engine_probe prints of a file.
std::string probe(const support::TemporaryFolder& folder, const std::string& path) {
    support::Process::Options options;
    options.outputFile = folder.file("output");
    EXPECT_EQ(support::run({ENGINE_PROBE, path}, options), 0);
    return support::readFile(options.outputFile);
}

TEST_F(Failures, AreOnTheProbesLine) {
    support::writeFile(folder.file("text.mp3"), "Toto je text.");
    EXPECT_NE(probe(folder, folder.file("text.mp3")).find(R"("failure":"notMp3")"),
              std::string::npos);
    EXPECT_NE(probe(folder, folder.file("missing")).find(R"("failure":"notOpened")"),
              std::string::npos);
    const std::string line = probe(folder, track(100));
    EXPECT_EQ(line.find("failure"), std::string::npos) << line;
    EXPECT_NE(line.find(R"("samples":115200)"), std::string::npos) << line;
}

TEST_F(Failures, TheProbeNamesFilesOfAnyBytes) {
    const std::string path = folder.file("n\xFF\xE8zev \xC5\xBE.mp3");
    support::writeFile(path, support::repeated(support::frameBytes({}), 20));
    EXPECT_NE(probe(folder, path).find("/n\xC3\xBF\xC3\xA8zev \xC3\x85\xC2\xBE.mp3\""),
              std::string::npos);
    support::writeFile(folder.file("kůň.mp3"), "x");
    EXPECT_NE(probe(folder, folder.file("kůň.mp3")).find("/kůň.mp3\""), std::string::npos);
}

} // namespace

} // namespace zvonivec
