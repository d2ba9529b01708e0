// The menu: its place, its end, and the commands of its lines.
#include "tests/desktop/menu.h"

namespace support {

namespace {

constexpr Colour BACKDROP = 0x404040;

DisplayOptions under(const std::string& windowManager) {
    return {.windowManager = windowManager};
}

/// Under window managers that place windows themselves, and without any.
class MenuWindowTest : public MenuTest, public testing::WithParamInterface<std::string> {
protected:
    MenuWindowTest() : MenuTest(under(GetParam())) {}

    void expectMenuAt(Point pointer) {
        const auto shown = menu();
        ASSERT_TRUE(shown);
        EXPECT_EQ(shown->place(), (Rectangle{pointer.x, pointer.y, menu::WIDTH, menu::HEIGHT}));
        EXPECT_TRUE(shown->isUnmanaged());
        EXPECT_FALSE(shown->hasFrame());
        for (const Window& managed : managedWindows(display_)) {
            EXPECT_FALSE(managed == *shown);
        }
    }
    /// Moves the player so that a place of it lies at a place of the screen.
    void movePlayer(Point place, Point onScreen) {
        moveWindow({onScreen.x - place.x, onScreen.y - place.y});
    }
};

TEST_P(MenuWindowTest, AppearsWithItsCornerAtThePointer) {
    for (const Point place : {player::BODY, player::INFORMATION.middle(), Point{220, 245}}) {
        openMenu(place);
        expectMenuAt(player_->onScreen(place));
        keyboard_.key("Escape");
        EXPECT_TRUE(waitUntilMenuIsGone());
    }
}

TEST_P(MenuWindowTest, RunsOffTheScreenNearItsEdges) {
    const Point corner{display_.width() - 12, display_.height() - 8};
    movePlayer(player::BODY, corner);
    openMenu();
    expectMenuAt(corner);
    EXPECT_TRUE(waitUntil([&] { // it is mapped before it is painted
        return Screenshot(display_, {corner.x, corner.y, 12, 8}).at(6, 6) == menu::BACK;
    }));
}

TEST_P(MenuWindowTest, HidesAtAClickOnThePlayerWhichStillCounts) {
    openMenu();
    click(player::VOLUME.middle());
    EXPECT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
}

TEST_P(MenuWindowTest, HidesAtAClickOnAnotherProgramWhichStillGetsIt) {
    PlainWindow other(display_, {20, 600, 200, 100}, BACKDROP, PlainWindow::Kind::ordinary);
    for (const int button : {1, 2, 3}) {
        openMenu();
        other.takeClicks();
        pointer_.click(other.window().place().middle(), button);
        EXPECT_TRUE(waitUntilMenuIsGone());
        EXPECT_TRUE(waitUntil([&] { return !other.takeClicks().empty(); }));
    }
}

TEST_P(MenuWindowTest, HidesAtAClickOnTheDesktop) {
    for (const int button : {1, 2, 3}) {
        openMenu();
        pointer_.click({10, 10}, button);
        EXPECT_TRUE(waitUntilMenuIsGone()) << button;
        keyboard_.key("Escape"); // closes the window manager's own menu
    }
}

TEST_P(MenuWindowTest, HidesAtEscape) {
    openMenu();
    keyboard_.key("Escape");
    EXPECT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(player_->window().isShown());
}

TEST_P(MenuWindowTest, StaysWhileThePointerWandersAndTheWheelTurns) {
    openMenu();
    pointer_.moveTo({10, 10});
    click(Point{30, 150}, 4);
    moveTo(player::BUTTONS[player::close].middle());
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::hover); }));
    EXPECT_TRUE(menu());
}

TEST_P(MenuWindowTest, ASecondRightClickBringsItToThePointer) {
    openMenu();
    const Point other{168, 40};
    click(other, 3);
    const Point wanted = player_->onScreen(other);
    EXPECT_TRUE(waitUntil([&] {
        const auto shown = menu();
        return shown && shown->place().x == wanted.x && shown->place().y == wanted.y;
    }));
    expectMenuAt(wanted);
    click(menu::LOUDER);
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
}

TEST_P(MenuWindowTest, LiesAboveTheOtherWindows) {
    const PlainWindow other(display_, {400, 200, 500, 400}, BACKDROP, PlainWindow::Kind::ordinary);
    if (display_.hasWindowManager()) {
        player_->window().activate();
        ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    } else {
        player_->window().raise();
    }
    openMenu();
    const Rectangle place = menu().value().place();
    EXPECT_TRUE(waitUntil([&] { return Screenshot(display_, place).at(3, 3) == menu::BACK; }));
    EXPECT_EQ(Screenshot(display_, place).at(menu::WIDTH - 4, menu::HEIGHT - 4), menu::BACK);
}

INSTANTIATE_TEST_SUITE_P(Under, MenuWindowTest,
                         testing::ValuesIn(desktops({"openbox", "xfwm4", ""})), desktopName);

class MenuUnderManagerTest : public MenuWindowTest {};

TEST_P(MenuUnderManagerTest, HidesWhenTheUserSwitchesWindowsByKeyboard) {
    const PlainWindow other(display_, {20, 600, 200, 100}, BACKDROP, PlainWindow::Kind::ordinary);
    openMenu();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    const Screenshot middle = player_->screenshot(player::LOGO);
    keyboard_.press("Alt_L");
    keyboard_.key("Tab");
    // It offers the windows in the middle of the screen, where the player is.
    EXPECT_TRUE(waitUntil([&] { return !(player_->screenshot(player::LOGO) == middle); }));
    keyboard_.release("Alt_L");
    EXPECT_TRUE(waitUntil([&] { return other.window().isActive(); }));
    EXPECT_TRUE(waitUntilMenuIsGone());
}

TEST_P(MenuUnderManagerTest, HidesWhenAnotherProgramTakesTheKeyboard) {
    const PlainWindow other(display_, {20, 600, 200, 100}, BACKDROP, PlainWindow::Kind::ordinary);
    openMenu();
    other.window().activate();
    EXPECT_TRUE(waitUntilMenuIsGone());
}

INSTANTIATE_TEST_SUITE_P(Under, MenuUnderManagerTest,
                         testing::ValuesIn(managedDesktops({"openbox", "xfwm4"})), desktopName);

class TwoMonitorsTest : public MenuTest {
protected:
    TwoMonitorsTest() : MenuTest({.windowManager = "openbox", .width = 900, .secondWidth = 700}) {}
};

TEST_F(TwoMonitorsTest, AppearsAtThePointerOnEither) {
    const int middle = (900 - player::WIDTH + 1) / 2; // where the player puts itself at first
    ASSERT_TRUE(waitUntil([&] { return player_->window().place().x == middle; }));
    for (const Point wanted : {Point{100, 50}, Point{1000, 100}, Point{750, 380}}) {
        moveWindow(wanted);
        const Point pointer = player_->onScreen(player::BODY);
        openMenu();
        EXPECT_EQ(menu().value().place(),
                  (Rectangle{pointer.x, pointer.y, menu::WIDTH, menu::HEIGHT}));
        keyboard_.key("Escape");
        EXPECT_TRUE(waitUntilMenuIsGone());
    }
}

// --- What it shows ----------------------------------------------------------------------------

class MenuLooksTest : public MenuTest {
protected:
    [[nodiscard]] Screenshot of(const menu::Line& line) const {
        const Rectangle place = menu().value().place();
        return Screenshot(display_, line.place().movedBy({place.x, place.y}));
    }
    /// A line's background is in its top left corner; a switch's right of its box.
    [[nodiscard]] Colour backOf(const menu::Line& line) const {
        return of(line).at(line.isSwitch ? 15 : 0, 0);
    }
    [[nodiscard]] bool shows(const menu::Line& line, Colour text) const {
        const Screenshot seen = of(line);
        Picture expected = Picture::filled(line.place().width, line.place().height, backOf(line));
        expected.write(line.text, {line.isSwitch ? 17 : 0, 0}, text, {.bold = true});
        return differentPixels(seen, line.isSwitch ? expected.part({17, 0, 128, 13}) : expected,
                               {line.isSwitch ? 17 : 0, 0}) == 0;
    }
    [[nodiscard]] std::vector<std::string> lit() const {
        std::vector<std::string> names;
        for (const menu::Line& line : menu::LINES) {
            if (backOf(line) == menu::HIGHLIGHT) {
                names.emplace_back(line.text);
            }
        }
        return names;
    }
    [[nodiscard]] bool waitUntilLit(const menu::Line& line) const {
        return waitUntil([&] { return lit() == std::vector<std::string>{line.text}; });
    }
    /// The box of a switch has a tick in it.
    [[nodiscard]] bool isOn(const menu::Line& line) const {
        const Screenshot seen = of(line);
        int bright = 0;
        for (int y = 2; y < 11; ++y) {
            for (int x = 2; x < 11; ++x) {
                bright += ((seen.at(x, y) >> 16) & 0xFF) > 128 ? 1 : 0;
            }
        }
        return bright > 5;
    }
};

TEST_F(MenuLooksTest, EveryTextIsWholeAndInItsColour) {
    openMenu();
    for (const bool playing : {false, true}) {
        for (const menu::Line& line : menu::LINES) {
            if (!line.isSeparator()) {
                EXPECT_TRUE(waitUntil([&] {
                    return shows(line, line.needsFile && !playing ? menu::DIMMED : menu::AVAILABLE);
                })) << line.text
                    << playing;
            }
        }
        if (!playing) {
            keyboard_.key("Escape");
            ASSERT_TRUE(waitUntilMenuIsGone());
            playFile(5);
            openMenu();
        }
    }
}

TEST_F(MenuLooksTest, TheLineUnderThePointerIsLit) {
    openMenu();
    for (const menu::Line& line : menu::LINES) {
        if (!line.isSeparator() && !line.needsFile) {
            moveTo(line);
            EXPECT_TRUE(waitUntilLit(line)) << line.text;
        }
    }
    // Events come in order: when the last one shows, the others have been dealt with.
    moveTo(menu::ABOUT);
    moveTo(menu::SEPARATOR3);
    moveTo(menu::FORWARD);
    moveTo(menu::PROPERTIES);
    EXPECT_TRUE(waitUntilLit(menu::ABOUT));
    moveTo(menu::OPEN);
    EXPECT_TRUE(waitUntilLit(menu::OPEN));
    keyboard_.key("Escape");
    EXPECT_TRUE(waitUntilMenuIsGone());
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return shows(menu::QUIT, menu::AVAILABLE); }));
    EXPECT_TRUE(lit().empty());
}

TEST_F(MenuLooksTest, TheSwitchesShowTheirStates) {
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return isOn(menu::REPEAT); }));
    EXPECT_FALSE(isOn(menu::ON_TOP));
    click(menu::REPEAT);
    EXPECT_TRUE(waitUntilMenuIsGone());
    choose(menu::ON_TOP);
    EXPECT_TRUE(waitUntilMenuIsGone());
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return isOn(menu::ON_TOP); }));
    EXPECT_FALSE(isOn(menu::REPEAT));
}

// --- What its lines do ------------------------------------------------------------------------

using MenuLinesTest = MenuTest;

TEST_F(MenuLinesTest, WithoutAFileItsLinesDoNothingAndTheMenuStays) {
    openMenu();
    for (const menu::Line& line : menu::LINES) {
        if (line.needsFile || line.isSeparator()) {
            click(line);
        }
    }
    click(menu::LOUDER); // events come in order: the clicks before have been served
    EXPECT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    EXPECT_TRUE(player_->showsIdleLook());
}

TEST_F(MenuLinesTest, OpenPlaysAFile) {
    const std::string file = folder_.file("noise.mp3");
    ASSERT_FALSE(makeFile(file, 20).empty());
    choose(menu::OPEN);
    chooseFile(file);
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
}

TEST_F(MenuLinesTest, TheButtonsOfTheMenuAreThoseOfThePlayer) {
    playFile(20);
    choose(menu::PAUSE);
    EXPECT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::pause); }));
    EXPECT_TRUE(recording_->waitForSilence());
    choose(menu::PLAY);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::play); }));
    EXPECT_TRUE(waitForSound());
    choose(menu::STOP);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::stop); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:00"); }));
    choose(menu::FORWARD);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::forward); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:20"); }));
    choose(menu::REWIND);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::rewind); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:00"); }));
    choose(menu::PLAY);
    EXPECT_TRUE(waitForSound());
}

TEST_F(MenuLinesTest, LouderAndQuieterChangeTheVolume) {
    choose(menu::LOUDER);
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    choose(menu::QUIETER);
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("50% hlasitost"); }));
    choose(menu::QUIETER);
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("40% hlasitost"); }));
}

TEST_F(MenuLinesTest, MinimiseMinimises) {
    choose(menu::MINIMISE);
    EXPECT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    EXPECT_FALSE(menu());
    player_->window().activate();
    EXPECT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
}

TEST_F(MenuLinesTest, QuitEndsTheProgram) {
    choose(menu::QUIT);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(player_->messages(), "");
}

TEST_F(MenuLinesTest, WithoutRepeatATrackStopsAtItsEnd) {
    choose(menu::REPEAT);
    ASSERT_TRUE(waitUntilMenuIsGone());
    playFile(2);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::stop); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:00"); }));
    EXPECT_TRUE(waitUntil([&] { return player_->barValue() == 0.0; }));
    EXPECT_TRUE(recording_->waitForSilence());
    click(player::play);
    EXPECT_TRUE(waitForSound());
}

// --- Boxes ------------------------------------------------------------------------------------

class InformationBoxTest : public MenuTest {
protected:
    [[nodiscard]] std::optional<Window> waitForBox(const std::string& title) const {
        return waitForWindowWithKeyboard(
            [&](const Window& window) { return window.title() == title; });
    }
    void expectWithinScreen(const Window& box) const {
        const Rectangle place = box.place();
        EXPECT_GE(place.x, 0);
        EXPECT_GE(place.y, 0);
        EXPECT_LE(place.x + place.width, display_.width());
        EXPECT_LE(place.y + place.height, display_.height());
    }
};

TEST_F(InformationBoxTest, PropertiesBelongToThePlayingTrackWhichGoesOn) {
    playFile(30);
    choose(menu::PROPERTIES);
    const auto box = waitForBox(std::string(player::TITLE) + " - vlastnosti souboru MP3");
    ASSERT_TRUE(box);
    expectWithinScreen(*box);
    box->moveTo({0, 0}); // off the display
    EXPECT_TRUE(waitForSound());
    const Screenshot before = player_->screenshot(player::INFORMATION);
    EXPECT_TRUE(waitUntil([&] { return !(player_->screenshot(player::INFORMATION) == before); }));
    EXPECT_TRUE(waitForSound());
    // The player takes no clicks meanwhile.
    click(player::VOLUME.middle());
    answer(*box, "Return");
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("100% hlasitost"); }));
    EXPECT_TRUE(waitForSound());
}

TEST_F(InformationBoxTest, AboutIsAnsweredByEscapeToo) {
    choose(menu::ABOUT);
    const auto box = waitForBox(std::string("O programu ") + player::TITLE);
    ASSERT_TRUE(box);
    expectWithinScreen(*box);
    answer(*box, "Escape");
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    choose(menu::LOUDER);
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
}

} // namespace

} // namespace support
