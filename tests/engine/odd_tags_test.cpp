// Tags that writers have got wrong or put in unusual places. mutagen's mid3v2 is the independent
// reader where it reads them at all.

#include "tests/engine/tags_test.h"

#include "engine/reading/file_kind.h"
#include "engine/tags/tag_text.h"

#include <filesystem>
#include <fstream>
#include <vector>

namespace zvonivec {

namespace {

using support::apeTag;

std::string syncSafe(std::size_t number) {
    std::string bytes;
    for (const unsigned shift : {21U, 14U, 7U, 0U}) {
        bytes += static_cast<char>(number >> shift & 0x7FU);
    }
    return bytes;
}

/// One frame of version 2.3 or 2.4, whose size counts the body.
std::string frame(int version, const std::string& id, const std::string& body, int flags = 0) {
    const auto size = static_cast<std::uint32_t>(body.size());
    return id + (version == 3 ? support::bigEndian(size) : syncSafe(size)) +
           support::bigEndian(static_cast<std::uint32_t>(flags), 2) + body;
}

std::string tag(int version, const std::string& frames, int flags = 0) {
    return std::string("ID3") + static_cast<char>(version) + '\0' + static_cast<char>(flags) +
           syncSafe(frames.size()) + frames;
}

/// A tag of version 2.4 for the end of a file.
std::string tagWithFooter(const std::string& frames) {
    std::string footer = tag(4, frames, 0x10).substr(0, 10);
    footer.replace(0, 3, "3DI");
    return tag(4, frames, 0x10) + footer;
}

std::string title(int version, const std::string& text = "Titul") {
    return frame(version, "TIT2", LATIN1 + text);
}

std::string lyrics3(const std::string& text) {
    const std::string body = "LYRICSBEGIN" + text;
    std::string size = std::to_string(body.size());
    return body + std::string(6 - size.size(), '0') + size + "LYRICS200";
}

struct OddTag {
    const char* name;
    std::string before;
    std::string after;
    TrackTags expected;
    bool agreed = true; ///< whether mid3v2 reads the same title
};

const std::string BLANK_FRAME_ID = frame(4, "TP 1", LATIN1 + "x");

const std::vector<OddTag> ODD_TAGS = {
    {"EmptyFrame", tag(3, frame(3, "TENC", "") + title(3)), "", {.title = "Titul"}},
    {"EmptyFrameOfVersion4", tag(4, frame(4, "TENC", "") + title(4)), "", {.title = "Titul"}},
    {"EmptyAddress", tag(3, frame(3, "WOAR", "") + title(3)), "", {.title = "Titul"}},
    {"EmptyCopyright", tag(4, frame(4, "TCOP", "") + title(4)), "", {.title = "Titul"}},
    {"EmptyTitleFirst",
     tag(3, frame(3, "TIT2", "") + frame(3, "TPE1", LATIN1 + "Autor")),
     "",
     {.author = "Autor"}},
    {"TitleThatIsAnEncodingAlone",
     tag(3, frame(3, "TIT2", LATIN1) + frame(3, "TPE1", LATIN1 + "Autor")),
     "",
     {.author = "Autor"}},
    {"LengthFlagOnOneByte", tag(4, frame(4, "TENC", "x", 1) + title(4)), "", {.title = "Titul"}},
    {"NameInLowerCase",
     tag(3, frame(3, "tenc", LATIN1 + "x") + title(3)),
     "",
     {.title = "Titul"},
     false},
    {"NameWithABlank", tag(4, BLANK_FRAME_ID + title(4)), "", {.title = "Titul"}, false},
    {"NameOfVersion2InVersion3",
     tag(3, frame(3, std::string("TT2\0", 4), LATIN1 + "Titul")),
     "",
     {.title = "Titul"},
     false},
    {"PlainSizesInVersion4",
     tag(4, std::string("TXXX") + support::bigEndian(300) + std::string(2, '\0') +
                std::string(300, 'x') + title(4)),
     "",
     {.title = "Titul"}},
    {"YearOfVersion3InVersion4",
     tag(4, frame(4, "TYER", LATIN1 + "2004")),
     id3v1("", "", "", "1337", "", 255),
     {.year = "2004"}},
    {"RecordingBeforeYear",
     tag(4, frame(4, "TDRL", LATIN1 + "2003") + frame(4, "TYER", LATIN1 + "2002") +
                frame(4, "TDRC", LATIN1 + "2001-05-06")),
     "",
     {.year = "2001"}},
    {"YearBeforeRelease",
     tag(4, frame(4, "TDRL", LATIN1 + "2003") + frame(4, "TYER", LATIN1 + "2002")),
     "",
     {.year = "2002"}},
    {"ReleaseBeforeOriginal",
     tag(4, frame(4, "TDOR", LATIN1 + "1999") + frame(4, "TDRL", LATIN1 + "2003")),
     "",
     {.year = "2003"}},
    {"OriginalYearAlone", tag(3, frame(3, "TORY", LATIN1 + "1999")), "", {.year = "1999"}},
    {"YearThatIsNone",
     tag(4, frame(4, "TDRC", LATIN1 + "rok")),
     id3v1("", "", "", "\xFE\xFF", "", 255),
     {}},
    {"YearOfFiveDigits", tag(4, frame(4, "TDRC", LATIN1 + "20041")), "", {}},
    {"Utf8CutAtByte30",
     "",
     id3v1(std::string("Příliš žluťoučký kůň úpěl ď").substr(0, 30), "", "", "", "", 255),
     {.title = "Příliš žluťoučký kůň"},
     false},
    {"Utf8CutInAFrame",
     tag(3, title(3, std::string("Příliš žluťoučký kůň").substr(0, 26))),
     "",
     {.title = "Příliš žluťoučký k"},
     false},
    {"VersionToCome",
     tag(5, title(4)),
     id3v1("Stará", "", "", "", "", 255),
     {.title = "Stará"},
     false},
    {"VersionThatNeverWas",
     tag(1, frame(3, "TIT2", LATIN1 + "Titul")),
     id3v1("Stará", "", "", "", "", 255),
     {.title = "Stará"},
     false},
    {"AppendedWithFooter", "", tagWithFooter(title(4)), {.title = "Titul"}, false},
    {"AppendedBehindApe",
     "",
     apeTag({{"Artist", "Autor"}}) + tagWithFooter(title(4)),
     {.author = "Autor", .title = "Titul"},
     false},
    {"AppendedBeforeId3v1",
     "",
     tagWithFooter(title(4)) + id3v1("x", "Autor", "", "", "", 255),
     {.author = "Autor", .title = "Titul"},
     false},
    {"ApeAtTheStart", apeTag({{"Title", "Titul"}}), "", {.title = "Titul"}, false},
    {"ApeBeforeLyrics",
     "",
     apeTag({{"Title", "Titul"}}) + lyrics3("IND00002") + id3v1("x", "Autor", "", "", "", 255),
     {.author = "Autor", .title = "Titul"},
     false},
    {"SecondTagBehindAnEmptyOne",
     tag(3, std::string(20, '\0')) + tag(4, title(4)),
     "",
     {.title = "Titul"},
     false},
    {"ExtendedHeaderOfVersion3",
     tag(3, support::bigEndian(6) + std::string(6, '\0') + title(3), 0x40),
     "",
     {.title = "Titul"}},
    {"ExtendedHeaderOfVersion4",
     tag(4, syncSafe(6) + std::string("\1\0", 2) + title(4), 0x40),
     "",
     {.title = "Titul"}},
    {"Utf16WithoutMark",
     tag(3, frame(3, "TIT2", UTF16 + utf16Of(u"Kůň").substr(2))),
     "",
     {.title = "Kůň"}},
    {"Utf16BigEndianWithoutMark",
     tag(3, frame(3, "TIT2", UTF16 + std::string("\0K\1\x6F\1\x48", 6))),
     "",
     {.title = "Kůň"},
     false},
    {"Utf16BigEndianLetterWithoutMark",
     tag(3, frame(3, "TIT2", UTF16 + std::string("\0K", 2))),
     "",
     {.title = "K"},
     false},
    {"GroupedInVersion3",
     tag(3, frame(3, "TIT2", "g" + LATIN1 + "Titul", 0x20)),
     "",
     {.title = "Titul"},
     false},
    {"GroupedInVersion4",
     tag(4, frame(4, "TIT2", "g" + LATIN1 + "Titul", 0x40)),
     "",
     {.title = "Titul"},
     false},
    {"SeveralFrames",
     tag(4, title(4, "A") + frame(4, "TPE1", LATIN1 + "P") + title(4, "B")),
     "",
     {.author = "P", .title = "A / B"}},
    {"NoGenre", tag(3, frame(3, "TCON", LATIN1 + "(255)")), "", {}},
    {"NoGenreNumber", tag(4, frame(4, "TCON", LATIN1 + "255")), "", {}},
    {"UnsynchronisedVersion3",
     tag(3,
         frame(3, "PRIV", "\xFF\xFB").insert(11, 1, '\0') +
             frame(3, "TIT2", UTF16 + utf16Of(u"Kůň")).insert(12, 1, '\0'),
         0x80),
     "",
     {.title = "Kůň"}},
    {"UnsynchronisedFrameOfVersion4",
     tag(4, frame(4, "TIT2", UTF16 + std::string("\xFF\0\xFE", 3) + utf16Of(u"Kůň").substr(2), 2)),
     "",
     {.title = "Kůň"}},
};

class OddTags : public testing::TestWithParam<OddTag> {
protected:
    /// The title that mid3v2 prints; several values are joined as ours are.
    [[nodiscard]] std::string titleByMutagen(const std::string& path) const {
        support::Process::Options options;
        options.environment = {{"LC_ALL", "C.UTF-8"}};
        options.outputFile = folder.file("mutagen");
        support::run({"mid3v2", "-l", path}, options);
        const std::string output = "\n" + support::readFile(options.outputFile);
        std::string title;
        for (std::size_t at = output.find("\nTIT2="); at != std::string::npos;
             at = output.find("\nTIT2=", at + 1)) {
            const std::size_t begin = at + 6;
            title += (title.empty() ? "" : " / ") +
                     output.substr(begin, output.find('\n', begin) - begin);
        }
        return title;
    }

    support::TemporaryFolder folder;
};

void PrintTo(const OddTag& row, std::ostream* out) {
    *out << row.name;
}

TEST_P(OddTags, AreRead) {
    const OddTag& row = GetParam();
    const std::string path = folder.file("file.mp3");
    support::writeFile(path, row.before + FRAMES + row.after);
    const TrackTags tags = readTags(FileReader::open(path));
    EXPECT_EQ(tags.author, row.expected.author);
    EXPECT_EQ(tags.title, row.expected.title);
    EXPECT_EQ(tags.album, row.expected.album);
    EXPECT_EQ(tags.description, row.expected.description);
    EXPECT_EQ(tags.genre, row.expected.genre);
    EXPECT_EQ(tags.year, row.expected.year);
    if (row.agreed) {
        EXPECT_EQ(titleByMutagen(path), row.expected.title);
    }
    // The file is MP3 all the same, and its tags aren't taken for sound.
    const FileKind kind = detectFileKind(FileReader::open(path));
    ASSERT_TRUE(kind.stream);
    EXPECT_EQ(kind.stream->begin, row.before.size());
    EXPECT_EQ(kind.stream->end, row.before.size() + FRAMES.size());
}

INSTANTIATE_TEST_SUITE_P(All, OddTags, testing::ValuesIn(ODD_TAGS),
                         [](const auto& tested) { return std::string(tested.param.name); });

/// Reading tags takes no time and no memory, whatever they claim.
class LargeTags : public Tags {
protected:
    TrackTags readCheaply(const std::string& path) {
        const auto file = FileReader::open(path);
        const std::size_t before = peakMemory(true);
        const support::ProcessorTime time;
        TrackTags tags = readTags(file);
        EXPECT_LT(time.seconds(), 0.02);
        EXPECT_LT(static_cast<double>(peakMemory(false) - before) / 1e6, 4 * support::SLOWNESS);
        return tags;
    }

    /// A file whose tag ends with a picture of so many bytes and, behind it, a title.
    std::string fileWithPicture(std::size_t size) {
        std::string path = folder.file("picture");
        const auto whole = static_cast<std::uint32_t>(size);
        const std::string head = frame(3, "TPE1", LATIN1 + "Autor") + "APIC" +
                                 support::bigEndian(whole) + std::string(2, '\0');
        const std::string tail = title(3);
        support::writeFile(path, std::string("ID3\3\0\0", 6) +
                                     syncSafe(head.size() + size + tail.size()) + head);
        std::filesystem::resize_file(path, std::filesystem::file_size(path) + size);
        std::ofstream(path, std::ios::app | std::ios::binary) << tail << FRAMES;
        return path;
    }
};

TEST_F(LargeTags, APictureOf240MegabytesIsSkipped) {
    const TrackTags tags = readCheaply(fileWithPicture(240'000'000));
    EXPECT_EQ(tags.author, "Autor");
    EXPECT_EQ(tags.title, "Titul");
}

TEST_F(LargeTags, AMillionTinyFramesAreSkipped) {
    for (const int version : {3, 4}) {
        support::writeFile(
            folder.file("tiny"),
            tag(version,
                title(version) + support::repeated(frame(version, "TXXX", "abcd"), 1'000'000)) +
                FRAMES);
        EXPECT_EQ(readCheaply(folder.file("tiny")).title, "Titul") << version;
    }
}

TEST_F(LargeTags, ManyTitlesAreReadUpToALimit) {
    support::writeFile(folder.file("titles"),
                       tag(4, support::repeated(title(4, std::string(1000, 'x')), 200'000)) +
                           FRAMES);
    EXPECT_EQ(readCheaply(folder.file("titles")).title.size(), TAG_TEXT_LIMIT);
}

TEST_F(LargeTags, AnUnsynchronisedPictureIsSkipped) {
    const std::string noise = support::repeated(std::string("\xFF\0x", 3), 1'000'000);
    support::writeFile(folder.file("noise"),
                       tag(3,
                           title(3) + "APIC" + support::bigEndian(2'000'000) +
                               std::string(2, '\0') + noise + frame(3, "TPE1", LATIN1 + "Autor"),
                           0x80) +
                           FRAMES);
    EXPECT_EQ(readCheaply(folder.file("noise")).author, "Autor");
}

TEST_F(LargeTags, AFileWithoutThemIsNotSearched) {
    // TagLib took half a second to search ten megabytes for them.
    const std::string path = folder.file("free");
    support::writeFile(
        path, support::repeated(support::frameBytes({.bitRateIndex = 0, .size = 1200}), 10'000) +
                  id3v1("Titul", "", "", "", "", 255));
    EXPECT_EQ(readCheaply(path).title, "Titul");
}

} // namespace

} // namespace zvonivec
