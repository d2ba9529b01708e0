// The menu window: highlight, switches, commands, showing and hiding.

#include "controls/private/font.h"
#include "popup/layout.h"
#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QCursor>
#include <QFontMetrics>
#include <qtestsupport_widgets.h>

namespace zvonivec {
namespace {

constexpr std::int16_t SEPARATORS[] = {2, 3, 9};
constexpr std::int16_t ITEMS_THAT_NEED_A_FILE[] = {1, 4, 5, 6, 7, 8};
constexpr std::int16_t ITEMS_ALWAYS_AVAILABLE[] = {0, 10, 11, 12, 13, 14};

class Menu : public PlayerTest {
protected:
    void SetUp() override { start(); }

    Label& item(std::int16_t index) { return popup().lblPopup[static_cast<std::size_t>(index)]; }
    CheckBox& box(std::int16_t index) { return popup().chkPopup[static_cast<std::size_t>(index)]; }

    void show() {
        player().ShowPopupMenu();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&popupWindow()));
    }
    /// Returns the names of the lit controls. All others must have the menu's colour.
    std::vector<std::string> lit() {
        std::vector<std::string> names;
        const auto look = [&](const Control& control) {
            if (control.BackColor() == HIGHLIGHT_BACK_COLOR) {
                names.push_back(control.Name());
            } else {
                EXPECT_EQ(control.BackColor(), MENU_BACK_COLOR) << control.Name();
            }
        };
        for (const Label& label : popup().lblPopup) {
            look(label);
        }
        for (const CheckBox& check : popup().chkPopup) {
            look(check);
        }
        return names;
    }
    using Names = std::vector<std::string>;
};

TEST_F(Menu, AppearsWithItsCornerAtThePointer) {
    for (const QPoint place : {QPoint(300, 200), QPoint(1270, 790), QPoint(0, 0)}) {
        QCursor::setPos(place);
        show();
        EXPECT_EQ(popup().Left(), toTwips(place.x()));
        EXPECT_EQ(popup().Top(), toTwips(place.y()));
        EXPECT_EQ(popupWindow().size(), QSize(168, 289));
        popup().Form_Deactivate();
    }
}

TEST_F(Menu, FitsAllItsTexts) {
    const QFontMetrics metrics(formFont(true));
    for (const Label& label : popup().lblPopup) {
        const QWidget& widget = widgetOfControl(label);
        if (label.Caption().starts_with("--")) {
            continue; // a separator, which may be cut at both ends
        }
        EXPECT_LE(metrics.horizontalAdvance(QString::fromStdString(label.Caption())),
                  widget.width())
            << label.Caption();
        EXPECT_LE(metrics.height(), widget.height()) << label.Caption();
        EXPECT_TRUE(popupWindow().rect().contains(widget.geometry())) << label.Caption();
    }
    for (const CheckBox& check : popup().chkPopup) {
        const int boxAndGap = 17;
        EXPECT_LE(boxAndGap + metrics.horizontalAdvance(QString::fromStdString(check.Caption())),
                  widgetOfControl(check).width())
            << check.Caption();
    }
}

TEST_F(Menu, AnItemLightsUpUnderThePointerAndStaysLit) {
    open("a.mp3");
    show();
    for (const Label& label : popup().lblPopup) {
        if (!label.Caption().starts_with("--")) {
            moveOver(label);
            EXPECT_EQ(lit(), Names{label.Name()});
        }
    }
    moveOver(popup().picPopup);
    EXPECT_EQ(lit().size(), 1U);
}

TEST_F(Menu, ASwitchLightsUpUnderThePointer) {
    show();
    moveOver(item(0));
    for (const CheckBox& check : popup().chkPopup) {
        moveOver(check);
        EXPECT_EQ(lit(), Names{check.Name()});
    }
    moveOver(item(13));
    EXPECT_EQ(lit(), Names{"lblPopup_13"});
}

TEST_F(Menu, SeparatorsAndDimmedItemsKeepTheHighlight) {
    show();
    moveOver(item(14));
    for (const std::int16_t index : SEPARATORS) {
        moveOver(item(index));
        EXPECT_EQ(lit(), Names{"lblPopup_14"}) << index;
    }
    for (const std::int16_t index : ITEMS_THAT_NEED_A_FILE) {
        moveOver(item(index));
        EXPECT_EQ(lit(), Names{"lblPopup_14"}) << index;
    }
}

TEST_F(Menu, MovingOverALitItemChangesNothing) {
    show();
    moveOver(item(0));
    box(0).setBackColor(HIGHLIGHT_BACK_COLOR); // would be lost if the colours were set again
    moveOver(item(0), {5, 5});
    EXPECT_EQ(lit(), (Names{"lblPopup_0", "chkPopup_0"}));
    item(1).setBackColor(HIGHLIGHT_BACK_COLOR);
    popup().chkPopup_MouseMove(0, {});
    EXPECT_EQ(lit().size(), 3U);
}

TEST_F(Menu, SeparatorsDoNothing) {
    show();
    engine().calls.clear();
    for (const std::int16_t index : SEPARATORS) {
        click(item(index));
        EXPECT_TRUE(popup().Visible()) << index;
    }
    EXPECT_TRUE(engine().calls.empty());
}

TEST_F(Menu, ItemsThatNeedAFileDoNothingWithoutAFile) {
    show();
    engine().calls.clear();
    for (const std::int16_t index : ITEMS_THAT_NEED_A_FILE) {
        click(item(index));
        EXPECT_TRUE(popup().Visible()) << index;
        EXPECT_FALSE(player().gClickArmed);
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_TRUE(boxes().boxes.empty());
}

TEST_F(Menu, ItemsThatNeedAFileAreDimmedButEnabled) {
    for (const std::int16_t index : ITEMS_THAT_NEED_A_FILE) {
        EXPECT_TRUE(item(index).Enabled());
        EXPECT_EQ(item(index).ForeColor(), DISABLED_ITEM_COLOR);
    }
    for (const std::int16_t index : ITEMS_ALWAYS_AVAILABLE) {
        EXPECT_EQ(item(index).ForeColor(), ENABLED_ITEM_COLOR);
    }
}

TEST_F(Menu, OpenOpensAFile) {
    show();
    engine().tracks.try_emplace("b.mp3");
    dialog().answers = {"b.mp3"};
    dialog().During = [this] { EXPECT_FALSE(popup().Visible()); };
    click(item(0));
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_EQ(engine().URL(), "b.mp3");
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(Menu, PropertiesAreShownInABox) {
    open("a.mp3");
    show();
    boxes().During = [this] { EXPECT_FALSE(popup().Visible()); };
    click(item(1));
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, player().BuildPropertiesText());
}

TEST_F(Menu, AboutShowsABox) {
    show();
    click(item(10));
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].title, "O programu Zvonivec MP3 Player 0.0.7");
    EXPECT_FALSE(popup().Visible());
}

TEST_F(Menu, MinimiseMinimises) {
    show();
    click(item(11));
    EXPECT_TRUE(
        serveUntil([this] { return player().WindowState() == Form::WindowState::minimised; }));
    EXPECT_TRUE(player().Loaded());
}

TEST_F(Menu, QuitEndsTheProgramAndUnloadsThePopupFirst) {
    open("a.mp3");
    show();
    bool popupGone = false;
    engine().During = [&](const std::string& call) {
        popupGone = popupGone || (call == "setURL " && !popup().Loaded());
    };
    click(item(12));
    EXPECT_TRUE(popupGone);
    EXPECT_FALSE(player().Loaded());
}

TEST_F(Menu, TheVolumeItemsStepByTen) {
    show();
    click(item(13));
    EXPECT_EQ(engine().settings().volume(), 60);
    EXPECT_EQ(player().lblStatus.Caption(), "60% hlasitost");
    show();
    click(item(14));
    show();
    click(item(14));
    EXPECT_EQ(engine().settings().volume(), 40);
    EXPECT_FALSE(popup().Visible());
}

struct ButtonItem {
    std::int16_t index;
    const char* call;
};

void PrintTo(const ButtonItem& item, std::ostream* out) {
    *out << item.call;
}

class MenuOfButtons : public Menu, public testing::WithParamInterface<ButtonItem> {};

TEST_P(MenuOfButtons, DoesWhatTheButtonDoes) {
    const std::int16_t index = GetParam().index;
    open("a.mp3");
    show();
    engine().calls.clear();
    click(item(index));
    EXPECT_EQ(engine().count(GetParam().call), 1);
    EXPECT_TRUE(shows(player().imgDisplay_Mark, static_cast<std::size_t>(index - 4 + 22)));
    EXPECT_FALSE(player().gClickArmed);
    EXPECT_FALSE(popup().Visible());
}

INSTANTIATE_TEST_SUITE_P(Items, MenuOfButtons,
                         testing::Values(ButtonItem{4, "stop"}, ButtonItem{5, "pause"},
                                         ButtonItem{6, "play"}, ButtonItem{7, "stop"},
                                         ButtonItem{8, "stop"}),
                         [](const auto& tested) { return std::to_string(tested.param.index); });

TEST_F(Menu, ARightClickOnAnItemCountsToo) {
    show();
    click(item(13), Qt::RightButton);
    EXPECT_EQ(engine().settings().volume(), 60);
    show();
    click(item(13), Qt::MiddleButton);
    EXPECT_EQ(engine().settings().volume(), 60);
    EXPECT_TRUE(popup().Visible());
}

TEST_F(Menu, AReleaseElsewhereIsNoClick) {
    show();
    press(item(13));
    release(item(13), Qt::LeftButton, {2, 30});
    EXPECT_EQ(engine().settings().volume(), 50);
    press(box(0));
    release(box(0), Qt::LeftButton, {2, 40});
    EXPECT_EQ(box(0).Value(), 0);
    EXPECT_TRUE(popup().Visible());
}

TEST_F(Menu, ASwitchTogglesAndClosesTheMenu) {
    for (const std::int16_t index : {std::int16_t{0}, std::int16_t{1}}) {
        const int before = box(index).Value();
        show();
        click(box(index));
        EXPECT_EQ(box(index).Value(), 1 - before);
        EXPECT_FALSE(popup().Visible());
        show();
        click(box(index));
        EXPECT_EQ(box(index).Value(), before);
        show();
        click(box(index), Qt::RightButton);
        EXPECT_EQ(box(index).Value(), before);
        EXPECT_TRUE(popup().Visible());
        popup().Form_Deactivate();
    }
}

TEST_F(Menu, TheRepeatSwitchCountsAtTheEndOfATrack) {
    open("a.mp3");
    show();
    click(box(1));
    engine().reachEnd();
    EXPECT_EQ(engine().playState(), PlayState::stopped);
    show();
    click(box(1));
    player().WMP->controls().play();
    engine().reachEnd();
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(Menu, HidingClearsTheHighlightAndProcessesEvents) {
    show();
    moveOver(item(0));
    bool passed = false;
    Application::post([&] { passed = true; });
    popup().Form_Deactivate();
    EXPECT_TRUE(lit().empty());
    EXPECT_TRUE(passed);
    EXPECT_FALSE(popup().Visible());
    EXPECT_FALSE(popupWindow().isVisible());
}

TEST_F(Menu, EscapeHidesItFromEitherWindow) {
    show();
    input::key(*popupWindow().windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(popup().Visible());
    show();
    input::key(*window().windowHandle(), Qt::Key_A);
    EXPECT_TRUE(popup().Visible());
    input::key(*window().windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(popup().Visible());
    input::key(*window().windowHandle(), Qt::Key_Escape); // does nothing without the menu
    EXPECT_TRUE(player().Visible());
}

TEST_F(Menu, IsUsedAgainAndAgain) {
    const std::uintptr_t handle = popup().hWnd();
    for (int i = 0; i < 3; ++i) {
        show();
        EXPECT_TRUE(popup().Visible());
        popup().Form_Deactivate();
    }
    EXPECT_EQ(popup().hWnd(), handle);
}

TEST_F(Menu, PropertiesOfAFileThatFailsWhileTheMenuHidesAreNotShown) {
    open("a.mp3");
    show();
    Application::post([this] { engine().fail(); }); // runs while the menu hides
    popup().lblPopup_Click(1);
    ASSERT_EQ(boxes().boxes.size(), 1U); // the error's
    EXPECT_EQ(boxes().boxes[0].title, "Zvonivec MP3 Player 0.0.7");
}

TEST_F(Menu, NothingIsDoneWhenTheProgramEndsWhileTheMenuCloses) {
    open("a.mp3");
    for (const std::int16_t index : {std::int16_t{0}, std::int16_t{10}, std::int16_t{13}}) {
        renew();
        start();
        show();
        Application::post([this] { player().CloseApplication(); });
        popup().lblPopup_Click(index);
        EXPECT_EQ(dialog().shown, 0);
        EXPECT_TRUE(boxes().boxes.empty());
        EXPECT_EQ(engine().settings().volume(), 50);
        EXPECT_FALSE(player().Loaded());
    }
}

TEST_F(Menu, AssistiveTechnologyCanUseIt) {
    show();
    item(13).press();
    EXPECT_EQ(engine().settings().volume(), 60);
    EXPECT_EQ(item(13).accessibleTraits().role, AccessibleTraits::Role::menuItem);
    EXPECT_EQ(player().lblStatus.accessibleTraits().role, AccessibleTraits::Role::text);
}

} // namespace
} // namespace zvonivec
