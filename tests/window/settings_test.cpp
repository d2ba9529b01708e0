// What the window reads from its settings file and writes to it.

#include "platform/window_place.h"
#include "tests/window/player_test.h"

#include <cmath>
#include <filesystem>

namespace zvonivec {
namespace {

class Settings : public PlayerTest {
protected:
    [[nodiscard]] std::string path() const { return programFolder() + "/MP3.ini"; }
    void put(const std::string& bytes) const { support::writeFile(path(), bytes); }
    [[nodiscard]] std::string bytes() const { return support::readFile(path()); }

    void expect(int onTop, int repeat, int volume) {
        EXPECT_EQ(popup().chkPopup[popupOnTop].Value(), onTop);
        EXPECT_EQ(popup().chkPopup[popupRepeat].Value(), repeat);
        EXPECT_EQ(engine().settings().volume(), volume);
        EXPECT_EQ(player().imgVolume.Tag(), std::to_string(volume));
        EXPECT_EQ(player().lblStatus.Caption(), std::to_string(volume) + "% hlasitost");
    }
    bool becomesMinimised() {
        return serveUntil(
            [this] { return player().WindowState() == Form::WindowState::minimised; });
    }
};

TEST_F(Settings, HaveDefaultsWithoutAFileAndCreateItAtTheEnd) {
    start();
    EXPECT_TRUE(serveUntil([this] { return isCentred(); }));
    expect(0, 1, 50);
    const std::string left = std::to_string(static_cast<int>(player().Left()));
    const std::string top = std::to_string(static_cast<int>(player().Top()));
    player().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=" + left + "\r\nTop=" + top +
                           "\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
}

TEST_F(Settings, AreAppliedAtTheStart) {
    put("[General]\r\nLeft=1500\r\nTop=2250\r\nOnTop=1\r\nRepeat=0\r\nVolume=70\r\n");
    start();
    EXPECT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(100, 150); }));
    expect(1, 0, 70);
}

TEST_F(Settings, AreWrittenAtTheEndAndReadAgain) {
    start();
    player().setLeft(300);
    player().setTop(450);
    player().ShowPopupMenu();
    click(popup().chkPopup[popupRepeat]);
    popup().chkPopup[popupOnTop].setValue(1);
    click(player().imgVolume);
    ASSERT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(20, 30); }));
    player().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=300\r\nTop=450\r\nOnTop=1\r\nRepeat=0\r\nVolume=60\r\n");
    renew();
    start();
    EXPECT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(20, 30); }));
    expect(1, 0, 60);
}

TEST_F(Settings, FractionsAndNegativePositionsAreAccepted) {
    for (const char* separator : {".", ","}) {
        put("[General]\nLeft=-1502" + std::string(separator) + "5\nTop=307" + separator + "5\n");
        renew();
        start();
        EXPECT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(-100, 21); }));
    }
}

TEST_F(Settings, APositionBeyondTheScreensEdgeIsAppliedUnchanged) {
    put("[General]\r\nLeft=18000\r\nTop=-3000\r\n");
    start();
    EXPECT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(1200, -200); }));
    player().CloseApplication();
    EXPECT_NE(bytes().find("Left=18000\r\nTop=-3000\r\n"), std::string::npos);
}

TEST_F(Settings, APlaceThatNoWindowCanHaveIsAppliedAsFarAsItCanBe) {
    start();
    constexpr float farthest = 32000 * 15;
    for (const float place : {1e30F, -1e30F, 600000.0F, -600000.0F, farthest, -farthest}) {
        player().setLeft(300);
        player().setTop(450);
        player().setLeft(place);
        player().setTop(place);
        EXPECT_EQ(player().Left(), place > 0 ? farthest : -farthest) << place;
        EXPECT_EQ(player().Top(), place > 0 ? farthest : -farthest) << place;
    }
}

TEST_F(Settings, APlaceThatIsNoNumberIsRefused) {
    start();
    player().setLeft(300);
    player().setTop(450);
    player().setLeft(std::nanf(""));
    player().setTop(std::nanf(""));
    EXPECT_EQ(player().Left(), 300);
    EXPECT_EQ(player().Top(), 450);
}

TEST_F(Settings, TextsThatAreNoNumbersChangeNothing) {
    put("[General]\nLeft=abc\nTop=450\nOnTop=x\nRepeat=\nVolume=loud\n");
    engine().settings().setVolume(35); // the engine's initial volume
    const float before = player().Left();
    start();
    EXPECT_EQ(player().Left(), before);
    EXPECT_TRUE(serveUntil([this] { return placeOf(window()).value_or(QPointF()).y() == 30; }));
    expect(0, 0, 35);
}

TEST_F(Settings, ACheckBoxRefusesOtherNumbers) {
    for (const char* number : {"3", "-1", "70000", "99999999999"}) {
        put("[General]\nOnTop=" + std::string(number) + "\nRepeat=" + number + "\n");
        renew();
        start();
        expect(0, 0, 50);
    }
    put("[General]\nOnTop=2\nRepeat=2\n");
    renew();
    start();
    expect(2, 2, 50);
}

TEST_F(Settings, TheEngineLimitsTheVolume) {
    put("[General]\nVolume=250\n");
    start();
    expect(0, 1, 100);
    player().CloseApplication();
    EXPECT_NE(bytes().find("Volume=100"), std::string::npos);
    put("[General]\nVolume=-3,5\n");
    renew();
    start();
    expect(0, 1, 0);
}

TEST_F(Settings, AMinimisedWindowKeepsItsStoredPosition) {
    put("[General]\r\nLeft=150\r\nTop=300\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
    start();
    player().setLeft(600);
    player().setWindowState(Form::WindowState::minimised);
    ASSERT_TRUE(becomesMinimised());
    engine().settings().setVolume(20);
    player().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=150\r\nTop=300\r\nOnTop=0\r\nRepeat=1\r\nVolume=20\r\n");
}

TEST_F(Settings, AMinimisedFirstRunWritesThreeKeys) {
    start();
    player().setWindowState(Form::WindowState::minimised);
    ASSERT_TRUE(becomesMinimised());
    player().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
}

TEST_F(Settings, EveryUnloadOfTheMenuSaves) {
    start();
    popup().Unload();
    EXPECT_NE(bytes(), "");
}

TEST_F(Settings, EndingWhileTheSettingsAreReadOverwritesNothing) {
    const std::string stored = "[General]\nLeft=150\nTop=300\nOnTop=1\nRepeat=0\nVolume=20\n";
    put(stored);
    // Runs in the message pass of the click that reading the switch raises.
    Application::post([this] { player().CloseApplication(); });
    player().Form_Load();
    EXPECT_FALSE(player().Loaded());
    EXPECT_EQ(bytes(), stored);
}

TEST_F(Settings, OtherContentOfTheFileStays) {
    put("; mine\r\n[Other]\r\nx=1\r\n[General]\r\nVolume=30\r\nColour=red\r\n");
    start();
    player().setLeft(150);
    player().setTop(300);
    ASSERT_TRUE(serveUntil([this] { return placeOf(window()) == QPointF(10, 20); }));
    player().CloseApplication();
    EXPECT_EQ(bytes(), "; mine\r\n[Other]\r\nx=1\r\n[General]\r\nVolume=30\r\nColour=red\r\n"
                       "Left=150\r\nTop=300\r\nOnTop=0\r\nRepeat=1\r\n");
}

TEST_F(Settings, AMissingFolderDoesNoHarm) {
    std::filesystem::remove_all(programFolder());
    start();
    expect(0, 1, 50);
    player().CloseApplication();
    EXPECT_FALSE(std::filesystem::exists(path()));
}

} // namespace
} // namespace zvonivec
