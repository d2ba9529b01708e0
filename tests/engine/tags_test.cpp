#include "engine/tags.h"

#include "engine/tag_text.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"

#include <gtest/gtest.h>
#include <string>

namespace zvonivec {

namespace {

using support::id3v1;
using support::id3v2;

const std::string frames = support::repeated(support::frameBytes({}), 20);
const std::string horse = "Příliš žluťoučký kůň";
const std::string horse1250 = "P\xF8\xEDli\x9A \x9Elu\x9Dou\xE8k\xFD k\xF9\xF2";
const std::string latin1(1, '\0');
const std::string languageEnglish("\0eng\0", 5);
const std::string utf16("\1", 1);
const std::string utf8("\3", 1);

std::string utf16Of(const std::u16string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes += support::littleEndian(unit, 2);
    }
    return bytes;
}

/// Packed bits, as deflate has them: from the lowest of each byte on.
class BitWriter {
public:
    /// A Huffman code, whose highest bit comes first.
    void code(unsigned bits, unsigned count) {
        while (count != 0) {
            const unsigned bit = bits >> --count & 1U;
            current_ |= bit << used_;
            if (++used_ == 8) {
                bytes_ += static_cast<char>(current_);
                current_ = used_ = 0;
            }
        }
    }
    std::string finish() {
        while (used_ != 0) {
            code(0, 1);
        }
        return std::move(bytes_);
    }

private:
    std::string bytes_;
    unsigned current_ = 0;
    unsigned used_ = 0;
};

/// A zlib stream that inflates to some letters, in hardly any room. Its checksum is wrong, which is
/// found out when it has been inflated.
std::string bomb(std::size_t letters) {
    BitWriter bits;
    bits.code(0b110, 3);      // the last block, with the fixed codes
    bits.code(0x30 + 'x', 8); // the letter
    for (std::size_t done = 1; done < letters; done += 258) {
        bits.code(0b11000101, 8); // 258 times more
        bits.code(0, 5);          // the letter before
    }
    bits.code(0, 7); // the end
    return "\x78\x01" + bits.finish() + std::string(4, '\0');
}

/// A zlib stream of some text as it is.
std::string stored(const std::string& text) {
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const char byte : text) {
        a = (a + static_cast<unsigned char>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    const auto size = static_cast<std::uint32_t>(text.size());
    return "\x78\x01\x01" + support::littleEndian(size, 2) +
           support::littleEndian(~size & 0xFFFFU, 2) + text + support::bigEndian(b << 16U | a);
}

/// A tag of frames that say that they are compressed and how long they are otherwise.
std::string compressedId3v2(int version,
                            const std::vector<std::pair<std::string, std::string>>& zlibFrames,
                            std::uint32_t statedSize) {
    std::vector<std::pair<std::string, std::string>> all;
    all.reserve(zlibFrames.size());
    for (const auto& [id, data] : zlibFrames) {
        all.emplace_back(id, support::bigEndian(statedSize) + data);
    }
    std::string tag = id3v2(version, all);
    std::size_t at = 10;
    for (const auto& [id, data] : all) {
        tag[at + 9] = version == 3 ? '\x80' : '\x09';
        at += 10 + data.size();
    }
    return tag;
}

/// The most memory that the process has had, in bytes; reset forgets what was.
std::size_t peakMemory(bool reset) {
    if (reset) {
        support::writeFile("/proc/self/clear_refs", "5");
    }
    const std::string status = support::readFile("/proc/self/status");
    const std::size_t at = status.find("VmHWM:");
    return at == std::string::npos ? 0 : std::stoul(status.substr(at + 6)) * 1024;
}

class Tags : public testing::Test {
protected:
    TrackTags tagsOf(const std::string& content) {
        support::writeFile(folder.file("file"), content);
        return readTags(FileReader::open(folder.file("file")));
    }
    support::TemporaryFolder folder;
};

TEST(TagText, latin1ClaimsAreUtf8OrWindows1250) {
    EXPECT_EQ(textFromLatin1Claim("plain"), "plain");
    EXPECT_EQ(textFromLatin1Claim(horse), horse);
    EXPECT_EQ(textFromLatin1Claim(horse1250), horse);
    EXPECT_EQ(textFromLatin1Claim("\x8A\x8D\x8E\xD8\x84"), "ŠŤŽŘ„");
    EXPECT_EQ(textFromLatin1Claim("\xC4\x8D\xE8"), "Ä\xC5\xA4\xC4\x8D") << "not all of it is UTF-8";
    EXPECT_EQ(textFromLatin1Claim(std::string("end\0rest", 8)), "end");
    EXPECT_EQ(textFromLatin1Claim(""), "");
}

TEST(TagText, tidyTextIsOneLine) {
    EXPECT_EQ(tidyText("  padded \t "), "padded");
    EXPECT_EQ(tidyText("one\r\ntwo\tthree"), "one two three");
    EXPECT_EQ(tidyText(std::string("a\0b\x01\x1B\x7F", 6)), "ab");
    EXPECT_EQ(tidyText("\xC2\x85x\xC2\x9By\xE2\x80\xA8z"), "xy z");
    EXPECT_EQ(tidyText("two  blanks"), "two  blanks");
    EXPECT_EQ(tidyText("bad \xFF\xC3 bytes \xED\xA0\x80"), "bad  bytes");
    EXPECT_EQ(tidyText(horse), horse);
    EXPECT_EQ(tidyText("<b>&amp;</b>"), "<b>&amp;</b>");
    EXPECT_EQ(tidyText("   "), "");
}

TEST(TagText, tidyTextIsCutAtACharacter) {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "ž";
    }
    EXPECT_EQ(tidyText(text), text.substr(0, 2 * tagTextLimit));
    EXPECT_EQ(tidyText("a" + std::string(1000000, ' ') + "b"), "a");
}

TEST_F(Tags, noneIsNothing) {
    const TrackTags tags = tagsOf(frames);
    EXPECT_EQ(tags.author + tags.title + tags.album + tags.description + tags.genre + tags.year,
              "");
}

TEST_F(Tags, ofTheFirstKind) {
    const TrackTags tags =
        tagsOf(frames + id3v1(horse1250, "Umělec", "Album  ", "1999", "Poznámka", 17));
    EXPECT_EQ(tags.title, horse);
    EXPECT_EQ(tags.author, "Umělec");
    EXPECT_EQ(tags.album, "Album");
    EXPECT_EQ(tags.year, "1999");
    EXPECT_EQ(tags.description, "Poznámka");
    EXPECT_EQ(tags.genre, "Rock");
    // With the number of the track.
    const std::string comment = std::string("Poznámka").append(19, '\0') + '\7';
    EXPECT_EQ(tagsOf(frames + id3v1("t", "", "", "", comment, 17)).description, "Poznámka");
}

TEST_F(Tags, id3v2OfAllVersions) {
    for (const int version : {3, 4}) {
        const TrackTags tags =
            tagsOf(id3v2(version, {{"TIT2", latin1 + horse1250},
                                   {"TPE1", utf16 + utf16Of(u"Kůň")},
                                   {"TALB", latin1 + horse},
                                   {version == 3 ? "TYER" : "TDRC", latin1 + "2004"},
                                   {"COMM", languageEnglish + "Popis"},
                                   {"TCON", latin1 + (version == 3 ? "(17)" : "17")}}) +
                   frames);
        EXPECT_EQ(tags.title, horse) << version;
        EXPECT_EQ(tags.author, "Kůň") << version;
        EXPECT_EQ(tags.album, horse) << version;
        EXPECT_EQ(tags.year, "2004") << version;
        EXPECT_EQ(tags.description, "Popis") << version;
        EXPECT_EQ(tags.genre, "Rock") << version;
    }
    const TrackTags old = tagsOf(id3v2(2, {{"TT2", latin1 + horse1250},
                                           {"TP1", latin1 + "A"},
                                           {"TAL", latin1 + "B"},
                                           {"TYE", latin1 + "1997"},
                                           {"COM", languageEnglish + "C"},
                                           {"TCO", latin1 + "(8)"}}) +
                                 frames);
    EXPECT_EQ(old.title, horse);
    EXPECT_EQ(old.author, "A");
    EXPECT_EQ(old.album, "B");
    EXPECT_EQ(old.year, "1997");
    EXPECT_EQ(old.description, "C");
    EXPECT_EQ(old.genre, "Jazz");
}

TEST_F(Tags, apeTags) {
    const TrackTags tags = tagsOf(frames + support::apeTag({{"Title", horse},
                                                            {"Artist", "A"},
                                                            {"Album", "B"},
                                                            {"Year", "2001"},
                                                            {"Comment", "C"},
                                                            {"Genre", "17"}}));
    EXPECT_EQ(tags.title, horse);
    EXPECT_EQ(tags.author, "A");
    EXPECT_EQ(tags.album, "B");
    EXPECT_EQ(tags.year, "2001");
    EXPECT_EQ(tags.description, "C");
    EXPECT_EQ(tags.genre, "Rock");
}

TEST_F(Tags, theBestSourceOfEachAttributeCounts) {
    const TrackTags tags = tagsOf(id3v2(4, {{"TIT2", utf8 + "two"}, {"TPE1", utf8 + "  "}}) +
                                  frames + support::apeTag({{"Title", "ape"}, {"Album", "ape"}}) +
                                  id3v1("one", "one", "one", "1999", "", 255));
    EXPECT_EQ(tags.title, "two");
    EXPECT_EQ(tags.album, "ape");
    EXPECT_EQ(tags.author, "one");
    EXPECT_EQ(tags.year, "1999");
    EXPECT_EQ(tags.genre, "");
}

TEST_F(Tags, genresAndDatesAndSeveralValues) {
    const auto genre = [&](const std::string& text) {
        return tagsOf(id3v2(4, {{"TCON", utf8 + text}}) + frames).genre;
    };
    EXPECT_EQ(genre("17"), "Rock");
    EXPECT_EQ(genre("Dechovka"), "Dechovka");
    EXPECT_EQ(genre("(17)Rock"), "Rock");
    EXPECT_EQ(genre("(4)Eurodisco"), "Disco, Eurodisco");
    EXPECT_EQ(genre("999"), "999");
    EXPECT_EQ(genre(std::string("17\0Punk", 7)), "Rock, Punk");
    const TrackTags tags = tagsOf(
        id3v2(4, {{"TDRC", utf8 + "2004-05-01T10:00"}, {"TPE1", utf8 + std::string("A\0B", 3)}}) +
        frames);
    EXPECT_EQ(tags.year, "2004");
    EXPECT_EQ(tags.author, "A, B");
}

TEST_F(Tags, genresInEveryWriting) {
    struct Row {
        std::string text;
        std::string genre;
    };
    const std::vector<Row> rows = {
        {"17", "Rock"},
        {"(17)", "Rock"},
        {"(17)Foo", "Rock, Foo"},
        {"(17) Foo", "Rock, Foo"},
        {"(17)Rock", "Rock"},
        {"(17)(8)", "Rock, Jazz"},
        {"(17)(8)Foo", "Rock, Jazz, Foo"},
        {"(RX)", "Remix"},
        {"(CR)", "Cover"},
        {"RX", "Remix"},
        {"CR", "Cover"},
        {"(RX)(17)", "Remix, Rock"},
        {"(17)((Foo)", "Rock, (Foo)"},
        {"((Foo)", "(Foo)"},
        {"(Alt) Rock", "(Alt) Rock"},
        {"(17)(Alt) Rock", "Rock, (Alt) Rock"},
        {"Rock (Alt)", "Rock (Alt)"},
        {"Alt (17)", "Alt (17)"},
        {"(Alt)", "(Alt)"},
        {"(999)", "(999)"},
        {"(1 7)", "(1 7)"},
        {"()", "()"},
        {"(", "("},
        {"(17", "(17"},
        {"Rock", "Rock"},
        {"rx", "rx"},
        {"17th century", "17th century"},
        {"0", "Blues"},
        {"(0)", "Blues"},
    };
    for (const Row& row : rows) {
        for (const int version : {2, 3, 4}) {
            const std::string tag =
                id3v2(version, {{version == 2 ? "TCO" : "TCON", latin1 + row.text}});
            EXPECT_EQ(tagsOf(tag + frames).genre, row.genre) << row.text << ", " << version;
        }
        EXPECT_EQ(tagsOf(frames + support::apeTag({{"Genre", row.text}})).genre, row.genre)
            << row.text;
    }
}

TEST_F(Tags, aProgramsOwnCommentIsNoDescription) {
    const TrackTags tags = tagsOf(id3v2(3, {{"COMM", latin1 + "engiTunNORM" + latin1 + " 0000"},
                                            {"COMM", latin1 + "engnote" + latin1 + "second"},
                                            {"COMM", languageEnglish + "first"}}) +
                                  frames);
    EXPECT_EQ(tags.description, "first");
}

TEST_F(Tags, hostileTagsAreHarmless) {
    const std::string huge(5000000, 'x');
    EXPECT_EQ(tagsOf(id3v2(4, {{"TIT2", utf8 + huge}}) + frames).title.size(), tagTextLimit);
    // Random bytes where frames should be, and in their texts.
    for (unsigned seed = 1; seed <= 100; ++seed) {
        const std::string noise = support::randomBytes(2000, seed);
        tagsOf(id3v2(2 + static_cast<int>(seed % 3), {{"TIT2", noise}, {"TCON", noise}}) + frames);
        std::string tag = id3v2(4, {{"TIT2", utf8 + "x"}}, 2000);
        tag.replace(10, 1990, noise.substr(0, 1990));
        tagsOf(tag + frames + support::apeTag({{noise.substr(0, 50), noise}}));
    }
}

TEST_F(Tags, compressedTextsAreRead) {
    const std::string title = latin1 + "Titul " + std::string(900, 'x');
    for (const int version : {3, 4}) {
        const TrackTags tags = tagsOf(
            compressedId3v2(version, {{"TIT2", stored(title)}, {"TPE1", stored(latin1 + "A")}},
                            static_cast<std::uint32_t>(title.size())) +
            frames);
        EXPECT_EQ(tags.title, title.substr(1)) << version;
        EXPECT_EQ(tags.author, "A") << version;
    }
}

TEST_F(Tags, whatInflatesToNoEndIsLeftOut) {
    constexpr std::size_t letters = 500'000'000;
    const std::string data = bomb(letters);
    // A chapter holds frames of its own.
    const std::string chapter = compressedId3v2(4, {{"TIT2", data}}, letters).substr(10);
    const std::string nested = std::string("c\0", 2) + std::string(16, '\0') + chapter;
    struct Row {
        const char* what;
        std::string tag;
    };
    const std::vector<Row> rows = {
        {"2.3", compressedId3v2(3, {{"TIT2", data}, {"TPE1", stored(latin1 + "A")}}, letters)},
        {"2.4", compressedId3v2(4, {{"TIT2", data}, {"TPE1", stored(latin1 + "A")}}, letters)},
        {"a lie", compressedId3v2(4, {{"COMM", data}, {"TPE1", stored(latin1 + "A")}}, 10)},
        {"a picture", compressedId3v2(4, {{"APIC", data}, {"TPE1", stored(latin1 + "A")}}, 10)},
        {"unknown", compressedId3v2(4, {{"QQQQ", data}, {"TPE1", stored(latin1 + "A")}}, 10)},
        {"a chapter", id3v2(4, {{"CHAP", nested}, {"TPE1", latin1 + "A"}})},
        {"many", compressedId3v2(3,
                                 std::vector<std::pair<std::string, std::string>>(
                                     1000, {"TIT2", bomb(letters / 1000)}),
                                 10)},
    };
    for (const Row& row : rows) {
        support::writeFile(folder.file("file"), row.tag + frames);
        const auto file = FileReader::open(folder.file("file"));
        const std::size_t before = peakMemory(true);
        const support::ProcessorTime time;
        const TrackTags tags = readTags(file);
        EXPECT_LT(time.seconds(), 0.2) << row.what;
        const auto more = static_cast<double>(peakMemory(false) - before);
        EXPECT_LT(more / 1e6,
                  (10 + 3 * static_cast<double>(row.tag.size()) / 1e6) * support::SLOWNESS)
            << row.what;
        EXPECT_EQ(tags.author, row.what == std::string("many") ? "" : "A") << row.what;
    }
}

TEST_F(Tags, aLargeTagIsReadInNoTime) {
    const std::string picture(20 << 20, 'x');
    const std::string content = id3v2(3, {{"APIC", picture}, {"TIT2", latin1 + "t"}}) + frames;
    support::writeFile(folder.file("file"), content);
    const support::ProcessorTime time;
    EXPECT_EQ(readTags(FileReader::open(folder.file("file"))).title, "t");
    EXPECT_LT(time.seconds(), 1);
}

} // namespace

} // namespace zvonivec
