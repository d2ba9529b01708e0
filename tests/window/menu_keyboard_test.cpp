// The keyboard in the menu.

#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QWindow>
#include <qtestsupport_widgets.h>

namespace zvonivec {
namespace {

class MenuKeys : public PlayerTest {
protected:
    void SetUp() override {
        start();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    /// Sends a key to the window that has the keyboard.
    void key(Qt::Key key, const char* text = "", Qt::KeyboardModifiers modifiers = {}) {
        input::key(*window().windowHandle(), key, modifiers, QString::fromUtf8(text));
    }
    void show() {
        key(Qt::Key_Menu);
        ASSERT_TRUE(popup().Visible());
    }
    /// Returns the caption of the lit entry.
    std::string lit() {
        std::string caption;
        int count = 0;
        const auto look = [&](const auto& control) {
            if (control.BackColor() == HIGHLIGHT_BACK_COLOR) {
                caption = control.Caption();
                ++count;
            }
        };
        for (const Label& label : popup().lblPopup) {
            look(label);
        }
        for (const CheckBox& check : popup().chkPopup) {
            look(check);
        }
        EXPECT_LE(count, 1);
        return caption;
    }
    std::string litAfter(Qt::Key pressed, const char* text = "") {
        key(pressed, text);
        return lit();
    }
};

TEST_F(MenuKeys, DownAndUpGoAroundTheEntriesAsTheyLie) {
    open("a.mp3");
    show();
    const std::vector<std::string> all{lit(),
                                       " Vlastnosti",
                                       "Vždy navrchu",
                                       "Přehrávat opakovaně",
                                       " Zesílit hlasitost o 10%",
                                       " Zeslabit hlasitost o 10%",
                                       " Přetočit dozadu",
                                       " Pozastavit",
                                       " Přehrát",
                                       " Zastavit",
                                       " Přetočit dopředu",
                                       " O programu",
                                       " Minimalizovat",
                                       " Konec"};
    EXPECT_EQ(all[0], " Otevřít...");
    for (std::size_t i = 1; i < all.size(); ++i) {
        EXPECT_EQ(litAfter(Qt::Key_Down), all[i]);
    }
    EXPECT_EQ(litAfter(Qt::Key_Down), all.front());
    EXPECT_EQ(litAfter(Qt::Key_Up), all.back());
    EXPECT_EQ(litAfter(Qt::Key_Up), " Minimalizovat");
    EXPECT_EQ(litAfter(Qt::Key_Home), all.front());
    EXPECT_EQ(litAfter(Qt::Key_End), all.back());
}

TEST_F(MenuKeys, DimmedItemsAreLeftOut) {
    show();
    EXPECT_EQ(litAfter(Qt::Key_Down), "Vždy navrchu");
    EXPECT_EQ(litAfter(Qt::Key_P, "p"), "Přehrávat opakovaně");
    EXPECT_EQ(litAfter(Qt::Key_P, "p"), "Přehrávat opakovaně");
    EXPECT_EQ(litAfter(Qt::Key_V, "v"), "Vždy navrchu");
}

TEST_F(MenuKeys, FirstLettersGoToTheNextEntryThatBeginsSo) {
    open("a.mp3");
    show();
    EXPECT_EQ(litAfter(Qt::Key_Z, "z"), " Zesílit hlasitost o 10%");
    EXPECT_EQ(litAfter(Qt::Key_Z, "Z"), " Zeslabit hlasitost o 10%");
    EXPECT_EQ(litAfter(Qt::Key_unknown, "ž"), " Zastavit");
    EXPECT_EQ(litAfter(Qt::Key_Z, "Ž"), " Zesílit hlasitost o 10%");
    EXPECT_EQ(litAfter(Qt::Key_K, "k"), " Konec");
    EXPECT_EQ(litAfter(Qt::Key_O, "ó"), " Otevřít...");
    EXPECT_EQ(litAfter(Qt::Key_Q, "q"), " Otevřít...");
    EXPECT_EQ(litAfter(Qt::Key_Minus, "-"), " Otevřít...");
    EXPECT_TRUE(popup().Visible());
}

TEST_F(MenuKeys, WithoutALitEntryTheKeysStartAtTheEnds) {
    player().ShowPopupMenu();
    ASSERT_EQ(lit(), "");
    key(Qt::Key_Return);
    EXPECT_TRUE(popup().Visible());
    EXPECT_EQ(litAfter(Qt::Key_Down), " Otevřít...");
    key(Qt::Key_Escape);
    player().ShowPopupMenu();
    EXPECT_EQ(litAfter(Qt::Key_Up), " Konec");
}

TEST_F(MenuKeys, ThePointerAndTheKeysShareTheHighlight) {
    show();
    moveOver(popup().lblPopup[13]);
    EXPECT_EQ(litAfter(Qt::Key_Down), " Zeslabit hlasitost o 10%");
    moveOver(popup().lblPopup[0]);
    EXPECT_EQ(lit(), " Otevřít...");
}

TEST_F(MenuKeys, ReturnAndSpaceChoose) {
    for (const Qt::Key chosen : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter}) {
        const int before = engine().settings().volume();
        show();
        key(Qt::Key_Z, "z");
        input::repeatKey(*window().windowHandle(), chosen);
        EXPECT_TRUE(popup().Visible()) << "the key was pressed before the menu opened";
        key(chosen);
        EXPECT_FALSE(popup().Visible());
        EXPECT_EQ(engine().settings().volume(), before + 10);
    }
}

TEST_F(MenuKeys, ReturnSwitchesASwitch) {
    const CheckBox& repeat = popup().chkPopup[popupRepeat];
    const int before = repeat.Value();
    show();
    key(Qt::Key_P, "p");
    key(Qt::Key_Space);
    EXPECT_EQ(repeat.Value(), 1 - before);
    EXPECT_FALSE(popup().Visible());
}

TEST_F(MenuKeys, TheOpenMenuTakesAllKeys) {
    open("a.mp3");
    show();
    engine().calls.clear();
    for (const Qt::Key pressed : {Qt::Key_X, Qt::Key_Up, Qt::Key_Right, Qt::Key_F1, Qt::Key_Menu}) {
        key(pressed);
    }
    key(Qt::Key_R, "", Qt::ControlModifier);
    key(Qt::Key_Tab);
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(engine().settings().volume(), 50);
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_EQ(popup().chkPopup[popupRepeat].Value(), 1);
    EXPECT_TRUE(popup().Visible());
    EXPECT_EQ(player().focusedControl(), nullptr);
}

TEST_F(MenuKeys, TheFocusComesBackWhenTheMenuCloses) {
    key(Qt::Key_Tab);
    show();
    key(Qt::Key_Escape);
    EXPECT_EQ(player().focusedControl(), &player().imgLogo);
    EXPECT_TRUE(widgetOfControl(player().imgLogo).hasFocus());
}

} // namespace
} // namespace zvonivec
