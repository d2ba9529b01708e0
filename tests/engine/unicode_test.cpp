#include "engine/tags/unicode.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

using namespace std::string_literals;

const std::vector<std::pair<char32_t, std::string>> CHARACTERS = {
    {0, "\0"s},
    {'A', "A"},
    {0x7F, "\x7F"},
    {0x80, "\xC2\x80"},
    {0x10D, "\xC4\x8D"}, // č
    {0x7FF, "\xDF\xBF"},
    {0x800, "\xE0\xA0\x80"},
    {0x20AC, "\xE2\x82\xAC"}, // €
    {0xD7FF, "\xED\x9F\xBF"},
    {0xE000, "\xEE\x80\x80"},
    {0xFFFF, "\xEF\xBF\xBF"},
    {0x10000, "\xF0\x90\x80\x80"},
    {0x1F3B5, "\xF0\x9F\x8E\xB5"}, // a note
    {0x10FFFF, "\xF4\x8F\xBF\xBF"},
};

TEST(Unicode, WritesCharactersOfAllLengths) {
    for (const auto& [character, bytes] : CHARACTERS) {
        std::string text = "x";
        append(text, character);
        EXPECT_EQ(text, "x" + bytes) << std::hex << static_cast<std::uint32_t>(character);
    }
}

TEST(Unicode, ReadsCharactersOfAllLengths) {
    for (const auto& [character, bytes] : CHARACTERS) {
        const std::string text = bytes + "\x8Dx";
        std::string_view rest = text;
        EXPECT_EQ(takeCharacter(rest), character) << testing::PrintToString(bytes);
        EXPECT_EQ(rest, "\x8Dx");
    }
}

TEST(Unicode, TakesOneByteOfWhatIsNoCharacter) {
    const std::vector<std::pair<const char*, std::vector<std::string_view>>> kinds = {
        {"no character begins so", {"\x80", "\xBF", "\xFF"}},
        {"longer than need be", {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF"}},
        {"half of a pair", {"\xED\xA0\x80", "\xED\xBF\xBF"}},
        {"beyond the last", {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}},
        {"cut", {"\xC4", "\xE2\x82", "\xF0\x9F\x8E"}},
        {"followed by another character",
         {"\xC4x", "\xE2\x82x", "\xE2x\x82", "\xF0\x9F\x8Ex", "\xE2\x82\xC4\x8D"}},
    };
    for (const auto& [kind, texts] : kinds) {
        for (const std::string_view bytes : texts) {
            std::string_view rest = bytes;
            EXPECT_EQ(takeCharacter(rest), std::nullopt)
                << kind << ": " << testing::PrintToString(std::string(bytes));
            EXPECT_EQ(rest, bytes.substr(1));
        }
    }
}

TEST(Unicode, KnowsHowMuchOfACharacterIsCut) {
    EXPECT_EQ(incompleteTail(""), 0U);
    for (const auto& [character, bytes] : CHARACTERS) {
        EXPECT_EQ(incompleteTail(bytes), 0U) << testing::PrintToString(bytes);
        EXPECT_EQ(incompleteTail("\xC4\x8D" + bytes), 0U) << testing::PrintToString(bytes);
        for (std::size_t size = 1; size < bytes.size(); ++size) {
            const std::string cut = "a" + bytes.substr(0, size);
            EXPECT_EQ(incompleteTail(cut), size) << testing::PrintToString(cut);
        }
    }
    for (const char* none : {"\x80", "\x82\x82\x82\x82", "\xC1", "\xF5", "\xC1\x80", "\xF5\x80"}) {
        EXPECT_EQ(incompleteTail(none), 0U) << testing::PrintToString(none);
    }
}

TEST(Unicode, ReadsPairsOfSixteenBits) {
    const std::string note = "\xF0\x9F\x8E\xB5";
    const std::string nothing = "\xEF\xBF\xBD";
    const std::string last = "\xF4\x8F\xBF\xBF";
    EXPECT_EQ(fromUtf16("\x0D\x01\x3C\xD8\xB5\xDF!\0"s, false), "č" + note + "!");
    EXPECT_EQ(fromUtf16("\x01\x0D\xD8\x3C\xDF\xB5\0!"s, true), "č" + note + "!");
    EXPECT_EQ(fromUtf16("\xD8\0\xDC\0"s, true), "\xF0\x90\x80\x80");
    EXPECT_EQ(fromUtf16("\xDB\xFF\xDF\xFF", true), last);
    EXPECT_EQ(fromUtf16("\xD7\xFF\xE0\0"s, true), "\xED\x9F\xBF\xEE\x80\x80");
    EXPECT_EQ(fromUtf16("\xD8\x3C\0!"s, true), nothing + "!"); // the first without the second
    EXPECT_EQ(fromUtf16("\xDB\xFF\xE0\0"s, true), nothing + "\xEE\x80\x80");
    EXPECT_EQ(fromUtf16("\xDF\xB5\0!"s, true), nothing + "!"); // the second without the first
    EXPECT_EQ(fromUtf16("\xDC\0\xDC\0"s, true), nothing + nothing);
    EXPECT_EQ(fromUtf16("\xD8\x3C", true), nothing);
    EXPECT_EQ(fromUtf16("\0A\xD8"s, true), "A"); // an odd byte
    EXPECT_EQ(fromUtf16("", true), "");
}

} // namespace

} // namespace zvonivec
