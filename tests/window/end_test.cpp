#include "tests/window/end_test.h"

#include <QCoreApplication>
#include <QEvent>

namespace zvonivec {
namespace {

using End = EndTest;

TEST_F(End, ByTheCloseButton) {
    click(player().imgButtons[6]);
    expectEnded();
}

TEST_F(End, ThePopupGoesFirst) {
    bool popupGone = false;
    engine().During = [&](const std::string& call) {
        if (call == "setURL ") { // the main window silences the engine when it unloads
            popupGone = !player().Popup().Loaded();
        }
    };
    player().CloseApplication();
    EXPECT_TRUE(popupGone);
}

TEST_F(End, ByTheWindowManager) {
    window().close();
    expectEnded();
}

TEST_F(End, ByTheSession) {
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    expectEnded();
}

TEST_F(End, EndingTwiceEndsOnce) {
    player().CloseApplication();
    player().CloseApplication();
    EXPECT_EQ(engine().count("setURL "), 1);
}

TEST_F(End, AClosedProgramPlaysNothing) {
    player().CloseApplication();
    engine().calls.clear();
    player().OpenMp3File();
    player().Timer1.Tick();
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_TRUE(engine().calls.empty());
    player().setVisible(true);
    EXPECT_FALSE(player().Visible());
}

TEST_F(End, ClosingThePopupAloneDoesNothing) {
    QWidget::find(player().Popup().hWnd())->close();
    EXPECT_TRUE(player().Popup().Loaded());
    EXPECT_TRUE(player().Loaded());
}

} // namespace
} // namespace zvonivec
