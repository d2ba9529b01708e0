// The strip that the display server slides through the display.
#include "main_window/layout.h"
#include "tests/window/player_test.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <cmath>

namespace zvonivec {
namespace {

constexpr QRect PANE(86, 57, 164, 15); ///< in the window

class Strip : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().Timer1.setEnabled(false);
        ASSERT_TRUE(serveUntil([this] { return seen() == painted(); }));
    }

    /// Returns the pane as the screen shows it.
    [[nodiscard]] QImage seen() const {
        const QPixmap all = QGuiApplication::primaryScreen()->grabWindow(window().winId());
        return all.toImage().copy(PANE).convertToFormat(QImage::Format_RGB32);
    }

    /// Returns the pane as it should look with the strip in its present place.
    [[nodiscard]] QImage painted() {
        QWidget& strip = *widgetOf(window(), player().picDisplay);
        QImage pane(PANE.size(), QImage::Format_RGB32);
        pane.fill(QColor(0, 160, 192));
        QPainter(&pane).drawImage(static_cast<int>(std::lround(player().picDisplay.Left() / 15)), 0,
                                  pictureOf(strip));
        return pane;
    }

    void slideTo(float left) {
        player().picDisplay.setLeft(left);
        EXPECT_EQ(player().picDisplay.Left(), left);
        EXPECT_EQ(seen(), painted()) << left;
    }
};

bool hasText(const QImage& pane) {
    for (int y = 0; y < pane.height(); ++y) {
        for (int x = 0; x < pane.width(); ++x) {
            if (pane.pixel(x, y) == qRgb(255, 255, 0)) {
                return true;
            }
        }
    }
    return false;
}

TEST_F(Strip, IsShownWhereTheProgramPutsIt) {
    for (const float left : {0.0F, 1500.0F, -300.0F, 2440.0F, 30.0F}) {
        slideTo(left);
        EXPECT_EQ(hasText(seen()), left < 2000) << left;
    }
    // The strip has left the pane on either side, or its end is in the pane.
    slideTo(2455);
    EXPECT_FALSE(hasText(seen()));
    slideTo(-player().picDisplay.Width() + 600);
    EXPECT_EQ(seen().pixel(PANE.width() - 1, 5), qRgb(0, 160, 192));
    slideTo(-player().picDisplay.Width());
    EXPECT_FALSE(hasText(seen()));
}

TEST_F(Strip, ShowsANewTextWithItsNextStep) {
    slideTo(0);
    const QImage before = seen();
    player().lbl_Info.setCaption("Příliš žluťoučký kůň");
    player().lbl_Info_SH.setCaption("Příliš žluťoučký kůň");
    player().picDisplay.setWidth(player().lbl_Info.Width() + 20);
    slideTo(-30);
    slideTo(0);
    EXPECT_NE(seen(), before);
}

TEST_F(Strip, ShowsANewColourWithItsNextStep) {
    slideTo(0);
    player().lbl_Info.setForeColor(0);
    slideTo(30);
    EXPECT_FALSE(hasText(seen()));
}

TEST_F(Strip, ATextOfAThousandLettersSlidesToo) {
    const std::string text(1000, 'W');
    player().lbl_Info.setCaption(text);
    player().lbl_Info_SH.setCaption(text);
    player().picDisplay.setWidth(player().lbl_Info.Width() + 20);
    slideTo(0);
    slideTo(-player().picDisplay.Width() + 1500);
    EXPECT_TRUE(hasText(seen()));
}

TEST_F(Strip, ATextTooLongForTheServerIsPaintedByTheToolkit) {
    const std::string text(4000, 'W');
    player().lbl_Info.setCaption(text);
    player().lbl_Info_SH.setCaption(text);
    player().picDisplay.setWidth(player().lbl_Info.Width() + 20);
    ASSERT_GT(player().picDisplay.Width(), 32767 * 15.0F);
    player().picDisplay.setLeft(-3000);
    EXPECT_TRUE(serveUntil([this] { return hasText(seen()); }));
    EXPECT_EQ(widgetOf(window(), player().picDisplay)->x(), -200);
    // The server shows a shorter text again.
    player().lbl_Info.setCaption("Krátce");
    player().lbl_Info_SH.setCaption("Krátce");
    player().picDisplay.setWidth(player().lbl_Info.Width() + 20);
    slideTo(60);
}

TEST_F(Strip, ComesBackWithTheWindow) {
    slideTo(0);
    player().setVisible(false);
    player().picDisplay.setLeft(300); // while the window is hidden
    player().setVisible(true);
    ASSERT_TRUE(serveUntil([this] { return window().windowHandle()->isExposed(); }));
    player().picDisplay.setLeft(270);
    EXPECT_TRUE(serveUntil([this] { return seen() == painted(); }));
}

TEST_F(Strip, TicksSlowlyWhileTheWindowIsMinimised) {
    player().Timer1.setEnabled(true);
    EXPECT_EQ(player().Timer1.Interval(), layout::TIMER_INTERVAL);
    player().setWindowState(Form::WindowState::minimised);
    EXPECT_TRUE(
        serveUntil([this] { return player().Timer1.Interval() == layout::UNSEEN_TIMER_INTERVAL; }));
    EXPECT_TRUE(player().Timer1.Enabled());
    player().setWindowState(Form::WindowState::normal);
    EXPECT_TRUE(
        serveUntil([this] { return player().Timer1.Interval() == layout::TIMER_INTERVAL; }));
    const float left = player().picDisplay.Left();
    EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() < left; }));
}

TEST_F(Strip, TicksSlowlyWhileOtherWindowsCoverAllOfIt) {
    player().Timer1.setEnabled(true);
    const auto ticksEvery = [this](int interval) {
        return serveUntil([&] { return player().Timer1.Interval() == interval; });
    };
    // Covers the screen: the window manager may yet move the window.
    QWidget cover(nullptr, Qt::X11BypassWindowManagerHint);
    cover.setGeometry(window().screen()->geometry());
    cover.show();
    EXPECT_TRUE(ticksEvery(layout::UNSEEN_TIMER_INTERVAL));
    cover.move(window().geometry().right() - 20, 0); // the window's right edge is still covered
    EXPECT_TRUE(ticksEvery(layout::TIMER_INTERVAL));
    cover.move(0, 0);
    EXPECT_TRUE(ticksEvery(layout::UNSEEN_TIMER_INTERVAL));
    cover.hide();
    EXPECT_TRUE(ticksEvery(layout::TIMER_INTERVAL));
    const float left = player().picDisplay.Left();
    EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() < left; }));
}

} // namespace
} // namespace zvonivec
