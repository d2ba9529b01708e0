// The keyboard in the main window.

#include "platform/window_place.h"
#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>
#include <qtestsupport_widgets.h>

namespace zvonivec {
namespace {

class KeyboardKeys : public PlayerTest {
protected:
    void SetUp() override {
        start();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        player().Timer1.setEnabled(false);
    }
    void openTrack(double duration = 180) {
        engine().tracks["a.mp3"].duration = duration;
        open("a.mp3");
        player().Timer1.setEnabled(false);
        engine().calls.clear();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        input::key(*window().windowHandle(), key, modifiers);
    }
    /// Presses a key, and returns whether the system isn't to handle it as well.
    bool takes(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(&window(), &press);
        return press.isAccepted();
    }
    std::string focused() {
        const Control* control = player().focusedControl();
        return control != nullptr ? control->Name() : std::string();
    }
    void focus(const Control& control) {
        for (int i = 0; i < 20 && player().focusedControl() != &control; ++i) {
            key(Qt::Key_Tab);
        }
        ASSERT_EQ(player().focusedControl(), &control);
    }
    std::int32_t volume() { return engine().settings().volume(); }
    /// Returns the ring, or null when none is shown.
    QWidget* ring() {
        auto* found = window().findChild<QWidget*>("focusRing");
        return found != nullptr && found->isVisible() ? found : nullptr;
    }
    using Names = std::vector<std::string>;
};

TEST_F(KeyboardKeys, TabGoesAroundWhatCanBeUsed) {
    EXPECT_EQ(focused(), "");
    openTrack();
    EXPECT_EQ(focused(), "");
    const Names all{"imgLogo",      "imgButtons_0", "imgButtons_1", "imgButtons_2", "imgButtons_3",
                    "imgButtons_4", "PB",           "imgVolume",    "imgButtons_5", "imgButtons_6"};
    Names seen;
    for (std::size_t i = 0; i < all.size(); ++i) {
        key(Qt::Key_Tab);
        seen.push_back(focused());
    }
    EXPECT_EQ(seen, all);
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "imgLogo");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focused(), "imgButtons_6");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focused(), "imgButtons_5");
}

TEST_F(KeyboardKeys, TabLeavesOutWhatNeedsAFile) {
    Names seen;
    for (int i = 0; i < 5; ++i) {
        key(Qt::Key_Tab);
        seen.push_back(focused());
    }
    EXPECT_EQ(seen, (Names{"imgLogo", "imgVolume", "imgButtons_5", "imgButtons_6", "imgLogo"}));
}

TEST_F(KeyboardKeys, TheFocusLeavesAButtonThatIsDisabled) {
    openTrack();
    focus(player().imgButtons[2]);
    engine().fail();
    EXPECT_NE(focused(), "imgButtons_2");
    key(Qt::Key_Tab);
    EXPECT_TRUE(player().focusedControl()->Enabled());
}

TEST_F(KeyboardKeys, TheRingIsShownOnlySinceAKeyWasUsed) {
    openTrack();
    const QImage before = pictureOf(window());
    EXPECT_EQ(ring(), nullptr);
    click(player().imgButtons[2]);
    EXPECT_EQ(ring(), nullptr);
    for (const Control* control : std::initializer_list<const Control*>{
             &player().imgLogo, &player().imgButtons[0], &player().PB, &player().imgVolume,
             &player().imgButtons[6]}) {
        focus(*control);
        ASSERT_NE(ring(), nullptr);
        const QRect place = widgetOfControl(*control).geometry();
        EXPECT_TRUE(ring()->geometry().contains(place));
        EXPECT_TRUE(place.adjusted(-4, -4, 4, 4).contains(ring()->geometry()));
        EXPECT_FALSE(pictureOf(window()).copy(ring()->geometry()) ==
                     before.copy(ring()->geometry()));
    }
    moveOverBody();
    EXPECT_NE(ring(), nullptr);
    click(player().imgButtons[2]);
    EXPECT_EQ(ring(), nullptr);
    EXPECT_EQ(focused(), "");
}

TEST_F(KeyboardKeys, TheRingLetsThePointerThrough) {
    openTrack();
    focus(player().imgButtons[1]);
    press(player().imgButtons[1], Qt::LeftButton, {15, 15});
    EXPECT_TRUE(shows(player().imgButtons[1], 1 + 15));
    release(player().imgButtons[1], Qt::LeftButton, {15, 15});
    EXPECT_EQ(engine().playState(), PlayState::paused);
}

TEST_F(KeyboardKeys, SpaceAndReturnClickWhatHasTheFocus) {
    openTrack();
    focus(player().imgButtons[1]);
    key(Qt::Key_Space);
    EXPECT_EQ(engine().playState(), PlayState::paused);
    EXPECT_TRUE(shows(player().imgButtons[1], 1 + 1));
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 1 + 22));
    focus(player().imgButtons[2]);
    key(Qt::Key_Return);
    EXPECT_EQ(engine().playState(), PlayState::playing);
    focus(player().imgVolume);
    key(Qt::Key_Enter);
    EXPECT_EQ(volume(), 60);
    focus(player().imgLogo);
    key(Qt::Key_Space);
    EXPECT_EQ(dialog().shown, 2); // the first has opened the track
    input::repeatKey(*window().windowHandle(), Qt::Key_Space);
    EXPECT_EQ(dialog().shown, 2);
    EXPECT_FALSE(player().gClickArmed);
    EXPECT_FALSE(player().gButtonDown);
}

TEST_F(KeyboardKeys, WithoutAFocusSpaceAndReturnDoNothing) {
    openTrack();
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(dialog().shown, 1);
}

TEST_F(KeyboardKeys, TheBarSeeks) {
    openTrack(3600);
    focus(player().PB);
    engine().position = 1000;
    struct {
        Qt::Key key;
        double position;
    } const steps[] = {{Qt::Key_Right, 1005}, {Qt::Key_Up, 1010},     {Qt::Key_Left, 1005},
                       {Qt::Key_Down, 1000},  {Qt::Key_PageUp, 1030}, {Qt::Key_PageDown, 1000},
                       {Qt::Key_Home, 0},     {Qt::Key_Left, -5}};
    for (const auto& step : steps) {
        key(step.key);
        EXPECT_NEAR(engine().position, step.position, 0.01);
    }
    EXPECT_EQ(volume(), 50);
    engine().position = 1000;
    engine().calls.clear();
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    EXPECT_TRUE(engine().calls.empty());
}

TEST_F(KeyboardKeys, ArrowsSeekAndStepTheVolumeEverywhere) {
    openTrack(100);
    engine().position = 50;
    for (const Control* control :
         {static_cast<Control*>(nullptr), static_cast<Control*>(&player().imgButtons[3])}) {
        if (control != nullptr) {
            focus(*control);
        }
        key(Qt::Key_Right);
        EXPECT_NEAR(engine().position, 55, 0.01);
        EXPECT_EQ(player().PB.Value(), static_cast<float>(engine().position));
        key(Qt::Key_Left);
        EXPECT_NEAR(engine().position, 50, 0.01);
        key(Qt::Key_Up);
        EXPECT_EQ(volume(), 60);
        EXPECT_EQ(player().lblStatus.Caption(), "60% hlasitost");
        key(Qt::Key_Down);
        EXPECT_EQ(volume(), 50);
        key(Qt::Key_PageUp);
        key(Qt::Key_Home);
        EXPECT_NEAR(engine().position, 50, 0.01);
    }
    input::repeatKey(*window().windowHandle(), Qt::Key_Up);
    EXPECT_EQ(volume(), 60);
}

TEST_F(KeyboardKeys, OnTheLoudspeakerAllArrowsStepTheVolume) {
    openTrack();
    focus(player().imgVolume);
    engine().calls.clear();
    key(Qt::Key_Right);
    key(Qt::Key_Up);
    EXPECT_EQ(volume(), 70);
    key(Qt::Key_Left);
    key(Qt::Key_Down);
    EXPECT_EQ(volume(), 50);
    EXPECT_TRUE(engine().calls.empty());
}

TEST_F(KeyboardKeys, AfterTheForwardButtonASeekStartsAtTheEnd) {
    openTrack(100);
    player().imgButtons[buttonForward].press();
    ASSERT_EQ(player().PB.Value(), 100);
    key(Qt::Key_Left);
    EXPECT_NEAR(engine().position, 95, 0.01);
}

TEST_F(KeyboardKeys, WithoutAFileNothingSeeks) {
    engine().calls.clear();
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    EXPECT_TRUE(engine().calls.empty());
}

struct ButtonKey {
    Qt::Key key;
    const char* call;
    std::size_t button;
};

class KeyOfButton : public KeyboardKeys, public testing::WithParamInterface<ButtonKey> {};

TEST_P(KeyOfButton, DoesWhatTheButtonDoes) {
    key(GetParam().key);
    EXPECT_TRUE(engine().calls.empty()) << "without a file";
    openTrack();
    key(GetParam().key);
    EXPECT_EQ(engine().count(GetParam().call), 1);
    EXPECT_TRUE(shows(player().imgDisplay_Mark, GetParam().button + 22));
    EXPECT_FALSE(player().gClickArmed);
    engine().calls.clear();
    key(GetParam().key, Qt::ControlModifier);
    key(GetParam().key, Qt::AltModifier);
    key(GetParam().key, Qt::ShiftModifier);
    key(GetParam().key, Qt::MetaModifier);
    EXPECT_TRUE(engine().calls.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyOfButton,
    testing::Values(ButtonKey{Qt::Key_Z, "stop", 0}, ButtonKey{Qt::Key_X, "play", 2},
                    ButtonKey{Qt::Key_C, "pause", 1}, ButtonKey{Qt::Key_V, "stop", 3},
                    ButtonKey{Qt::Key_B, "stop", 4}),
    [](const auto& tested) { return std::string(1, static_cast<char>(tested.param.key)); });

TEST_F(KeyboardKeys, CommandsHaveTheirKeys) {
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(dialog().shown, 1);
    key(Qt::Key_F1);
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].title, "O programu Zvonivec MP3 Player 0.0.7");
    key(Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(boxes().boxes.size(), 1U) << "there are no properties without a file";
    openTrack();
    key(Qt::Key_Return, Qt::AltModifier);
    ASSERT_EQ(boxes().boxes.size(), 2U);
    EXPECT_EQ(boxes().boxes[1].text, player().BuildPropertiesText());
    const CheckBox& repeat = popup().chkPopup[popupRepeat];
    const int before = repeat.Value();
    key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(repeat.Value(), 1 - before);
    input::repeatKey(*window().windowHandle(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(repeat.Value(), 1 - before);
    EXPECT_EQ(popup().chkPopup[popupOnTop].Value(), 0);
    key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(popup().chkPopup[popupOnTop].Value(), 1);
    key(Qt::Key_M, Qt::ControlModifier);
    EXPECT_TRUE(
        serveUntil([this] { return player().WindowState() == Form::WindowState::minimised; }));
    EXPECT_TRUE(player().Loaded());
}

TEST_F(KeyboardKeys, AreKeptFromTheSystemOnlyWithAnEffect) {
    openTrack();
    for (const Qt::Key name : {Qt::Key_Z, Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_B, Qt::Key_Up,
                               Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_F1}) {
        EXPECT_TRUE(takes(name)) << name;
        EXPECT_FALSE(takes(name, Qt::ShiftModifier | Qt::ControlModifier)) << name;
    }
    for (const Qt::Key name : {Qt::Key_O, Qt::Key_T, Qt::Key_R, Qt::Key_M}) {
        EXPECT_TRUE(takes(name, Qt::ControlModifier)) << name;
        EXPECT_FALSE(takes(name)) << name;
    }
    EXPECT_TRUE(takes(Qt::Key_Return, Qt::AltModifier));
    EXPECT_FALSE(takes(Qt::Key_F10));
    EXPECT_TRUE(takes(Qt::Key_F10, Qt::ShiftModifier));
    EXPECT_TRUE(takes(Qt::Key_Escape)) << "by the menu";
    EXPECT_TRUE(takes(Qt::Key_Menu));
}

TEST_F(KeyboardKeys, ControlQEndsTheProgram) {
    key(Qt::Key_Q);
    EXPECT_TRUE(player().Loaded());
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(player().Loaded());
    EXPECT_FALSE(popup().Loaded());
}

TEST_F(KeyboardKeys, TheMenuOpensAtTheFocusOrInTheMiddle) {
    // The menu's place in the window. The toolkit learns places later than the system.
    const auto menuPlace = [this] {
        return placeOf(popupWindow()).value_or(QPointF()) - placeOf(window()).value_or(QPointF());
    };
    for (const bool withShift : {false, true}) {
        SCOPED_TRACE(withShift);
        const auto openMenu = [&] {
            key(withShift ? Qt::Key_F10 : Qt::Key_Menu,
                withShift ? Qt::ShiftModifier : Qt::NoModifier);
        };
        click(player().imgDisplay_Mark); // takes the focus away
        openMenu();
        EXPECT_TRUE(popup().Visible());
        EXPECT_TRUE(serveUntil([&] { return menuPlace() == QPointF(169, 168); }))
            << menuPlace().x() << ' ' << menuPlace().y();
        EXPECT_EQ(popup().lblPopup[0].BackColor(), HIGHLIGHT_BACK_COLOR);
        key(Qt::Key_Escape);
        EXPECT_FALSE(popup().Visible());
        focus(player().imgVolume);
        openMenu();
        EXPECT_TRUE(popup().Visible());
        EXPECT_TRUE(serveUntil([&] {
            return QRectF(widgetOfControl(player().imgVolume).geometry()).contains(menuPlace());
        })) << menuPlace().x()
            << ' ' << menuPlace().y();
        key(Qt::Key_Escape);
        EXPECT_EQ(focused(), "imgVolume");
    }
    key(Qt::Key_F10);
    EXPECT_FALSE(popup().Visible());
}

TEST_F(KeyboardKeys, TheMenuLiesOnTheScreen) {
    player().setLeft(toTwips(1200));
    player().setTop(toTwips(700));
    ASSERT_TRUE(serveUntil([this] { return window().x() > 900 && window().y() > 450; }));
    key(Qt::Key_Menu);
    ASSERT_TRUE(popup().Visible());
    EXPECT_TRUE(QRect(0, 0, 1280, 800).contains(popupWindow().geometry()));
    EXPECT_EQ(popupWindow().geometry().bottomRight(), QPoint(1279, 799));
}

TEST_F(KeyboardKeys, WhileAButtonIsHeldDownKeysDoNothing) {
    openTrack();
    press(player().imgButtons[1]);
    key(Qt::Key_V);
    EXPECT_TRUE(engine().calls.empty());
    release(player().imgButtons[1]);
    EXPECT_EQ(engine().playState(), PlayState::paused);
    EXPECT_TRUE(shows(player().imgButtons[1], 1 + 1));
}

} // namespace
} // namespace zvonivec
