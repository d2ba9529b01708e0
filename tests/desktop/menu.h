// The menu window: where its items are, and the fixture of tests that use it.
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

inline constexpr Line open{" Otevřít...", 8};
inline constexpr Line properties{" Vlastnosti", 24, false, true};
inline constexpr Line separator1{"-", 40};
inline constexpr Line onTop{"Vždy navrchu", 56, true};
inline constexpr Line repeat{"Přehrávat opakovaně", 72, true};
inline constexpr Line louder{" Zesílit hlasitost o 10%", 88};
inline constexpr Line quieter{" Zeslabit hlasitost o 10%", 104};
inline constexpr Line separator2{"-", 120};
inline constexpr Line rewind{" Přetočit dozadu", 136, false, true};
inline constexpr Line pause{" Pozastavit", 152, false, true};
inline constexpr Line play{" Přehrát", 168, false, true};
inline constexpr Line stop{" Zastavit", 184, false, true};
inline constexpr Line forward{" Přetočit dopředu", 200, false, true};
inline constexpr Line separator3{"-", 216};
inline constexpr Line about{" O programu", 232};
inline constexpr Line minimise{" Minimalizovat", 248};
inline constexpr Line quit{" Konec", 264};

/// From top to bottom.
inline constexpr std::array LINES{open,    properties, separator1, onTop,    repeat, louder,
                                  quieter, separator2, rewind,     pause,    play,   stop,
                                  forward, separator3, about,      minimise, quit};

} // namespace menu

class MenuTest : public PlayingTest {
protected:
    explicit MenuTest(const DisplayOptions& options = {}) : PlayingTest(options) {}

    /// The menu's window while it is shown.
    [[nodiscard]] std::optional<Window> menu() const;
    /// Right-clicks on the player and waits for the menu.
    void openMenu(Point place = player::BODY);
    [[nodiscard]] bool waitUntilMenuIsGone() const;
    void moveTo(const menu::Line& line) const;
    using DesktopTest::moveTo;
    /// In the menu that is open.
    void click(const menu::Line& line, int button = 1) const;
    using DesktopTest::click;
    /// Opens the menu and clicks.
    void choose(const menu::Line& line);
};

} // namespace support
