// Files of all kinds. Length and samples are compared with those of the mpg123 program, rate and
// tags with the values that the file was made with.

#include "tests/engine/engine_under_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"

#include "engine/decoding/mp3_decoder.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zvonivec {

namespace {

using support::encodeNoise;
using support::readFile;
using support::Samples;
using support::writeFile;

constexpr double SECONDS = 2.5;

/// Path of a copy without the bytes around the audio that other programs can't skip.
std::string plain(const std::string& path) {
    return path + ".plain";
}

/// Puts bytes before and after the content of a file.
void wrap(const std::string& path, const std::string& before, const std::string& after = {}) {
    std::filesystem::copy_file(path, plain(path));
    writeFile(path, before + readFile(path) + after);
}

std::string text(const std::string& utf8) {
    return "\3" + utf8;
}

// --- MP3 files ------------------------------------------------------------------------------

struct Mp3File {
    const char* name;
    std::function<bool(const std::string& path)> make;
    const char* bitRate; ///< empty: the average, in whole kilobits
    int rate = 44100;
    int channels = 2;
    std::string title = {};
    std::string genre = {};
};

bool lame(const std::string& path, const std::vector<std::string>& arguments, int rate = 44100,
          int channels = 2) {
    return encodeNoise(path, SECONDS, arguments, rate, channels);
}

/// A file whose info frame doesn't come from its encoder.
bool described(const std::string& path, const std::string& description) {
    const bool made = lame(path, {"-V", "4", "-t"});
    wrap(path, description);
    return made;
}

const std::string CZECH = "Příliš žluťoučký kůň";
const std::string CZECH1250 = "P\xF8\xEDli\x9A \x9Elu\x9Dou\xE8k\xFD k\xF9\xF2";

const Mp3File MP3_FILES[] = {
    {"ConstantRate",
     [](auto& path) {
         return lame(path, {"-b", "128"});
     },
     "128000"},
    {"HighestRate",
     [](auto& path) {
         return lame(path, {"-b", "320"});
     },
     "320000"},
    {"LowestRate",
     [](auto& path) {
         return lame(path, {"--resample", "8", "-m", "m", "-b", "8"}, 8000, 1);
     },
     "8000", 8000, 1},
    {"WithoutDescription",
     [](auto& path) {
         return lame(path, {"-b", "160", "-t"});
     },
     "160000"},
    {"VariableRate",
     [](auto& path) {
         return lame(path, {"-V", "2"});
     },
     ""},
    {"VariableRateWithoutDescription",
     [](auto& path) {
         return lame(path, {"-V", "4", "-t"});
     },
     ""},
    {"AverageRate",
     [](auto& path) {
         return lame(path, {"--abr", "150"});
     },
     ""},
    {"VersionTwo",
     [](auto& path) {
         return lame(path, {"-b", "64"}, 22050);
     },
     "64000", 22050},
    {"VersionTwoAndAHalf",
     [](auto& path) {
         return lame(path, {"-b", "32"}, 11025, 1);
     },
     "32000", 11025, 1},
    {"Mono",
     [](auto& path) {
         return lame(path, {"-b", "64"}, 44100, 1);
     },
     "64000", 44100, 1},
    {"JointStereo",
     [](auto& path) {
         return lame(path, {"-b", "128", "-m", "j"});
     },
     "128000"},
    {"Checksums",
     [](auto& path) {
         return lame(path, {"-b", "128", "-p"});
     },
     "128000"},
    {"FreeFormat",
     [](auto& path) {
         return lame(path, {"--freeformat", "-b", "400"});
     },
     "400000"},
    {"LyingDescription",
     [](auto& path) { return described(path, support::xingFrame({}, "Xing", 100000, 99999999)); },
     ""},
    {"OtherDescription",
     [](auto& path) { return described(path, support::vbriFrame({}, 77, 12345)); }, ""},
    {"Truncated",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128", "-t"});
         std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
         return made;
     },
     "128000"},
    {"JunkInFront",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128", "-t"});
         wrap(path, std::string(65536, 'j'));
         return made;
     },
     "128000"},
    {"BehindATagOfTwentyMegabytes",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128"});
         wrap(path, support::id3v2(4, {{"TIT2", text(CZECH)}}, 20U << 20U));
         return made;
     },
     "128000", 44100, 2, CZECH},
    {"OldCzechTag",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128"});
         wrap(path, "", support::id3v1(CZECH1250, "", "", "", "", 17));
         return made;
     },
     "128000", 44100, 2, CZECH, "Rock"},
    {"CzechThatClaimsToBeWestern",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128"});
         wrap(path, support::id3v2(3, {{"TIT2", std::string(1, '\0') + CZECH1250},
                                       {"TCON", std::string(1, '\0') + "(17)"}}));
         return made;
     },
     "128000", 44100, 2, CZECH, "Rock"},
    {"ShortTagNames",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128"});
         wrap(path, support::id3v2(2, {{"TT2", std::string(1, '\0') + CZECH1250}}));
         return made;
     },
     "128000", 44100, 2, CZECH},
    {"AllTagsAtOnce",
     [](auto& path) {
         const bool made = lame(path, {"-b", "128"});
         wrap(path, support::id3v2(4, {{"TIT2", text("best")}}),
              support::apeTag({{"Title", "better"}, {"Genre", "Polka"}}) +
                  support::id3v1("good", "", "", "", "", 17));
         return made;
     },
     "128000", 44100, 2, "best", "Polka"},
};

class Mp3Files : public testing::TestWithParam<Mp3File> {};

void PrintTo(const Mp3File& file, std::ostream* out) {
    *out << file.name;
}

Samples decoded(const std::string& path) {
    const auto file = FileReader::open(path);
    const FileKind kind = detectFileKind(file);
    if (!kind.stream) {
        return {};
    }
    FileMeasure measure(file, *kind.stream);
    Mp3Decoder decoder(file, *kind.stream, measure);
    Samples all;
    if (!decoder.seek(0)) {
        for (auto block = decoder.read(); block.result == Mp3Decoder::Result::samples;
             block = decoder.read()) {
            all.insert(all.end(), block.samples.begin(), block.samples.end());
        }
    }
    return all;
}

TEST_P(Mp3Files, AreToldAndSoundAsTheyAre) {
    const Mp3File& wanted = GetParam();
    const support::TemporaryFolder folder;
    const std::string path = folder.file("music.txt"); // the name doesn't count
    ASSERT_TRUE(wanted.make(path));
    const Samples samples =
        support::decodeWithMpg123(std::filesystem::exists(plain(path)) ? plain(path) : path);
    ASSERT_FALSE(samples.empty());
    const double length = static_cast<double>(samples.size()) / wanted.channels / wanted.rate;

    EngineUnderTest engine;
    engine.open(path);
    EXPECT_EQ(engine.media().getItemInfo("Filetype"), "mp3");
    const double frame = (wanted.rate > 24000 ? 1152.0 : 576.0) / wanted.rate;
    EXPECT_NEAR(engine.media().duration(), length, frame);
    EXPECT_EQ(engine.media().durationString(), "00:0" + std::to_string(static_cast<int>(length)));
    const std::string bitRate = engine.media().getItemInfo("Bitrate");
    if (*wanted.bitRate != '\0') {
        EXPECT_EQ(bitRate, wanted.bitRate);
    } else {
        const double average = static_cast<double>(std::filesystem::file_size(path)) * 8 / length;
        constexpr double notSound = 2000 * 8; // bits of tags and of the frame that describes
        EXPECT_LE(std::stod(bitRate), average + 1000);
        EXPECT_GE(std::stod(bitRate), average - 1000 - notSound / length);
        EXPECT_TRUE(bitRate.ends_with("000")) << bitRate;
    }
    EXPECT_EQ(engine.media().getItemInfo("Title"), wanted.title);
    EXPECT_EQ(engine.media().getItemInfo("Genre"), wanted.genre);

    const Samples own = decoded(path);
    ASSERT_EQ(own.size(), samples.size());
    EXPECT_TRUE(own == samples);
}

INSTANTIATE_TEST_SUITE_P(All, Mp3Files, testing::ValuesIn(MP3_FILES),
                         [](const auto& tested) { return std::string(tested.param.name); });

// --- Other files -------------------------------------------------------------------------------

struct OtherFile {
    const char* name;
    std::function<bool(const std::string& path)> make;
    const char* fileType;
};

bool ffmpeg(const std::string& path, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.push_back(path);
    return support::run(command) == 0;
}

bool sound(const std::string& path, const std::vector<std::string>& format) {
    std::vector<std::string> arguments = {"anoisesrc=d=2"};
    arguments.insert(arguments.end(), format.begin(), format.end());
    return ffmpeg(path, arguments);
}

bool bytes(const std::string& path, const std::string& content) {
    writeFile(path, content);
    return true;
}

const OtherFile OTHER_FILES[] = {
    {"LayerTwo",
     [](auto& path) {
         return sound(path, {"-f", "mp2"});
     },
     "mp2"},
    {"LayerOne",
     [](auto& path) {
         return bytes(path, support::repeated(support::frameBytes({.layer = 1, .size = 312}), 40));
     },
     "mp1"},
    {"Wav",
     [](auto& path) {
         return sound(path, {"-f", "wav"});
     },
     "wav"},
    {"Ogg",
     [](auto& path) {
         return sound(path, {"-c:a", "libvorbis", "-f", "ogg"});
     },
     "ogg"},
    {"Flac",
     [](auto& path) {
         return sound(path, {"-f", "flac"});
     },
     "flac"},
    {"Mp4",
     [](auto& path) {
         return sound(path, {"-c:a", "aac", "-f", "ipod"});
     },
     "m4a"},
    {"Jpeg",
     [](auto& path) {
         return ffmpeg(path, {"testsrc=d=1", "-frames:v", "1", "-c:v", "mjpeg", "-f", "image2"});
     },
     "jpg"},
    {"Png",
     [](auto& path) {
         return ffmpeg(path, {"testsrc=d=1", "-frames:v", "1", "-c:v", "png", "-f", "image2"});
     },
     "png"},
    {"Pdf", [](auto& path) { return bytes(path, "%PDF-1.7\n" + support::randomBytes(100000)); },
     "pdf"},
    {"Zip", [](auto& path) { return bytes(path, "PK\3\4" + support::randomBytes(100000)); }, "zip"},
    {"Program", [](auto& path) { return std::filesystem::copy_file("/proc/self/exe", path); },
     "elf"},
    {"Text", [](auto& path) { return bytes(path, support::repeated("no music at all\n", 9999)); },
     "txt"},
    {"Empty", [](auto& path) { return bytes(path, ""); }, ""},
    {"Folder", [](auto& path) { return std::filesystem::create_directory(path); }, ""},
    {"Nothing", [](auto& path) { return !path.empty(); }, ""},
};

class OtherFiles : public testing::TestWithParam<OtherFile> {};

void PrintTo(const OtherFile& file, std::ostream* out) {
    *out << file.name;
}

TEST_P(OtherFiles, AreNotMp3WhateverTheirNameSays) {
    const support::TemporaryFolder folder;
    const std::string path = folder.file("music.mp3");
    ASSERT_TRUE(GetParam().make(path));
    EngineUnderTest engine;
    engine.open(path); // returns although the file can't be measured
    EXPECT_EQ(engine.media().getItemInfo("Filetype"), GetParam().fileType);
    EXPECT_EQ(engine.media().duration(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, OtherFiles, testing::ValuesIn(OTHER_FILES),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(OtherFiles, AFileWithoutPermissionIsNothing) {
    const support::TemporaryFolder folder;
    const std::string path = folder.file("music.mp3");
    ASSERT_TRUE(lame(path, {"-b", "128"}));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    const pid_t child = fork();
    if (child == 0) {
        // Root may read anything, so the child takes another user's rights.
        const bool dropped = geteuid() != 0 || setuid(65534) == 0;
        _exit(dropped && !detectFileKind(FileReader::open(path)).stream ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace

} // namespace zvonivec
