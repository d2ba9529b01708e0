#include "tests/engine/tags_test.h"

#include "engine/tags/tag_text.h"

#include <utility>
#include <vector>

namespace zvonivec {

namespace {

/// Packs bits like deflate, beginning with the lowest bit of each byte.
class BitWriter {
public:
    /// Adds a Huffman code, highest bit first.
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

/// A short zlib stream that inflates to many letters. Its checksum is wrong, which a reader notices
/// only after inflating it.
std::string bomb(std::size_t letters) {
    BitWriter bits;
    bits.code(0b110, 3);      // the last block, with the fixed codes
    bits.code(0x30 + 'x', 8); // a letter
    for (std::size_t done = 1; done < letters; done += 258) {
        bits.code(0b11000101, 8); // repeat 258 times
        bits.code(0, 5);          // the letter before
    }
    bits.code(0, 7); // end of the block
    return "\x78\x01" + bits.finish() + std::string(4, '\0');
}

/// A zlib stream that stores a text uncompressed.
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

/// A tag of frames that claim to be compressed, with the uncompressed size that they state.
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

TEST(TagText, Latin1ClaimsAreUtf8OrWindows1250) {
    EXPECT_EQ(textFromLatin1Claim("plain"), "plain");
    EXPECT_EQ(textFromLatin1Claim(HORSE), HORSE);
    EXPECT_EQ(textFromLatin1Claim(HORSE1250), HORSE);
    EXPECT_EQ(textFromLatin1Claim("\x8A\x8D\x8E\xD8\x84"), "ŠŤŽŘ„");
    EXPECT_EQ(textFromLatin1Claim("\xC4\x8D\xE8"), "Ä\xC5\xA4\xC4\x8D") << "not all of it is UTF-8";
    EXPECT_EQ(textFromLatin1Claim("Pisnicka mil\xE1"), "Pisnicka milá") << "it isn't cut UTF-8";
    EXPECT_EQ(textFromLatin1Claim(std::string("end\0rest", 8)), "end");
    EXPECT_EQ(textFromLatin1Claim(""), "");
}

TEST(TagText, TidyTextIsOneLine) {
    EXPECT_EQ(tidyText("  padded \t "), "padded");
    EXPECT_EQ(tidyText("one\r\ntwo\tthree"), "one two three");
    EXPECT_EQ(tidyText(std::string("a\0b\x01\x1B\x7F", 6)), "ab");
    EXPECT_EQ(tidyText("\xC2\x85x\xC2\x9By\xE2\x80\xA8z"), "xy z");
    EXPECT_EQ(tidyText("two  blanks"), "two  blanks");
    EXPECT_EQ(tidyText("of\xC2\xA0two"), "of\xC2\xA0two") << "no-break space";
    EXPECT_EQ(tidyText("bad \xFF\xC3 bytes \xED\xA0\x80"), "bad  bytes");
    EXPECT_EQ(tidyText(HORSE), HORSE);
    EXPECT_EQ(tidyText("<b>&amp;</b>"), "<b>&amp;</b>");
    EXPECT_EQ(tidyText("   "), "");
}

TEST(TagText, TidyTextIsCutAtACharacter) {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "ž";
    }
    EXPECT_EQ(tidyText(text), text.substr(0, 2 * TAG_TEXT_LIMIT));
    EXPECT_EQ(tidyText("a" + std::string(1000000, ' ') + "b"), "a");
}

TEST_F(Tags, NoneIsNothing) {
    const TrackTags tags = tagsOf(FRAMES);
    EXPECT_EQ(tags.author + tags.title + tags.album + tags.description + tags.genre + tags.year,
              "");
}

TEST_F(Tags, OfTheFirstKind) {
    const TrackTags tags =
        tagsOf(FRAMES + id3v1(HORSE1250, "Umělec", "Album  ", "1999", "Poznámka", 17));
    EXPECT_EQ(tags.title, HORSE);
    EXPECT_EQ(tags.author, "Umělec");
    EXPECT_EQ(tags.album, "Album");
    EXPECT_EQ(tags.year, "1999");
    EXPECT_EQ(tags.description, "Poznámka");
    EXPECT_EQ(tags.genre, "Rock");
    // A comment that is followed by a track number.
    const std::string comment = std::string("Poznámka").append(19, '\0') + '\7';
    EXPECT_EQ(tagsOf(FRAMES + id3v1("t", "", "", "", comment, 17)).description, "Poznámka");
}

TEST_F(Tags, OfTheFirstKindMayBeInAnotherAlphabet) {
    const TrackTags tags = tagsOf(FRAMES + id3v1("\xA9koda l\xE1sky", "\xA9umava", "", "", "", 17));
    EXPECT_EQ(tags.title, "Škoda lásky") << "ISO 8859-2";
    EXPECT_EQ(tags.author, "Šumava");
}

TEST_F(Tags, OfTheFirstKindMayFillTheirPlaces) {
    const auto full = [](char letter) { return std::string(30, letter); };
    constexpr int genre = 'A'; // a letter if it were taken for the comment's last one
    const TrackTags tags =
        tagsOf(FRAMES + id3v1(full('t'), full('a'), full('b'), "1999", full('c'), genre));
    EXPECT_EQ(tags.title, full('t'));
    EXPECT_EQ(tags.author, full('a'));
    EXPECT_EQ(tags.album, full('b'));
    EXPECT_EQ(tags.year, "1999");
    EXPECT_EQ(tags.description, full('c'));
}

TEST_F(Tags, Id3v2OfAllVersions) {
    for (const int version : {3, 4}) {
        const TrackTags tags =
            tagsOf(id3v2(version, {{"TIT2", LATIN1 + HORSE1250},
                                   {"TPE1", UTF16 + utf16Of(u"Kůň")},
                                   {"TALB", LATIN1 + HORSE},
                                   {version == 3 ? "TYER" : "TDRC", LATIN1 + "2004"},
                                   {"COMM", LANGUAGE_ENGLISH + "Popis"},
                                   {"TCON", LATIN1 + (version == 3 ? "(17)" : "17")}}) +
                   FRAMES);
        EXPECT_EQ(tags.title, HORSE) << version;
        EXPECT_EQ(tags.author, "Kůň") << version;
        EXPECT_EQ(tags.album, HORSE) << version;
        EXPECT_EQ(tags.year, "2004") << version;
        EXPECT_EQ(tags.description, "Popis") << version;
        EXPECT_EQ(tags.genre, "Rock") << version;
    }
    const TrackTags old = tagsOf(id3v2(2, {{"TT2", LATIN1 + HORSE1250},
                                           {"TP1", LATIN1 + "A"},
                                           {"TAL", LATIN1 + "B"},
                                           {"TYE", LATIN1 + "1997"},
                                           {"COM", LANGUAGE_ENGLISH + "C"},
                                           {"TCO", LATIN1 + "(8)"}}) +
                                 FRAMES);
    EXPECT_EQ(old.title, HORSE);
    EXPECT_EQ(old.author, "A");
    EXPECT_EQ(old.album, "B");
    EXPECT_EQ(old.year, "1997");
    EXPECT_EQ(old.description, "C");
    EXPECT_EQ(old.genre, "Jazz");
}

TEST_F(Tags, ApeTags) {
    const TrackTags tags = tagsOf(FRAMES + support::apeTag({{"Title", HORSE},
                                                            {"Artist", "A"},
                                                            {"Album", "B"},
                                                            {"Year", "2001"},
                                                            {"Comment", "C"},
                                                            {"Genre", "17"}}));
    EXPECT_EQ(tags.title, HORSE);
    EXPECT_EQ(tags.author, "A");
    EXPECT_EQ(tags.album, "B");
    EXPECT_EQ(tags.year, "2001");
    EXPECT_EQ(tags.description, "C");
    EXPECT_EQ(tags.genre, "Rock");
}

TEST_F(Tags, TheBestSourceOfEachAttributeCounts) {
    const TrackTags tags = tagsOf(id3v2(4, {{"TIT2", UTF8 + "two"}, {"TPE1", UTF8 + "  "}}) +
                                  FRAMES + support::apeTag({{"Title", "ape"}, {"Album", "ape"}}) +
                                  id3v1("one", "one", "one", "1999", "", 255));
    EXPECT_EQ(tags.title, "two");
    EXPECT_EQ(tags.album, "ape");
    EXPECT_EQ(tags.author, "one");
    EXPECT_EQ(tags.year, "1999");
    EXPECT_EQ(tags.genre, "");
}

TEST_F(Tags, AreFoundThoughAnotherOneClaimsTheWholeFile) {
    const std::string rest = FRAMES + id3v1("t", "a", "b", "1999", "c", 17);
    EXPECT_EQ(tagsOf(id3v2(3, {}, rest.size()).substr(0, 10) + rest).author, "a");
}

TEST_F(Tags, GenresAndDatesAndSeveralValues) {
    const auto genre = [&](const std::string& text) {
        return tagsOf(id3v2(4, {{"TCON", UTF8 + text}}) + FRAMES).genre;
    };
    EXPECT_EQ(genre("17"), "Rock");
    EXPECT_EQ(genre("Dechovka"), "Dechovka");
    EXPECT_EQ(genre("(17)Rock"), "Rock");
    EXPECT_EQ(genre("(4)Eurodisco"), "Disco, Eurodisco");
    EXPECT_EQ(genre("999"), "999");
    EXPECT_EQ(genre(std::string("17\0Punk", 7)), "Rock, Punk");
    const TrackTags tags = tagsOf(
        id3v2(4, {{"TDRC", UTF8 + "2004-05-01T10:00"}, {"TPE1", UTF8 + std::string("A\0B", 3)}}) +
        FRAMES);
    EXPECT_EQ(tags.year, "2004");
    EXPECT_EQ(tags.author, "A, B");
}

TEST_F(Tags, GenresInEveryWriting) {
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
                id3v2(version, {{version == 2 ? "TCO" : "TCON", LATIN1 + row.text}});
            EXPECT_EQ(tagsOf(tag + FRAMES).genre, row.genre) << row.text << ", " << version;
        }
        EXPECT_EQ(tagsOf(FRAMES + support::apeTag({{"Genre", row.text}})).genre, row.genre)
            << row.text;
    }
}

TEST_F(Tags, AProgramsOwnCommentIsNoDescription) {
    const TrackTags tags = tagsOf(id3v2(3, {{"COMM", LATIN1 + "engiTunNORM" + LATIN1 + " 0000"},
                                            {"COMM", LATIN1 + "engnote" + LATIN1 + "second"},
                                            {"COMM", LANGUAGE_ENGLISH + "first"}}) +
                                  FRAMES);
    EXPECT_EQ(tags.description, "first");
}

TEST_F(Tags, HostileTagsAreHarmless) {
    const std::string huge(5000000, 'x');
    EXPECT_EQ(tagsOf(id3v2(4, {{"TIT2", UTF8 + huge}}) + FRAMES).title.size(), TAG_TEXT_LIMIT);
    // Random bytes in place of frames, and in their texts.
    for (unsigned seed = 1; seed <= 100; ++seed) {
        const std::string noise = support::randomBytes(2000, seed);
        tagsOf(id3v2(2 + static_cast<int>(seed % 3), {{"TIT2", noise}, {"TCON", noise}}) + FRAMES);
        std::string tag = id3v2(4, {{"TIT2", UTF8 + "x"}}, 2000);
        tag.replace(10, 1990, noise.substr(0, 1990));
        tagsOf(tag + FRAMES + support::apeTag({{noise.substr(0, 50), noise}}));
    }
}

TEST_F(Tags, CompressedTextsAreRead) {
    const std::string title = LATIN1 + "Titul " + std::string(900, 'x');
    for (const int version : {3, 4}) {
        const TrackTags tags = tagsOf(
            compressedId3v2(version, {{"TIT2", stored(title)}, {"TPE1", stored(LATIN1 + "A")}},
                            static_cast<std::uint32_t>(title.size())) +
            FRAMES);
        EXPECT_EQ(tags.title, title.substr(1)) << version;
        EXPECT_EQ(tags.author, "A") << version;
    }
}

TEST_F(Tags, WhatInflatesToNoEndIsLeftOut) {
    constexpr std::size_t letters = 500'000'000;
    const std::string data = bomb(letters);
    // A chapter contains frames.
    const std::string chapter = compressedId3v2(4, {{"TIT2", data}}, letters).substr(10);
    const std::string nested = std::string("c\0", 2) + std::string(16, '\0') + chapter;
    struct Row {
        const char* what;
        std::string tag;
    };
    const std::vector<Row> rows = {
        {"2.3", compressedId3v2(3, {{"TIT2", data}, {"TPE1", stored(LATIN1 + "A")}}, letters)},
        {"2.4", compressedId3v2(4, {{"TIT2", data}, {"TPE1", stored(LATIN1 + "A")}}, letters)},
        {"a lie", compressedId3v2(4, {{"COMM", data}, {"TPE1", stored(LATIN1 + "A")}}, 10)},
        {"a picture", compressedId3v2(4, {{"APIC", data}, {"TPE1", stored(LATIN1 + "A")}}, 10)},
        {"unknown", compressedId3v2(4, {{"QQQQ", data}, {"TPE1", stored(LATIN1 + "A")}}, 10)},
        {"a chapter", id3v2(4, {{"CHAP", nested}, {"TPE1", LATIN1 + "A"}})},
        {"many", compressedId3v2(3,
                                 std::vector<std::pair<std::string, std::string>>(
                                     1000, {"TIT2", bomb(letters / 1000)}),
                                 10)},
    };
    for (const Row& row : rows) {
        support::writeFile(folder.file("file"), row.tag + FRAMES);
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

TEST_F(Tags, ALargeTagIsReadInNoTime) {
    const std::string picture(20 << 20, 'x');
    const std::string content = id3v2(3, {{"APIC", picture}, {"TIT2", LATIN1 + "t"}}) + FRAMES;
    support::writeFile(folder.file("file"), content);
    const support::ProcessorTime time;
    EXPECT_EQ(readTags(FileReader::open(folder.file("file"))).title, "t");
    EXPECT_LT(time.seconds(), 1);
}

TEST_F(Tags, ThousandsOfTextsInAnUnknownAlphabetAreReadInNoTime) {
    std::vector<std::pair<std::string, std::string>> items;
    for (unsigned i = 0; i < 5000; ++i) {
        items.emplace_back("Title", support::randomBytes(1000, i));
    }
    std::string values = LATIN1;
    for (int i = 0; i < 100'000; ++i) {
        values += std::string("\xE8\0", 2);
    }
    const std::string tags[] = {support::apeTag(items), id3v2(4, {{"TIT2", values}})};
    for (const std::string& tag : tags) {
        support::writeFile(folder.file("file"), tag + FRAMES);
        const support::ProcessorTime time;
        EXPECT_NE(readTags(FileReader::open(folder.file("file"))).title, "");
        EXPECT_LT(time.seconds(), 0.1);
    }
}

} // namespace

} // namespace zvonivec
