// Settings files where the format and the file are our own.

#include "tests/unit/settings_cases.h"

#include <filesystem>

namespace zvonivec {
namespace {

TEST_F(SettingsFormat, IsThatOfTheSystemItComesFrom) {
    expectTable(ofModDeklarace());
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

TEST_F(SettingsFormat, AnEqualValueIsNotWrittenAgain) {
    put("[General]\nLeft = \"5\"\n");
    const auto before = std::filesystem::last_write_time(path_);
    std::filesystem::create_hard_link(path_, folder_.file("link"));
    write("Left", "5");
    EXPECT_EQ(std::filesystem::last_write_time(path_), before);
    EXPECT_EQ(std::filesystem::hard_link_count(path_), 2U) << "the file was replaced";
}

} // namespace
} // namespace zvonivec
