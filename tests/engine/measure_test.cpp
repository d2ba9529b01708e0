// Compares lengths and bit rates with a full decode by the mpg123 program.

#include "engine/reading/file_measure.h"

#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace zvonivec {

namespace {

using support::frameBytes;
using support::FrameShape;
using support::repeated;

constexpr std::uint64_t EVERYTHING = std::numeric_limits<std::uint64_t>::max() / 2;

class Measure : public testing::Test {
protected:
    Measurement measure(const std::string& path) {
        const auto file = FileReader::open(path);
        const FileKind kind = detectFileKind(file);
        EXPECT_TRUE(kind.stream);
        if (!kind.stream) {
            return {};
        }
        FileMeasure result(file, *kind.stream);
        estimated = result.measurement();
        result.walk(EVERYTHING);
        EXPECT_TRUE(result.done());
        EXPECT_FALSE(result.failed());
        return result.measurement();
    }
    Measurement measureContent(const std::string& content) {
        support::writeFile(folder.file("content"), content);
        return measure(folder.file("content"));
    }

    support::TemporaryFolder folder;
    Measurement estimated;
};

TEST_F(Measure, LengthsAreThoseOfAFullDecode) {
    struct Row {
        std::vector<std::string> arguments;
        int rate;
        int channels;
    };
    const std::vector<Row> rows = {
        {{"-b", "128"}, 44100, 2},
        {{"-b", "128", "-t"}, 44100, 2},
        {{"-V", "2"}, 44100, 2},
        {{"-V", "4", "-t"}, 44100, 2},
        {{"--abr", "150"}, 48000, 2},
        {{"-b", "64", "--resample", "22.05"}, 22050, 1},
        {{"--resample", "8", "-b", "16"}, 8000, 1},
        {{"--freeformat", "-b", "400"}, 44100, 2},
    };
    const std::string path = folder.file("encoded");
    for (const Row& row : rows) {
        ASSERT_TRUE(support::encodeNoise(path, 3.3, row.arguments, row.rate, row.channels));
        const std::size_t samples = support::decodeWithMpg123(path).size();
        const double expected = static_cast<double>(samples) / row.channels / row.rate;
        EXPECT_DOUBLE_EQ(measure(path).seconds, expected) << row.arguments.front();
    }
}

TEST_F(Measure, StatedPaddingIsLeftOut) {
    const std::string path = folder.file("encoded");
    ASSERT_TRUE(support::encodeNoise(path, 2.5, {"-b", "128"}));
    EXPECT_DOUBLE_EQ(measure(path).seconds, 2.5);
}

TEST_F(Measure, ConstantRateIsTheNominalOne) {
    const std::string path = folder.file("encoded");
    for (const char* kilobits : {"32", "128", "192", "320"}) {
        ASSERT_TRUE(support::encodeNoise(path, 2, {"-b", kilobits}));
        EXPECT_EQ(measure(path).bitRate, std::stoi(kilobits) * 1000);
    }
}

TEST_F(Measure, VariableRateIsTheAverageInWholeKilobits) {
    // Ten frames of 128 kb/s and thirty of 192 kb/s; their sizes are rounded down.
    const std::string content = repeated(frameBytes({.bitRateIndex = 9, .size = 417}), 10) +
                                repeated(frameBytes({.bitRateIndex = 11, .size = 626}), 30);
    const double seconds = 40 * 1152 / 44100.0;
    const double average = (10 * 417 + 30 * 626) * 8 / seconds;
    const Measurement result = measureContent(content);
    EXPECT_EQ(result.bitRate % 1000, 0);
    EXPECT_NEAR(static_cast<double>(result.bitRate), average, 500);
    EXPECT_DOUBLE_EQ(result.seconds, seconds);
}

TEST_F(Measure, HeadersThatLieDontMatter) {
    const FrameShape shape = {};
    const std::string frames = repeated(frameBytes(shape), 100);
    const auto bytes = static_cast<std::uint32_t>(frames.size() + 417);
    const double seconds = 100 * 1152 / 44100.0;
    for (const std::uint32_t claimed : {0U, 1U, 50U, 5000U, 0xFFFFFFFFU}) {
        EXPECT_DOUBLE_EQ(
            measureContent(support::xingFrame(shape, "Xing", claimed, bytes) + frames).seconds,
            seconds)
            << claimed;
        EXPECT_DOUBLE_EQ(
            measureContent(support::xingFrame(shape, "Info", claimed, bytes, 576, 1000) + frames)
                .seconds,
            seconds - (576 + 529) / 44100.0)
            << claimed;
        EXPECT_DOUBLE_EQ(measureContent(support::vbriFrame(shape, claimed, bytes) + frames).seconds,
                         seconds)
            << claimed;
    }
    EXPECT_DOUBLE_EQ(
        measureContent(support::xingFrame(shape, "Info", 100, bytes, 576, 1000) + frames).seconds,
        seconds - (576 + 1000) / 44100.0);
    EXPECT_DOUBLE_EQ(
        measureContent(support::xingFrame(shape, "Info", 100, bytes, 4095, 4095) + frames).seconds,
        seconds - (4095 + 4095) / 44100.0);
}

TEST_F(Measure, FieldsOfAHeaderMayBeMissing) {
    const std::string frames = repeated(frameBytes({}), 100);
    std::string header = support::xingFrame({}, "Info", 100, 0, 576, 1000);
    constexpr std::size_t flags = 4 + 32 + 4;
    constexpr std::size_t bytes = flags + 8;
    header[flags + 3] = 1;
    header.erase(bytes, 4);
    header.append(4, '\0');
    EXPECT_DOUBLE_EQ(measureContent(header + frames).seconds,
                     100 * 1152 / 44100.0 - (576 + 1000) / 44100.0);
}

TEST_F(Measure, EstimatesAreCloseBeforeTheWalk) {
    const std::string frames = repeated(frameBytes({}), 1000);
    measureContent(frames);
    EXPECT_NEAR(estimated.seconds, 1000 * 1152 / 44100.0, 0.1);
    EXPECT_EQ(estimated.bitRate, 128000);
    const auto bytes = static_cast<std::uint32_t>(frames.size() + 417);
    measureContent(support::xingFrame({}, "Xing", 1000, bytes) + frames);
    EXPECT_NEAR(estimated.seconds, 1000 * 1152 / 44100.0, 0.1);
}

TEST_F(Measure, DamageAndForeignBytesAreSkipped) {
    const std::string frame = frameBytes({});
    const double frameSeconds = 1152 / 44100.0;
    const std::string frames = repeated(frame, 50);
    EXPECT_DOUBLE_EQ(measureContent(frames + support::randomBytes(100000) + frames).seconds,
                     100 * frameSeconds);
    EXPECT_DOUBLE_EQ(measureContent(frames + std::string(300, '\0') + frames).seconds,
                     100 * frameSeconds);
    EXPECT_DOUBLE_EQ(measureContent(frames + frame.substr(0, 200)).seconds, 50 * frameSeconds)
        << "cut off";
    EXPECT_DOUBLE_EQ(measureContent(frames + std::string(500, '\0')).seconds, 50 * frameSeconds);
    // The tag of a joined file, with bytes that look like frames in its picture.
    const std::string tag = support::id3v2(3, {{"APIC", repeated(frame, 10)}});
    EXPECT_DOUBLE_EQ(measureContent(frames + tag + frames).seconds, 100 * frameSeconds);
    EXPECT_DOUBLE_EQ(measureContent(frames + support::apeTag({{"x", repeated(frame, 10)}})).seconds,
                     50 * frameSeconds);
}

TEST_F(Measure, AHundredMegabytesAreWalkedInNoTime) {
    const std::string path = folder.file("large");
    {
        const std::string block = repeated(frameBytes({}), 2400);
        std::string content;
        for (int i = 0; i < 100; ++i) {
            content += block;
        }
        support::writeFile(path, content);
    }
    measure(path); // fills the disk's cache
    const support::ProcessorTime time;
    EXPECT_DOUBLE_EQ(measure(path).seconds, 240000 * 1152 / 44100.0);
    const double seconds = time.seconds();
    RecordProperty("milliseconds", static_cast<int>(seconds * 1000));
    EXPECT_LT(seconds, 0.4);
}

TEST_F(Measure, EveryFrameIsFoundAgainInALongFile) {
    // Enough frames to thin the index out twice. Padding makes the offsets irregular.
    FrameShape shape{.version = 25, .bitRateIndex = 1, .size = 52};
    const std::string plain = frameBytes(shape);
    shape.padded = true;
    shape.size = 53;
    const std::string padded = frameBytes(shape);
    constexpr std::int64_t count = 300000;
    std::vector<std::uint64_t> offsets;
    std::string content;
    for (std::int64_t i = 0; i < count; ++i) {
        offsets.push_back(content.size());
        content += i % 7 == 3 ? padded : plain;
    }
    const std::string path = folder.file("long");
    support::writeFile(path, content);
    const auto file = FileReader::open(path);
    FileMeasure measure(file, *detectFileKind(file).stream);
    measure.walkToFrame(1000);
    EXPECT_EQ(measure.frameOffset(999), offsets[999]);
    measure.walkToFrame(count);
    ASSERT_EQ(measure.frames(), count);
    for (const std::int64_t frame :
         {std::int64_t{0}, std::int64_t{16}, std::int64_t{17}, std::int64_t{63}, std::int64_t{64},
          std::int64_t{131071}, std::int64_t{131072}, std::int64_t{262143}, count - 1}) {
        EXPECT_EQ(measure.frameOffset(frame), offsets[static_cast<std::size_t>(frame)]) << frame;
    }
    EXPECT_FALSE(measure.frameOffset(count)) << "behind the last one there is none";
}

TEST_F(Measure, SlicesMeasureTheSame) {
    const std::string path = folder.file("encoded");
    ASSERT_TRUE(support::encodeNoise(path, 3, {"-V", "2"}));
    const auto file = FileReader::open(path);
    FileMeasure measure(file, *detectFileKind(file).stream);
    int slices = 0;
    while (!measure.done()) {
        measure.walk(1000);
        ++slices;
    }
    EXPECT_GT(slices, 20);
    EXPECT_DOUBLE_EQ(measure.measurement().seconds, 3.0);
}

} // namespace

} // namespace zvonivec
