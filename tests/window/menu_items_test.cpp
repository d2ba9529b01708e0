// The menu's lines as they look, and the clicks that must do nothing.

#include "popup/layout.h"
#include "tests/window/player_test.h"

#include <algorithm>

namespace zvonivec {
namespace {

class MenuItems : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().Timer1.setEnabled(false);
        player().ShowPopupMenu();
    }

    Label& item(std::size_t index) { return popup().lblPopup[index]; }
    /// The menu as the screen shows it in a line's place.
    QImage seen(const Control& line) {
        return pictureOf(popupWindow()).copy(widgetOfControl(line).geometry());
    }
    /// The columns of a picture that show a colour of their own, from first to last.
    static std::pair<int, int> inked(const QImage& picture, Colour colour) {
        const QRgb ink =
            qRgb(static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
                 static_cast<int>(colour >> 16U & 0xFFU));
        std::pair columns{picture.width(), -1};
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if ((picture.pixel(x, y) | 0xFF000000U) == ink) {
                    columns = {std::min(columns.first, x), std::max(columns.second, x)};
                }
            }
        }
        return columns;
    }
    static bool hasPixel(const QImage& picture, Colour colour) {
        return inked(picture, colour).second >= 0;
    }
};

TEST_F(MenuItems, SeparatorsAre36Hyphens) {
    for (const std::size_t index : {2U, 3U, 9U}) {
        EXPECT_EQ(item(index).Caption(), std::string(36, '-')) << index;
        EXPECT_EQ(item(index).ForeColor(), ENABLED_ITEM_COLOR) << index;
    }
}

TEST_F(MenuItems, SeparatorsAreCentred) {
    for (const std::size_t index : {2U, 3U, 9U}) {
        item(index).setCaption("-");
        const QImage shown = seen(item(index));
        const auto [first, last] = inked(shown, ENABLED_ITEM_COLOR);
        ASSERT_GE(last, 0) << index;
        EXPECT_NEAR(first + last, shown.width() - 1, 3) << index;
    }
    // Other items begin at their left edge, behind their blank.
    EXPECT_LT(inked(seen(item(12)), ENABLED_ITEM_COLOR).second, 60);
}

TEST_F(MenuItems, TwoSeparatorsAreTransparentAndOneIsNot) {
    const Colour red = rgb(255, 0, 0);
    popup().picPopup.setBackColor(red);
    for (const std::size_t index : {2U, 3U}) {
        EXPECT_TRUE(hasPixel(seen(item(index)), red)) << index;
        EXPECT_FALSE(hasPixel(seen(item(index)), MENU_BACK_COLOR)) << index;
    }
    for (std::size_t index = 0; index < POPUP_ITEM_COUNT; ++index) {
        if (index != 2 && index != 3) {
            EXPECT_FALSE(hasPixel(seen(item(index)), red)) << index;
            EXPECT_TRUE(hasPixel(seen(item(index)), MENU_BACK_COLOR)) << index;
        }
    }
}

TEST_F(MenuItems, ASwitchsCaptionBeginsRightOfItsBox) {
    for (CheckBox& box : popup().chkPopup) {
        const QImage with = seen(box);
        const ControlLayout row{.Name = "x",
                                .Left = box.Left(),
                                .Top = box.Top(),
                                .Width = box.Width(),
                                .Height = box.Height(),
                                .ForeColor = box.ForeColor(),
                                .BackColor = box.BackColor(),
                                .Bold = true};
        box.lay(row); // without its caption
        const QImage without = seen(box);
        int first = with.width();
        int last = -1;
        for (int x = 0; x < with.width(); ++x) {
            for (int y = 0; y < with.height(); ++y) {
                if (with.pixel(x, y) != without.pixel(x, y)) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        const int boxWidth = inked(without, ENABLED_ITEM_COLOR).second + 1;
        EXPECT_GT(boxWidth, 5) << box.Name();
        EXPECT_GT(first, boxWidth) << box.Name();
        EXPECT_LT(first, boxWidth + 8) << box.Name();
        EXPECT_GT(last, first + 50) << box.Name();
        EXPECT_LT(last, with.width() - 1) << box.Name(); // nothing is cut off
    }
}

TEST_F(MenuItems, IndexesBeyondTheMenuDoNothing) {
    open("a.mp3");
    player().ShowPopupMenu();
    item(0).setBackColor(HIGHLIGHT_BACK_COLOR);
    engine().calls.clear();
    for (const int index : {15, 16, 17, 20, 100, 32767, -1, -32768}) {
        SCOPED_TRACE(index);
        popup().lblPopup_MouseMove(static_cast<std::int16_t>(index), {});
        popup().lblPopup_Click(static_cast<std::int16_t>(index));
        EXPECT_TRUE(popup().Visible());
        EXPECT_FALSE(player().gClickArmed);
        EXPECT_EQ(item(0).BackColor(), HIGHLIGHT_BACK_COLOR);
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_EQ(dialog().shown, 1); // by open
    EXPECT_TRUE(player().Loaded());
}

TEST_F(MenuItems, QuitSavesWhatWasSwitchedInTheMenu) {
    const auto choose = [this](const Control& line) {
        player().ShowPopupMenu();
        ASSERT_TRUE(serveUntil([this] { return popupWindow().isVisible(); }));
        click(line);
        EXPECT_FALSE(popup().Visible());
    };
    window().move(40, 50);
    ASSERT_TRUE(serveUntil([this] { return window().pos() == QPoint(40, 50); }));
    choose(popup().chkPopup[popupOnTop]);
    choose(popup().chkPopup[popupRepeat]);
    choose(item(13));
    choose(item(13));
    EXPECT_EQ(support::readFile(programFolder() + "/MP3.ini"), "");
    choose(item(12));
    EXPECT_FALSE(player().Loaded());
    EXPECT_EQ(support::readFile(programFolder() + "/MP3.ini"),
              "[General]\r\nLeft=600\r\nTop=750\r\nOnTop=1\r\nRepeat=0\r\nVolume=70\r\n");
}

} // namespace
} // namespace zvonivec
