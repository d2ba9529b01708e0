// Opening a file in the system's dialog, its sound and its texts.
#include "tests/wine/wine_test.h"

#include <filesystem>

namespace support {

namespace {

/// At volume 100 the sound equals the content of the file.
class OpeningTest : public WindowsTest {
protected:
    OpeningTest() : WindowsTest("[General]\r\nVolume=100\r\n") {}

    /// Wine passes the samples on as floating-point numbers, which the server converts to integers.
    /// The last bit may be rounded differently.
    static constexpr int ROUNDING = 1;

    void open(const std::string& path) {
        DesktopTest::click(player::LOGO.middle());
        openInDialog(path);
    }
    /// Makes a file of noise with Czech tags. Returns its samples.
    [[nodiscard]] Samples makeSong(const std::string& path, double seconds) const {
        EXPECT_TRUE(encodeNoise(path, seconds,
                                {"-b", "128", "--id3v2-only", "--id3v2-utf16", "--tt",
                                 "Příliš žluťoučký kůň", "--ta", "Ďábelské ódy", "--tl", "Úpěl"}));
        return decodeWithMpg123(path);
    }
};

TEST_F(OpeningTest, SoundsLikeTheFileAndRepeatsIt) {
    const std::string path = folder_.file("song.mp3");
    samples_ = makeSong(path, 4);
    const Samples start(samples_.begin(), samples_.begin() + 2000);
    recording_ = std::make_unique<Recording>(sound_);
    open(path);
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    EXPECT_TRUE(player_->showsMark(player::play));
    std::optional<std::size_t> first;
    ASSERT_TRUE(waitUntil(
        [&] {
            first = findIn(recording_->samples(), start, 0, ROUNDING);
            return first.has_value();
        },
        std::chrono::seconds(20)));
    // Without settings the program repeats the track.
    std::optional<std::size_t> again;
    ASSERT_TRUE(waitUntil(
        [&] {
            again = findIn(recording_->samples(), start, *first + samples_.size(), ROUNDING);
            return again.has_value();
        },
        std::chrono::seconds(20)));
    const Match match = follow(recording_->samples(), *first, samples_, 0, true, ROUNDING);
    EXPECT_EQ(match.length, samples_.size());
    RecordProperty("silence", static_cast<int>(match.silence));
}

TEST_F(OpeningTest, CzechLettersInNamesAndTagsAreRightEverywhere) {
    const std::string folder = folder_.file("Písničky žluťoučkých koní");
    std::filesystem::create_directory(folder);
    const std::string path = folder + "/01 – ďábelské ódy.mp3";
    ASSERT_FALSE(makeSong(path, 20).empty());
    openMenu();
    click(menu::OPEN);
    openInDialog(path);
    ASSERT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    EXPECT_TRUE(waitUntil([&] { return sound_.playingStreams() == 1; }));

    choose(menu::PROPERTIES);
    const auto box = waitForTitle(std::string(player::TITLE) + " - vlastnosti souboru MP3");
    ASSERT_TRUE(box);
    const std::string texts = windowTexts();
    EXPECT_NE(texts.find("Přehrávání: 128 kb/s\r\nDélka skladby: 00:20\r\n"
                         "Interpret: Ďábelské ódy\r\nSkladba: Příliš žluťoučký kůň\r\n"
                         "Album: Úpěl\r\n\r\nURL: " +
                         windowsPath(path) + "\n"),
              std::string::npos)
        << texts;
    answer(*box, "Return");
    EXPECT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    closePlayer();
    EXPECT_TRUE(waitUntil([&] { return sound_.playingStreams() == 0; }));
}

TEST_F(OpeningTest, OtherFilesAreRefused) {
    const std::string path = folder_.file("slova.mp3");
    writeFile(path, "Toto jsou slova.\n");
    open(path);
    const auto box = waitForTitle(player::TITLE);
    ASSERT_TRUE(box);
    answer(*box, "Return");
    // The dialog is shown again.
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog);
    answer(*dialog, "Escape");
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    closePlayer();
}

} // namespace

} // namespace support
