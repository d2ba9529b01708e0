// Compares decoded samples with those of the mpg123 program and of ffmpeg.

#include "engine/decoding/mp3_decoder.h"

#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"
#include "tests/support/recording.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace zvonivec {

namespace {

using support::Samples;

/// An open file with its decoder.
struct Track {
    explicit Track(const std::string& path)
        : file(FileReader::open(path)), kind(detectFileKind(file)), measure(file, *kind.stream),
          decoder(file, *kind.stream, measure) {}

    Samples decodeFrom(std::int64_t sample, std::size_t most = SIZE_MAX) {
        Samples all;
        EXPECT_FALSE(decoder.seek(sample));
        Mp3Decoder::Block block;
        do {
            block = decoder.read();
            all.insert(all.end(), block.samples.begin(), block.samples.end());
        } while (block.result == Mp3Decoder::Result::samples && all.size() < most);
        result = block.result;
        return all;
    }

    std::shared_ptr<const FileReader> file;
    FileKind kind;
    FileMeasure measure;
    Mp3Decoder decoder;
    Mp3Decoder::Result result = Mp3Decoder::Result::samples;
};

const std::vector<std::vector<std::string>> ENCODINGS = {
    {"-b", "128"},
    {"-b", "128", "-t"},
    {"-V", "2"},
    {"-V", "5", "-t"},
    {"--abr", "90"},
    {"-b", "320"},
    {"-b", "32", "--resample", "44.1"},
    {"-m", "m", "-b", "64"},
    {"--freeformat", "-b", "400"},
    {"--resample", "22.05", "-b", "64"},
    {"--resample", "8", "-m", "m", "-b", "8"},
    {"--resample", "11.025", "-V", "6"},
    {"-b", "128", "-p"},
};

class Decoder : public testing::Test {
protected:
    support::TemporaryFolder folder;
    std::string path = folder.file("encoded.mp3");
};

TEST_F(Decoder, SamplesAreThoseOfMpg123) {
    for (const auto& arguments : ENCODINGS) {
        ASSERT_TRUE(support::encodeNoise(path, 1.7, arguments));
        const Samples expected = support::decodeWithMpg123(path);
        Track track(path);
        const Samples decoded = track.decodeFrom(0);
        EXPECT_EQ(track.result, Mp3Decoder::Result::end);
        ASSERT_EQ(decoded.size(), expected.size()) << testing::PrintToString(arguments);
        EXPECT_TRUE(decoded == expected) << testing::PrintToString(arguments);
        EXPECT_EQ(static_cast<std::int64_t>(decoded.size()),
                  track.measure.samples() * track.decoder.channels());
    }
}

TEST_F(Decoder, SeeksAreExactInBothDirections) {
    for (const auto& arguments : ENCODINGS) {
        ASSERT_TRUE(support::encodeNoise(path, 4, arguments));
        Track track(path);
        const Samples all = track.decodeFrom(0);
        const auto channels = static_cast<std::size_t>(track.decoder.channels());
        const std::size_t total = all.size() / channels;
        for (const std::size_t sample : {total / 2, total - 1, std::size_t{0}, std::size_t{1},
                                         std::size_t{1151}, total / 3, total * 9 / 10, total / 7}) {
            const Samples part = track.decodeFrom(static_cast<std::int64_t>(sample), 5000);
            const std::size_t count = std::min<std::size_t>(part.size(), 5000);
            ASSERT_GT(count, 0U);
            EXPECT_TRUE(std::equal(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count),
                                   all.begin() + static_cast<std::ptrdiff_t>(sample * channels)))
                << testing::PrintToString(arguments) << " at " << sample;
        }
    }
}

TEST_F(Decoder, SeeksPastTheEndEndAndBelowZeroBegin) {
    ASSERT_TRUE(support::encodeNoise(path, 1, {"-b", "128"}));
    Track track(path);
    const Samples all = track.decodeFrom(0);
    EXPECT_EQ(track.decodeFrom(-100), all);
    for (const std::int64_t sample :
         {std::int64_t{44100}, std::int64_t{44101}, std::int64_t{1} << 50}) {
        EXPECT_TRUE(track.decodeFrom(sample).empty()) << sample;
        EXPECT_EQ(track.result, Mp3Decoder::Result::end);
    }
}

TEST_F(Decoder, SeeksBeforeTheFileIsMeasuredAreExactToo) {
    ASSERT_TRUE(support::encodeNoise(path, 4, {"-V", "2", "-t"}));
    const Samples all = Track(path).decodeFrom(0);
    Track track(path);
    EXPECT_FALSE(track.measure.done());
    const Samples part = track.decodeFrom(100000, 2000);
    EXPECT_FALSE(track.measure.done());
    EXPECT_EQ(support::equalLength(part, 0, all, 200000), part.size());
}

TEST_F(Decoder, AnIndependentDecoderAgreesToOneStep) {
    for (const auto& arguments : ENCODINGS) {
        if (arguments.front() == "--freeformat") {
            continue; // ffmpeg doesn't decode free format
        }
        ASSERT_TRUE(support::encodeNoise(path, 1.5, arguments));
        const std::string raw = folder.file("raw");
        ASSERT_EQ(support::run({"ffmpeg", "-v", "error", "-y", "-i", path, "-f", "s16le", "-c:a",
                                "pcm_s16le", raw}),
                  0);
        const Samples expected = support::samplesFromFile(raw);
        const Samples decoded = Track(path).decodeFrom(0);
        // ffmpeg starts and ends files that don't state their delay elsewhere, so only the samples
        // that both have are compared.
        const std::size_t count = std::min(expected.size(), decoded.size());
        EXPECT_NEAR(static_cast<double>(expected.size()), static_cast<double>(decoded.size()),
                    2 * 1152)
            << testing::PrintToString(arguments);
        EXPECT_GE(support::equalLength(decoded, 0, expected, 0, 1), count)
            << testing::PrintToString(arguments);
    }
}

TEST_F(Decoder, DamageIsSkipped) {
    ASSERT_TRUE(support::encodeNoise(path, 3, {"-b", "128", "-t"}));
    const Samples whole = support::decodeWithMpg123(path);
    std::string bytes = support::readFile(path);
    bytes.replace(10000, 3000, support::randomBytes(3000));
    support::writeFile(path, bytes);
    Track track(path);
    const Samples decoded = track.decodeFrom(0);
    EXPECT_EQ(track.result, Mp3Decoder::Result::end);
    EXPECT_EQ(static_cast<std::int64_t>(decoded.size()), track.measure.samples() * 2);
    EXPECT_LT(whole.size() - decoded.size(), 2 * 1152 * 12);
    // After the damage the samples are those of the undamaged file.
    const std::size_t last = 20000;
    EXPECT_EQ(support::equalLength(decoded, decoded.size() - last, whole, whole.size() - last, 1),
              last);
}

TEST_F(Decoder, NoiseWithinFramesDoesNoHarm) {
    ASSERT_TRUE(support::encodeNoise(path, 2, {"-b", "128"}));
    const std::string good = support::readFile(path);
    for (unsigned seed = 1; seed <= 30; ++seed) {
        std::string bytes = good;
        const std::string damage = support::randomBytes(200, seed);
        for (std::size_t i = 0; i < damage.size(); i += 2) {
            const std::size_t at =
                1000 + (i * 140 + std::size_t{seed} * 37) % (bytes.size() - 1000);
            bytes[at] = damage[i];
        }
        support::writeFile(path, bytes);
        Track track(path);
        const Samples decoded = track.decodeFrom(0);
        EXPECT_EQ(track.result, Mp3Decoder::Result::end) << seed;
        EXPECT_EQ(static_cast<std::int64_t>(decoded.size()), track.measure.samples() * 2) << seed;
    }
}

TEST_F(Decoder, AFileThatShrinksIsAFailure) {
    ASSERT_TRUE(support::encodeNoise(path, 10, {"-b", "128"}));
    Track track(path);
    track.measure.walkToFrame(100000);
    ASSERT_EQ(support::run({"truncate", "-s", "50000", path}), 0);
    EXPECT_FALSE(track.decodeFrom(0).empty());
    EXPECT_EQ(track.result, Mp3Decoder::Result::failed);
    EXPECT_TRUE(track.decodeFrom(400000).empty());
    EXPECT_EQ(track.result, Mp3Decoder::Result::failed);
}

/// A steady tone, with the format that it is encoded in.
struct Tone {
    int rate;
    int channels;
    double pitch; ///< in Hz

    [[nodiscard]] bool encode(const std::string& path, double seconds) const {
        Samples samples;
        for (int i = 0; i < static_cast<int>(seconds * rate); ++i) {
            const double phase = 2 * std::numbers::pi * pitch * i / rate;
            samples.insert(samples.end(), static_cast<std::size_t>(channels),
                           static_cast<std::int16_t>(std::lround(8000 * std::sin(phase))));
        }
        support::writeWav(path + ".wav", samples, rate, channels);
        return support::run({"lame", "--quiet", "--resample", std::to_string(rate / 1000.0), "-m",
                             channels == 1 ? "m" : "j", "-b", "64", path + ".wav", path}) == 0;
    }
};

/// Strength of a tone of one pitch in the first channel, and of all other sound.
struct Spectrum {
    double amplitude;
    double rest; ///< share of the power that isn't the tone, 0 to 1

    Spectrum(const Samples& samples, int channels, int rate, double pitch) {
        double sine = 0;
        double cosine = 0;
        double all = 0;
        const std::size_t count = samples.size() / static_cast<std::size_t>(channels);
        for (std::size_t i = 0; i < count; ++i) {
            const double sample = samples[i * static_cast<std::size_t>(channels)];
            const double phase = 2 * std::numbers::pi * pitch * static_cast<double>(i) / rate;
            sine += sample * std::sin(phase);
            cosine += sample * std::cos(phase);
            all += sample * sample;
        }
        amplitude = 2 * std::hypot(sine, cosine) / static_cast<double>(count);
        rest = 1 - amplitude * amplitude / 2 * static_cast<double>(count) / all;
    }
};

/// Two tones of different formats, encoded and joined to one file.
struct JoinedTones {
    Tone first;
    Tone second;

    [[nodiscard]] std::string name() const {
        return std::to_string(first.rate) + "/" + std::to_string(first.channels) + " then " +
               std::to_string(second.rate) + "/" + std::to_string(second.channels);
    }

    /// Returns the seconds that both files have when they stand alone; 0 when an encoder fails.
    [[nodiscard]] double write(const std::string& path) const {
        const std::string other = path + ".other";
        if (!first.encode(path, 1.2) || !second.encode(other, 1.2)) {
            return 0;
        }
        double seconds = 0;
        for (const auto& [file, tone] : {std::pair(path, first), std::pair(other, second)}) {
            seconds += static_cast<double>(support::decodeWithMpg123(file).size()) / tone.channels /
                       tone.rate;
        }
        support::writeFile(path, support::readFile(path) + support::readFile(other));
        return seconds;
    }

    /// Samples that the encoders add at both ends of both files, in seconds. They are cut off only
    /// of files that stand alone.
    [[nodiscard]] double padding() const {
        return 3 * (1152.0 / std::max(first.rate, 24000) + 1152.0 / std::max(second.rate, 16000));
    }
};

void expectTone(const Track& track, const Samples& decoded, double from, double pitch) {
    const int rate = track.decoder.sampleRate();
    const int channels = track.decoder.channels();
    const auto at = static_cast<std::ptrdiff_t>(from * rate) * channels;
    const auto count = static_cast<std::ptrdiff_t>(rate / 2) * channels;
    const Spectrum spectrum(Samples(decoded.begin() + at, decoded.begin() + at + count), channels,
                            rate, pitch);
    EXPECT_NEAR(spectrum.amplitude, 7600, 80);
    EXPECT_LT(spectrum.rest, 0.003);
}

TEST_F(Decoder, JoinedFilesOfOtherFormatsKeepTheirLengthAndPitch) {
    // The encoder takes 5 % off. Half a second has a whole number of periods.
    const std::vector<JoinedTones> rows = {
        {{44100, 2, 440}, {48000, 2, 1000}},  {{44100, 2, 440}, {22050, 2, 1000}},
        {{48000, 2, 1000}, {44100, 2, 440}},  {{22050, 1, 440}, {44100, 2, 1000}},
        {{44100, 1, 440}, {44100, 2, 1000}},  {{44100, 2, 440}, {44100, 1, 1000}},
        {{44100, 2, 440}, {8000, 1, 1000}},   {{8000, 1, 1000}, {48000, 2, 440}},
        {{32000, 2, 2000}, {11025, 1, 1000}}, {{44100, 2, 440}, {32000, 1, 8000}},
    };
    for (const JoinedTones& row : rows) {
        SCOPED_TRACE(row.name());
        const double seconds = row.write(path);
        ASSERT_GT(seconds, 0);
        Track track(path);
        const Samples decoded = track.decodeFrom(0);
        EXPECT_EQ(track.result, Mp3Decoder::Result::end);
        const auto channels = static_cast<std::size_t>(track.decoder.channels());
        EXPECT_EQ(track.decoder.sampleRate(), row.first.rate);
        EXPECT_EQ(track.decoder.channels(), std::max(row.first.channels, row.second.channels));
        EXPECT_EQ(static_cast<std::int64_t>(decoded.size()),
                  track.measure.samples() * track.decoder.channels());
        const double length =
            static_cast<double>(track.measure.samples()) / track.decoder.sampleRate();
        EXPECT_GE(length, seconds - 0.01);
        EXPECT_LE(length, seconds + row.padding());
        expectTone(track, decoded, 0.4, row.first.pitch);
        expectTone(track, decoded, length - 0.9, row.second.pitch);

        const std::size_t count = decoded.size() / channels;
        for (const std::size_t sample : {count / 4, count * 3 / 5, count * 4 / 5}) {
            const Samples sought = track.decodeFrom(static_cast<std::int64_t>(sample), 2000);
            EXPECT_GE(support::equalLength(sought, 0, decoded, sample * channels, 1), 2000U)
                << sample;
        }
    }
}

TEST_F(Decoder, FramesOfOtherFormatsByChanceAreNoPart) {
    ASSERT_TRUE(support::encodeNoise(path, 2, {"-b", "128"}));
    const std::string good = support::readFile(path);
    // Three frames at 48 kHz in the middle are too few.
    const std::string other =
        support::repeated(support::frameBytes({.sampleRateIndex = 1, .size = 384}), 3);
    const std::size_t middle = good.size() / 2;
    const auto decodedWith = [&](const std::string& between) {
        support::writeFile(path, good.substr(0, middle) + between + std::string(300, '\0') +
                                     good.substr(middle));
        return Track(path).decodeFrom(0);
    };
    EXPECT_EQ(decodedWith(other).size(), decodedWith(std::string(other.size(), '\0')).size());
    // Six are a part.
    EXPECT_GT(decodedWith(other + other).size(), decodedWith(other).size());
}

TEST_F(Decoder, AFormatThatChangesAllTheTimeTakesNoTime) {
    const auto four = [](int sampleRateIndex, std::size_t size) {
        return support::repeated(support::frameBytes({.version = 2,
                                                      .bitRateIndex = 1,
                                                      .sampleRateIndex = sampleRateIndex,
                                                      .size = size}),
                                 4);
    };
    support::writeFile(path, support::repeated(four(0, 26) + four(1, 24), 50000));
    const support::ProcessorTime time;
    Track track(path);
    track.measure.walkToFrame(1'000'000);
    EXPECT_NEAR(static_cast<double>(track.measure.samples()) / 22050,
                50000 * (4 * 576 / 22050.0 + 4 * 576 / 24000.0), 5);
    EXPECT_LT(time.seconds(), 1);
    const std::size_t second = std::size_t{22050} * 2;
    EXPECT_GE(track.decodeFrom(0, 2 * second).size(), 2 * second);
    EXPECT_GE(track.decodeFrom(150'000'000, 2 * second).size(), 2 * second);
    EXPECT_LT(time.seconds(), 2);
}

TEST_F(Decoder, AMonoInfoFrameLeavesStereoAsItIs) {
    ASSERT_TRUE(support::encodeNoise(path, 2, {"-b", "128", "-m", "s", "-t"}));
    const Samples expected = support::decodeWithMpg123(path);
    support::writeFile(path, support::xingFrame({.mono = true}, "Info", 5, 5000) +
                                 support::readFile(path));
    Track track(path);
    EXPECT_EQ(track.decoder.channels(), 2);
    EXPECT_EQ(track.decodeFrom(0), expected);
}

TEST_F(Decoder, MonoThatTurnsStereoIsStereoThroughout) {
    const std::string other = folder.file("stereo.mp3");
    ASSERT_TRUE(support::encodeNoise(path, 1, {"-b", "64", "-m", "m", "-t"}));
    ASSERT_TRUE(support::encodeNoise(other, 1, {"-b", "128", "-m", "s", "-t"}));
    const Samples mono = support::decodeWithMpg123(path);
    const Samples stereo = support::decodeWithMpg123(other);
    for (const bool monoFirst : {true, false}) {
        const std::string joined = folder.file("joined.mp3");
        support::writeFile(joined, monoFirst ? support::readFile(path) + support::readFile(other)
                                             : support::readFile(other) + support::readFile(path));
        Track track(joined);
        EXPECT_EQ(track.decoder.channels(), 2);
        const Samples decoded = track.decodeFrom(0);
        ASSERT_EQ(decoded.size(), 2 * mono.size() + stereo.size());
        // Both channels are the mono track's; the filters join the ends of both parts.
        const std::size_t begin = monoFirst ? 0 : stereo.size();
        int worst = 0;
        for (std::size_t i = 2000; i + 2000 < mono.size(); ++i) {
            worst = std::max({worst, std::abs(decoded[begin + 2 * i] - mono[i]),
                              std::abs(decoded[begin + 2 * i + 1] - mono[i])});
        }
        EXPECT_LE(worst, 1) << monoFirst;
    }
}

TEST_F(Decoder, FramesWithoutSoundAreSilence) {
    support::writeFile(path, support::repeated(support::frameBytes({}), 30));
    const Samples decoded = Track(path).decodeFrom(0);
    EXPECT_EQ(decoded, Samples(std::size_t{30} * 1152 * 2));
}

} // namespace

} // namespace zvonivec
