// Kinds of files are recognised by content: every file here has a misleading name.

#include "engine/reading/file_kind.h"

#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace zvonivec {

namespace {

using support::frameBytes;
using support::FrameShape;
using support::repeated;

class FileKindOf : public testing::Test {
protected:
    FileKind kindOf(const std::string& content) {
        const std::string path = folder.file("file.mp3");
        support::writeFile(path, content);
        return detectFileKind(FileReader::open(path));
    }
    std::string extensionOf(const std::string& content) { return kindOf(content).extension; }

    support::TemporaryFolder folder;
};

TEST_F(FileKindOf, LayerThreeIsMp3) {
    struct Row {
        const char* what;
        std::string content;
    };
    const std::string frames = repeated(frameBytes({}), 20);
    const FrameShape free = {.bitRateIndex = 0, .size = 700};
    const std::vector<Row> rows = {
        {"MPEG-1", frames},
        {"MPEG-2", repeated(frameBytes({.version = 2, .bitRateIndex = 8, .size = 208}), 20)},
        {"MPEG-2.5",
         repeated(frameBytes({.version = 25, .bitRateIndex = 1, .sampleRateIndex = 2, .size = 72}),
                  20)},
        {"mono", repeated(frameBytes({.mono = true}), 20)},
        {"with checksums", repeated(frameBytes({.crc = true}), 20)},
        {"free format", repeated(frameBytes(free), 20)},
        {"one frame", frameBytes({})},
        {"two frames", repeated(frameBytes({}), 2)},
        {"two frames and a half", repeated(frameBytes({}), 2) + frameBytes({}).substr(0, 200)},
        {"one frame and a tag", frameBytes({}) + support::id3v1("t", "a", "b", "1999", "c", 17)},
        {"ID3v1", frames + support::id3v1("t", "a", "b", "1999", "c", 17)},
        {"APE", frames + support::apeTag({{"Title", "t"}})},
        {"APE in front", support::apeTag({{"Title", "t"}}) + frames},
        {"APE and ID3v1", frames + support::apeTag({{"Title", "t"}}) +
                              support::id3v1("t", "a", "b", "1999", "c", 17)},
        {"ID3v2", support::id3v2(4, {{"TIT2", "\3t"}}) + frames},
        {"two of ID3v2",
         repeated(support::id3v2(3, {{"TIT2", std::string("\0t", 2)}}, 50), 2) + frames},
        {"ID3v2 of 20 MB", support::id3v2(3, {}, 20 << 20) + frames},
        {"ID3v2 that claims too much", support::id3v2(3, {}, 1000000).substr(0, 10) + frames},
        {"ID3v2 and NULs", support::id3v2(3, {}, 100) + std::string(5000, '\0') + frames},
        {"junk of 64 KiB", support::randomBytes(65536) + frames},
        {"RIFF of the kind RMP3",
         "RIFF" + support::littleEndian(9000) + "RMP3data" + support::littleEndian(8340) + frames},
        {"text in front", "ICY 200 OK\r\n\r\n" + frames},
    };
    for (const Row& row : rows) {
        const FileKind kind = kindOf(row.content);
        EXPECT_EQ(kind.extension, "mp3") << row.what;
        EXPECT_TRUE(kind.stream) << row.what;
    }
}

TEST_F(FileKindOf, TheStreamIsFoundWhereItIs) {
    const std::string tag = support::id3v2(3, {}, 300);
    const std::string frames = repeated(frameBytes({}), 20);
    const std::string end =
        support::apeTag({{"Title", "t"}}) + support::id3v1("", "", "", "", "", 1);
    const FileKind kind = kindOf(tag + "junk" + frames + end);
    ASSERT_TRUE(kind.stream);
    EXPECT_EQ(kind.stream->begin, tag.size() + 4);
    EXPECT_EQ(kind.stream->end, tag.size() + 4 + frames.size());
    EXPECT_EQ(
        kindOf(repeated(frameBytes({.bitRateIndex = 0, .size = 700}), 20)).stream->freeFormatSize,
        700U);
}

TEST_F(FileKindOf, RealEncodersFilesAreMp3) {
    const std::string path = folder.file("encoded");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"-b", "128"},
                                                      {"-V", "2"},
                                                      {"-t", "-b", "320"},
                                                      {"--freeformat", "-b", "400"},
                                                      {"--resample", "8", "-m", "m", "-b", "8"},
                                                      {"-m", "m", "--resample", "24"},
                                                      {"-b", "64", "-p"},
                                                      {"--id3v2-only", "--tt", "x"}}) {
        ASSERT_TRUE(support::encodeNoise(path, 1, arguments));
        EXPECT_EQ(detectFileKind(FileReader::open(path)).extension, "mp3") << arguments.front();
    }
    ASSERT_TRUE(support::encodeNoise(path, 0.01, {"-b", "128"}));
    EXPECT_EQ(detectFileKind(FileReader::open(path)).extension, "mp3") << "a few frames";
}

TEST_F(FileKindOf, OtherLayersAreNot) {
    EXPECT_EQ(extensionOf(repeated(frameBytes({.layer = 2, .bitRateIndex = 10, .size = 626}), 20)),
              "mp2");
    EXPECT_EQ(extensionOf(repeated(frameBytes({.layer = 1, .bitRateIndex = 12, .size = 416}), 20)),
              "mp1");
}

TEST_F(FileKindOf, OtherKindsAreNotEvenWithFramesInside) {
    const std::string frames = repeated(frameBytes({}), 20);
    struct Row {
        std::string content;
        const char* extension;
    };
    const std::vector<Row> rows = {
        {"RIFF" + support::littleEndian(100000) + "WAVEfmt " + frames, "wav"},
        {"OggS" + frames, "ogg"},
        {"fLaC", "flac"},
        {"fLaC" + frames, "flac"},
        {support::id3v2(3, {}, 100) + "fLaC" + frames, "flac"},
        {std::string(3, '\0') + " ftypisom" + frames, "mp4"},
        {std::string(3, '\0') + " ftypM4A " + frames, "m4a"},
        {"\xFF\xD8\xFF\xE0" + frames, "jpg"},
        {"\x89PNG\r\n\x1A\n" + frames, "png"},
        {"%PDF-1.4\n" + frames, "pdf"},
        {"riff\x2E\x91\xCF\x11" + std::string(32, '\0') + frames, "w64"},
        {"!<arch>\ndebian-binary   " + frames, "deb"},
        {"!<arch>\nmusic.o/        " + frames, "a"},
        {std::string("\0\0\0\x18styp", 8) + frames, "m4s"},
        {std::string("\0\0\0\x18moof", 8) + frames, "m4s"},
        {std::string("\0\0\0\x18sidx", 8) + frames, "m4s"},
        {"PK\x03\x04" + frames, "zip"},
        {"\x7F"
         "ELF" +
             frames,
         "elf"},
        {"Příliš žluťoučký kůň\n", "txt"},
        {"<!DOCTYPE html><p>", "html"},
        {std::string(5000, '\0'), ""},
        {std::string(70000, '\xFF'), ""},
        {std::string(1, '\xFF'), ""},
        {"", ""},
        {support::id3v2(3, {}, 100), ""},
    };
    for (const Row& row : rows) {
        const FileKind kind = kindOf(row.content);
        EXPECT_EQ(kind.extension, row.extension) << row.content.substr(0, 12);
        EXPECT_FALSE(kind.stream);
    }
}

TEST_F(FileKindOf, ChanceSyncWordsDontPass) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        EXPECT_NE(extensionOf(support::randomBytes(200000, seed)), "mp3") << seed;
    }
    // One, two and three frames within other bytes.
    for (std::size_t count = 1; count <= 3; ++count) {
        EXPECT_NE(extensionOf(std::string(100, '\1') + repeated(frameBytes({}), count) +
                              std::string(2000, '\1')),
                  "mp3")
            << count;
    }
    // Frames that don't agree.
    std::string mixed;
    for (int i = 0; i < 10; ++i) {
        mixed += frameBytes({}) + frameBytes({.sampleRateIndex = 1, .size = 384});
    }
    EXPECT_NE(extensionOf(mixed), "mp3");
    // A valid header at the place of every frame, each followed by noise.
    std::string nonsense;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        nonsense += frameBytes({}).substr(0, 4) + support::randomBytes(413, seed);
    }
    EXPECT_NE(extensionOf(nonsense), "mp3");
}

TEST_F(FileKindOf, FramesFarAwayAreFound) {
    const std::string frames = repeated(frameBytes({}), 100);
    struct Row {
        const char* what;
        std::string before;
    };
    const std::vector<Row> rows = {
        {"66 kB of noise", support::randomBytes(66'000)},
        {"100 kB of zeros", std::string(100'000, '\0')},
        {"1 MB of zeros", std::string(1'000'000, '\0')},
        {"2 MB of zeros", std::string(2'000'000, '\0')},
        {"2 MB of noise", support::randomBytes(2'000'000)},
        {"a picture that overruns its tag",
         support::id3v2(3, {{"APIC", support::randomBytes(1000)}}) + support::randomBytes(200'000)},
    };
    for (const Row& row : rows) {
        const FileKind kind = kindOf(row.before + frames);
        EXPECT_EQ(kind.extension, "mp3") << row.what;
        ASSERT_TRUE(kind.stream) << row.what;
        EXPECT_EQ(kind.stream->begin, row.before.size()) << row.what;
    }
}

TEST_F(FileKindOf, FramesFarAwayNeedALongerRun) {
    EXPECT_EQ(extensionOf(std::string(1'000'000, '\0') + repeated(frameBytes({}), 10)), "");
    EXPECT_EQ(extensionOf(std::string(1'000'000, '\0') + repeated(frameBytes({}), 10) +
                          std::string(2000, '\0')),
              "");
    EXPECT_EQ(extensionOf(std::string(4 << 20, '\0') + repeated(frameBytes({}), 1000)), "")
        << "too far";
    const std::string frames = repeated(frameBytes({}), 100);
    EXPECT_EQ(extensionOf("MZ" + std::string(100'000, '\0') + frames), "exe");
    EXPECT_EQ(extensionOf(repeated("text\n", 20'000) + frames), "txt");
}

TEST_F(FileKindOf, NoiseTakesNoTime) {
    support::writeFile(folder.file("noise"), support::randomBytes(10 << 20));
    const auto file = FileReader::open(folder.file("noise"));
    const support::ProcessorTime time;
    EXPECT_EQ(detectFileKind(file).extension, "");
    RecordProperty("microseconds", static_cast<int>(time.seconds() * 1e6));
    EXPECT_LT(time.seconds(), 0.01);
}

TEST_F(FileKindOf, HostileFilesTakeNoTime) {
    const support::ProcessorTime time;
    extensionOf(repeated("\xFF\xFB\x90\x40", 200000));               // nothing but headers
    extensionOf(repeated(std::string("\xFF\xFB\0\x40", 4), 200000)); // the same in free format
    extensionOf(repeated("ID3\3" + std::string(6, '\0'), 100000));   // nothing but tags
    EXPECT_LT(time.seconds(), 1);
}

TEST_F(FileKindOf, WhatCantBeReadIsNothing) {
    EXPECT_EQ(FileReader::open(folder.file("nothing.mp3")), nullptr);
    EXPECT_EQ(FileReader::open(folder.path()), nullptr) << "a folder";
    EXPECT_EQ(FileReader::open(""), nullptr);
    EXPECT_EQ(FileReader::open("/dev/zero"), nullptr) << "a device";
    const std::string pipe = folder.file("pipe.mp3");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(FileReader::open(pipe), nullptr) << "a pipe that nobody writes to";
    if (geteuid() != 0) { // root may read everything
        const std::string secret = folder.file("secret.mp3");
        support::writeFile(secret, repeated(frameBytes({}), 20));
        ASSERT_EQ(chmod(secret.c_str(), 0), 0);
        EXPECT_EQ(FileReader::open(secret), nullptr);
    }
    EXPECT_EQ(detectFileKind(nullptr).extension, "");
}

} // namespace

} // namespace zvonivec
