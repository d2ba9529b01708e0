// The menu window: places of its items, and the fixture of tests that use it.
#pragma once

#include "tests/desktop/playing_test.h"

namespace support {

namespace menu {

inline constexpr int WIDTH = 168;
inline constexpr int HEIGHT = 289;

inline constexpr Colour BACK = 0x00A0C0;
inline constexpr Colour HIGHLIGHT = 0x00C0C0;
inline constexpr Colour AVAILABLE = 0xFFFF80;
inline constexpr Colour DIMMED = 0xC0C000;

/// One line of the menu.
struct Line {
    const char* text;
    int top;
    bool isSwitch = false;
    bool needsFile = false;

    [[nodiscard]] constexpr bool isSeparator() const { return text[0] == '-'; }
    [[nodiscard]] constexpr Rectangle place() const {
        return isSwitch ? Rectangle{11, top, 145, 13} : Rectangle{8, top, 148, 13};
    }
};

inline constexpr Line OPEN{" Otevřít...", 8};
inline constexpr Line PROPERTIES{" Vlastnosti", 24, false, true};
inline constexpr Line SEPARATOR1{"-", 40};
inline constexpr Line ON_TOP{"Vždy navrchu", 56, true};
inline constexpr Line REPEAT{"Přehrávat opakovaně", 72, true};
inline constexpr Line LOUDER{" Zesílit hlasitost o 10%", 88};
inline constexpr Line QUIETER{" Zeslabit hlasitost o 10%", 104};
inline constexpr Line SEPARATOR2{"-", 120};
inline constexpr Line REWIND{" Přetočit dozadu", 136, false, true};
inline constexpr Line PAUSE{" Pozastavit", 152, false, true};
inline constexpr Line PLAY{" Přehrát", 168, false, true};
inline constexpr Line STOP{" Zastavit", 184, false, true};
inline constexpr Line FORWARD{" Přetočit dopředu", 200, false, true};
inline constexpr Line SEPARATOR3{"-", 216};
inline constexpr Line ABOUT{" O programu", 232};
inline constexpr Line MINIMISE{" Minimalizovat", 248};
inline constexpr Line QUIT{" Konec", 264};

/// From top to bottom.
inline constexpr std::array LINES{OPEN,    PROPERTIES, SEPARATOR1, ON_TOP,   REPEAT, LOUDER,
                                  QUIETER, SEPARATOR2, REWIND,     PAUSE,    PLAY,   STOP,
                                  FORWARD, SEPARATOR3, ABOUT,      MINIMISE, QUIT};

} // namespace menu

class MenuTest : public PlayingTest {
protected:
    explicit MenuTest(const DisplayOptions& options = {}) : PlayingTest(options) {}

    /// The menu's window while it is shown.
    [[nodiscard]] std::optional<Window> menu() const;
    /// Right-clicks on the player and waits for the menu.
    void openMenu(Point place = player::BODY);
    [[nodiscard]] bool waitUntilMenuIsGone() const;
    /// Moves the player's window, as a window manager does, and waits until it is there.
    void moveWindow(Point wanted);
    void moveTo(const menu::Line& line) const;
    using DesktopTest::moveTo;
    /// In the menu that is open.
    void click(const menu::Line& line, int button = 1) const;
    using DesktopTest::click;
    /// Opens the menu and clicks.
    void choose(const menu::Line& line);
};

} // namespace support
