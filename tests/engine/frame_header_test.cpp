#include "engine/reading/frame_header.h"

#include "tests/support/mp3_samples.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zvonivec {

namespace {

using support::FrameShape;

std::vector<std::uint8_t> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

std::optional<FrameHeader> parse(const FrameShape& shape) {
    return parseFrameHeader(bytesOf(support::frameBytes(shape)));
}

TEST(FrameHeader, TellsWhatAFrameIs) {
    struct Row {
        FrameShape shape;
        int bitRate;
        int sampleRate;
        int samples;
        std::size_t size;
    };
    const std::array rows = {
        Row{{.bitRateIndex = 9}, 128000, 44100, 1152, 417},
        Row{{.bitRateIndex = 9, .padded = true}, 128000, 44100, 1152, 418},
        Row{{.bitRateIndex = 14, .sampleRateIndex = 1}, 320000, 48000, 1152, 960},
        Row{{.bitRateIndex = 1, .sampleRateIndex = 2}, 32000, 32000, 1152, 144},
        Row{{.version = 2, .bitRateIndex = 8}, 64000, 22050, 576, 208},
        Row{{.version = 2, .bitRateIndex = 14, .sampleRateIndex = 1}, 160000, 24000, 576, 480},
        Row{{.version = 25, .bitRateIndex = 1, .sampleRateIndex = 2}, 8000, 8000, 576, 72},
        Row{{.layer = 2, .bitRateIndex = 10}, 192000, 44100, 1152, 626},
        Row{{.layer = 1, .bitRateIndex = 12, .padded = true}, 384000, 44100, 384, 420},
        Row{{.bitRateIndex = 0}, 0, 44100, 1152, 0},
    };
    for (const Row& row : rows) {
        const auto header = parse(row.shape);
        ASSERT_TRUE(header) << row.bitRate;
        EXPECT_EQ(header->version, row.shape.version);
        EXPECT_EQ(header->layer, row.shape.layer);
        EXPECT_EQ(header->bitRate, row.bitRate);
        EXPECT_EQ(header->sampleRate, row.sampleRate);
        EXPECT_EQ(header->samples, row.samples);
        EXPECT_EQ(header->size(), row.size);
        EXPECT_EQ(header->channels, 2);
    }
    EXPECT_EQ(parse({.mono = true})->channels, 1);
    EXPECT_EQ(parse({.bitRateIndex = 0, .padded = true})->size(700), 701U);
}

TEST(FrameHeader, RefusesWhatIsNone) {
    EXPECT_FALSE(parse({.bitRateIndex = 15}));
    EXPECT_FALSE(parse({.sampleRateIndex = 3}));
    EXPECT_FALSE(parse({.layer = 4}));
    const std::array<std::uint8_t, 4> reservedVersion = {0xFF, 0xEB, 0x90, 0x00};
    EXPECT_FALSE(parseFrameHeader(reservedVersion));
    const std::array<std::uint8_t, 4> noSync = {0xFF, 0x1B, 0x90, 0x00};
    EXPECT_FALSE(parseFrameHeader(noSync));
    const std::array<std::uint8_t, 3> tooShort = {0xFF, 0xFB, 0x90};
    EXPECT_FALSE(parseFrameHeader(tooShort));
}

TEST(FrameHeader, AgreesOnWhatAStreamCantChange) {
    const FrameHeader first = *parse({});
    EXPECT_TRUE(
        first.agrees(*parse({.bitRateIndex = 5, .padded = true, .mono = true, .crc = true})));
    EXPECT_FALSE(first.agrees(*parse({.version = 2})));
    EXPECT_FALSE(first.agrees(*parse({.layer = 2})));
    EXPECT_FALSE(first.agrees(*parse({.sampleRateIndex = 1})));
    EXPECT_FALSE(first.agrees(*parse({.bitRateIndex = 0})));
}

TEST(FrameHeader, SideInformationOfRealFramesIsPlausible) {
    const support::TemporaryFolder folder;
    const std::string path = folder.file("a.mp3");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"-b", "128"},
                                                      {"-m", "m", "-b", "64"},
                                                      {"--resample", "16"},
                                                      {"-b", "320", "-p"},
                                                      {"--resample", "8", "-m", "m", "-b", "8"}}) {
        ASSERT_TRUE(support::encodeNoise(path, 1, arguments));
        const std::vector<std::uint8_t> bytes = bytesOf(support::readFile(path));
        std::size_t offset = bytes[0] == 'I' ? 10U + bytes[9] + 128U * bytes[8] : 0;
        int frames = 0;
        while (offset + 4 < bytes.size()) {
            const auto rest = std::span(bytes).subspan(offset);
            const auto header = parseFrameHeader(rest);
            ASSERT_TRUE(header);
            EXPECT_TRUE(sideInfoPlausible(*header, rest, header->size())) << frames;
            offset += header->size();
            ++frames;
        }
        EXPECT_GT(frames, 10);
    }
}

TEST(FrameHeader, SideInformationOfNoiseIsNot) {
    int plausible = 0;
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::string frame = support::frameBytes({});
        frame.replace(4, 413, support::randomBytes(413, seed));
        plausible += sideInfoPlausible(*parse({}), bytesOf(frame), 417) ? 1 : 0;
    }
    EXPECT_LT(plausible, 50);
}

} // namespace

} // namespace zvonivec
