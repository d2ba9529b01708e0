// The format of the settings file: values read from bytes, and bytes after a write.

#include "platform/private_profile.h"
#include "tests/unit/settings_cases.h"

#include <random>

namespace zvonivec {
namespace {

/// Our own functions, without a file.
TEST(PrivateProfile, IsThatOfTheSystemItComesFrom) {
    expectTable({.read =
                     [](const std::string& file, const std::string& key) {
                         return private_profile::value(file, "General", key).value_or("DEF");
                     },
                 .written =
                     [](const std::string& file, const SettingsTable::Writes& writes) {
                         std::string bytes = file;
                         for (const auto& [key, value] : writes) {
                             bytes = private_profile::withValue(bytes, "General", key, value);
                         }
                         return bytes;
                     },
                 .differences = {}});
}

TEST_F(SettingsFormat, TheFirstSectionOfANameHolds) {
    put("[General]\r\nLeft=1\r\n[General]\r\nTop=2\r\n");
    EXPECT_EQ(read("Top"), "DEF");
    write("Top", "3");
    EXPECT_EQ(bytes(), "[General]\r\nLeft=1\r\nTop=3\r\n[General]\r\nTop=2\r\n");
}

TEST_F(SettingsFormat, CutsALongValueToTheBuffer) {
    put("[General]\r\nLeft=" + std::string(40000, '1') + "\r\n");
    EXPECT_EQ(read("Left").size(), BUFFER_SIZE - 1);
    EXPECT_EQ(modDeklarace::GetPrivateProfileStringA("General", "Left", "DEF", 1, path_), "");
    EXPECT_EQ(modDeklarace::GetPrivateProfileStringA("General", "Left", "DEF", 0, path_), "");
}

/// Returns the characters of a file, two bytes each when the file begins with the mark for that.
std::u16string units(const std::string& file) {
    const bool little = file.starts_with("\xFF\xFE");
    const std::size_t width = little || file.starts_with("\xFE\xFF") ? 2 : 1;
    const auto byte = [&](std::size_t i) -> unsigned {
        return static_cast<unsigned char>(file[i]);
    };
    std::u16string all;
    for (std::size_t i = 0; i + width <= file.size(); i += width) {
        const unsigned unit = width == 1 ? byte(i)
                              : little   ? byte(i) | byte(i + 1) << 8U
                                         : byte(i) << 8U | byte(i + 1);
        all.push_back(static_cast<char16_t>(unit));
    }
    return all;
}

/// Returns whether a write only replaced a value, in a file that had the key.
bool onlyReplaces(std::u16string_view before, std::u16string_view after,
                  std::u16string_view value) {
    const std::size_t at = after.find(value);
    if (at == std::u16string_view::npos) {
        return false;
    }
    const std::u16string_view head = after.substr(0, at);
    const std::u16string_view tail = after.substr(at + value.size());
    return head.ends_with(u'=') && before.size() >= head.size() + tail.size() &&
           before.starts_with(head) && before.ends_with(tail) &&
           before.substr(head.size(), before.size() - head.size() - tail.size())
                   .find_first_of(u"\r\n") == std::u16string_view::npos;
}

/// Returns whether a write only added a line with a value, the line of its section where there was
/// none, and a line end to a last line without one.
bool onlyAdds(std::u16string_view before, std::u16string_view after, std::u16string_view value) {
    for (const std::u16string lineEnd : {u"\r\n", u"\n", u"\r"}) {
        for (const std::u16string sectionLine : {u"", u"[General]"}) {
            std::u16string added = sectionLine.empty() ? sectionLine : sectionLine + lineEnd;
            added.append(u"Left=").append(value).append(lineEnd);
            const std::size_t at = after.find(added);
            if (at == std::u16string_view::npos) {
                continue;
            }
            const std::u16string_view tail = after.substr(at + added.size());
            const std::u16string head(after.substr(0, at));
            if (before == head + std::u16string(tail)) {
                return true;
            }
            if (tail.empty() && head == std::u16string(before) + lineEnd &&
                !before.ends_with(u'\r') && !before.ends_with(u'\n')) {
                return true;
            }
        }
    }
    return false;
}

TEST(PrivateProfile, AnyBytesCanBeReadAndWritten) {
    using private_profile::value;
    using private_profile::withValue;
    std::mt19937 random(7);
    const std::string pieces[] = {"[General]", "[",
                                  "]",         "Left",
                                  "=",         "Left=1",
                                  "\r\n",      "\n",
                                  "\r",        " ",
                                  "\t",        "\"",
                                  ";",         std::string(1, '\0'),
                                  "\xFF\xFE",  "\xEF\xBB\xBF",
                                  "\xC5\x99",  "[general]\nleft=2\n"};
    std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1);
    std::uniform_int_distribution<int> byte(0, 255);
    int replaced = 0;
    int added = 0;
    for (int round = 0; round < 10000; ++round) {
        std::string file = round % 5 == 0 ? "\xFF\xFE" : round % 5 == 1 ? "\xFE\xFF" : "";
        for (int i = 0; i < round % 41; ++i) {
            file += round % 3 == 0 ? std::string(1, static_cast<char>(byte(random)))
                                   : pieces[piece(random)];
        }
        const bool had = value(file, "General", "Left").has_value();
        const std::string number = std::to_string(1000000 + round);
        const std::string after = withValue(file, "General", "Left", number);
        SCOPED_TRACE(testing::PrintToString(file) + " to " + testing::PrintToString(after));
        ASSERT_EQ(value(after, "General", "Left"), number);
        ASSERT_EQ(value(after, "General", "Top"), value(file, "General", "Top"));
        ASSERT_TRUE((had ? onlyReplaces : onlyAdds)(units(file), units(after), units(number)));
        ASSERT_EQ(withValue(after, "General", "Left", number), after);
        ++(had ? replaced : added);
    }
    EXPECT_GT(replaced, 500);
    EXPECT_GT(added, 500);
}

} // namespace
} // namespace zvonivec
