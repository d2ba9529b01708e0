// The format of the settings file: what is read from which bytes, and what a write makes of them.

#include "platform/modDeklarace.h"
#include "platform/private_profile.h"
#include "tests/support/process.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace zvonivec {
namespace {

using modDeklarace::GetPrivateProfileStringA;
using modDeklarace::WritePrivateProfileStringA;

constexpr std::size_t bufferSize = 33001;

class SettingsFormat : public testing::Test {
protected:
    std::string read(const std::string& key) const {
        return GetPrivateProfileStringA("General", key, "DEF", bufferSize, path_);
    }
    void write(const std::string& key, const std::string& value) const {
        WritePrivateProfileStringA("General", key, value, path_);
    }
    void put(const std::string& bytes) const { support::writeFile(path_, bytes); }
    std::string bytes() const { return support::readFile(path_); }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.file("MP3.ini");
};

std::string bytesOf(const QJsonValue& text) {
    return text.toString().toLatin1().toStdString();
}

/// What the functions of the system that the format comes from make of these files.
TEST_F(SettingsFormat, IsThatOfTheSystemItComesFrom) {
    QFile file(QStringLiteral(TEST_DATA "/ini_cases.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    ASSERT_EQ(cases.size(), 33);
    for (const QJsonValue& value : cases) {
        const QJsonObject tested = value.toObject();
        SCOPED_TRACE(tested["name"].toString().toStdString());
        std::filesystem::remove(path_);
        if (!tested["file"].isNull()) {
            put(bytesOf(tested["file"]));
        }
        if (tested["kind"].toString() == QStringLiteral("read")) {
            const QJsonObject values = tested["values"].toObject();
            EXPECT_FALSE(values.isEmpty());
            for (auto entry = values.begin(); entry != values.end(); ++entry) {
                EXPECT_EQ(read(entry.key().toStdString()), bytesOf(entry.value()))
                    << entry.key().toStdString();
            }
        } else {
            for (const QJsonValue& pair : tested["writes"].toArray()) {
                write(bytesOf(pair.toArray()[0]), bytesOf(pair.toArray()[1]));
            }
            EXPECT_EQ(bytes(), bytesOf(tested["after"]));
        }
    }
}

TEST_F(SettingsFormat, AWriteChangesNothingButItsValue) {
    put("; mine\r\n\r\n[Other]\r\nLeft=7\r\n[General]\r\n ;Left=1\r\n  left = 5 ; old\r\n\r\n#x\r\n"
        "Top=\"6\"\r\n\r\n[Last]\r\nLeft=8");
    write("Left", "10");
    write("Volume", "30");
    EXPECT_EQ(bytes(),
              "; mine\r\n\r\n[Other]\r\nLeft=7\r\n[General]\r\n ;Left=1\r\n  left =10\r\n\r\n#x\r\n"
              "Top=\"6\"\r\nVolume=30\r\n\r\n[Last]\r\nLeft=8");
}

TEST_F(SettingsFormat, NewLinesEndAsTheFilesOwn) {
    put("[General]\nLeft=1\n");
    write("Top", "2");
    EXPECT_EQ(bytes(), "[General]\nLeft=1\nTop=2\n");
    put("[General]\rLeft=1");
    write("Top", "2");
    EXPECT_EQ(bytes(), "[General]\rLeft=1\rTop=2\r");
    put("[General]");
    write("Top", "2");
    EXPECT_EQ(bytes(), "[General]\r\nTop=2\r\n");
}

TEST_F(SettingsFormat, KeepsItsEncoding) {
    put("\xEF\xBB\xBF[General]\r\nLeft=1\r\n");
    write("Left", "2");
    write("Top", "3");
    EXPECT_EQ(bytes(), "\xEF\xBB\xBF[General]\r\nLeft=2\r\nTop=3\r\n");

    for (const bool little : {true, false}) {
        const auto utf16 = [little](const std::string& text) {
            std::string wide = little ? "\xFF\xFE" : "\xFE\xFF";
            for (const char character : text) {
                wide.append(little ? std::string{character, '\0'} : std::string{'\0', character});
            }
            return wide;
        };
        put(utf16("[General]\r\nLeft=1\r\n[X]\r\n") + "z"); // half a character at the end
        write("Left", "2");
        write("Top", "-3");
        EXPECT_EQ(bytes(), utf16("[General]\r\nLeft=2\r\nTop=-3\r\n[X]\r\n") + "z");
        EXPECT_EQ(read("Top"), "-3");
        put(utf16("[General]\r\nTop=\xE9\r\n"));
        EXPECT_EQ(read("Top"), "?");
    }
}

TEST_F(SettingsFormat, TheFirstSectionOfANameHolds) {
    put("[General]\r\nLeft=1\r\n[General]\r\nTop=2\r\n");
    EXPECT_EQ(read("Top"), "DEF");
    write("Top", "3");
    EXPECT_EQ(bytes(), "[General]\r\nLeft=1\r\nTop=3\r\n[General]\r\nTop=2\r\n");
}

TEST_F(SettingsFormat, AnEqualValueIsNotWrittenAgain) {
    put("[General]\nLeft = \"5\"\n");
    const auto before = std::filesystem::last_write_time(path_);
    std::filesystem::create_hard_link(path_, folder_.file("link"));
    write("Left", "5");
    EXPECT_EQ(std::filesystem::last_write_time(path_), before);
    EXPECT_EQ(std::filesystem::hard_link_count(path_), 2U) << "the file was replaced";
}

TEST_F(SettingsFormat, CutsALongValueToTheBuffer) {
    put("[General]\r\nLeft=" + std::string(40000, '1') + "\r\n");
    EXPECT_EQ(read("Left").size(), bufferSize - 1);
    EXPECT_EQ(GetPrivateProfileStringA("General", "Left", "DEF", 1, path_), "");
    EXPECT_EQ(GetPrivateProfileStringA("General", "Left", "DEF", 0, path_), "");
}

/// A file's characters, two bytes each where its mark says so.
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

/// Whether nothing was done but to replace a value, in a file that had the key.
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

/// Whether nothing was done but to add a line with a value, its section's line where need be, and
/// a line end to a last line without one.
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
