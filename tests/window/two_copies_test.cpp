// Two copies of the program that share a folder, and with it the settings file.

#include "platform/window_place.h"
#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class TwoCopies : public PlayerTest {
protected:
    void SetUp() override {
        support::writeFile(path(), "[General]\r\nLeft=150\r\nTop=300\r\nOnTop=0\r\nRepeat=1\r\n"
                                   "Volume=50\r\n");
        start();
        second_ = std::make_unique<frmPlayer>(
            frmPlayer::Parts{.engine = std::make_unique<support::FakeEngine>(),
                             .dialog = std::make_unique<FakeDialog>(),
                             .boxes = std::make_unique<FakeBoxes>(),
                             .programFolder = programFolder()});
        second_->Form_Load();
        ASSERT_TRUE(isAt(window(), {10, 20}));
        ASSERT_TRUE(isAt(secondWindow(), {10, 20}));
    }

    /// Changes everything that is kept.
    static void change(frmPlayer& copy, float left, float top, int onTop, int repeat, int volume) {
        copy.setLeft(left);
        copy.setTop(top);
        copy.Popup().chkPopup[popupOnTop].setValue(onTop);
        copy.Popup().chkPopup[popupRepeat].setValue(repeat);
        copy.WMP->settings().setVolume(volume);
    }
    static bool isAt(const QWidget& window, QPoint place) {
        return serveUntil([&] { return placeOf(window) == QPointF(place); });
    }
    frmPlayer& second() { return *second_; }
    [[nodiscard]] QWidget& secondWindow() const { return *QWidget::find(second_->hWnd()); }
    [[nodiscard]] std::string path() const { return programFolder() + "/MP3.ini"; }
    [[nodiscard]] std::string bytes() const { return support::readFile(path()); }

private:
    std::unique_ptr<frmPlayer> second_;
};

TEST_F(TwoCopies, TheOneThatEndsLastWins) {
    change(player(), 600, 750, 1, 0, 80);
    change(second(), 900, 1050, 0, 2, 20);
    ASSERT_TRUE(isAt(window(), {40, 50}));
    ASSERT_TRUE(isAt(secondWindow(), {60, 70}));
    second().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=900\r\nTop=1050\r\nOnTop=0\r\nRepeat=2\r\nVolume=20\r\n");
    player().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=600\r\nTop=750\r\nOnTop=1\r\nRepeat=0\r\nVolume=80\r\n");
}

TEST_F(TwoCopies, ACopyThatNothingWasChangedInWinsToo) {
    change(player(), 600, 750, 1, 0, 80);
    ASSERT_TRUE(isAt(window(), {40, 50}));
    player().CloseApplication();
    second().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=150\r\nTop=300\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
}

TEST_F(TwoCopies, KeysThatTheLastOneDoesNotWriteStayTheOthers) {
    change(player(), 600, 750, 1, 0, 80);
    ASSERT_TRUE(isAt(window(), {40, 50}));
    change(second(), 900, 1050, 0, 1, 20);
    second().setWindowState(Form::WindowState::minimised);
    ASSERT_TRUE(
        serveUntil([this] { return second().WindowState() == Form::WindowState::minimised; }));
    player().CloseApplication();
    second().CloseApplication();
    EXPECT_EQ(bytes(), "[General]\r\nLeft=600\r\nTop=750\r\nOnTop=0\r\nRepeat=1\r\nVolume=20\r\n");
}

} // namespace
} // namespace zvonivec
