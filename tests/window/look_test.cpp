// What a change of look resets, and what the controls look like: timer, icon, bold texts.

#include "controls/ControlLayout.h"
#include "skin/pictures.h"
#include "tests/window/player_test.h"

#include <QIcon>

namespace zvonivec {
namespace {

class Look : public PlayerTest {
protected:
    /// Gives the strip a place and the running time a text that no change of look leaves.
    void disturb() {
        player().Timer1.setEnabled(false);
        player().picDisplay.setLeft(600);
        player().lblTime[0].setCaption("01:23");
        player().PB.setValue(40);
    }
    void expectReset() {
        EXPECT_EQ(player().picDisplay.Left(), 2455 + 100);
        EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
        EXPECT_EQ(player().PB.Value(), 0);
    }
};

TEST_F(Look, TheTimersIntervalIsATenthOfASecond) {
    EXPECT_EQ(player().Timer1.Interval(), 100);
    EXPECT_FALSE(player().Timer1.Enabled());
    start();
    EXPECT_EQ(player().Timer1.Interval(), 100);
    open("a.mp3");
    EXPECT_EQ(player().Timer1.Interval(), 100);
}

TEST_F(Look, ThePlayingLookBeginsAtTheStart) {
    start();
    open("a.mp3");
    disturb();
    player().ShowPlayback(true);
    expectReset();
}

TEST_F(Look, TheIdleLookBeginsAtTheStart) {
    start();
    open("a.mp3");
    disturb();
    player().ShowPlayback(false);
    expectReset();
}

TEST_F(Look, TheStripIsSentToTheRightAtTheStart) {
    player().picDisplay.setLeft(600);
    player().Form_Load();
    EXPECT_EQ(player().picDisplay.Left(), 2455 + 100);
}

TEST_F(Look, TheWindowsIconIsTheIconsPicture) {
    const QImage icon(":/skin/" + QString::fromUtf8(skin::ICON_PICTURE.file.data()));
    ASSERT_EQ(icon.size(), QSize(32, 32));
    const QIcon shown = window().windowIcon();
    EXPECT_EQ(shown.availableSizes(), QList<QSize>{QSize(32, 32)});
    EXPECT_EQ(shown.pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32),
              icon.convertToFormat(QImage::Format_ARGB32));
}

// --- Bold texts -------------------------------------------------------------------------------

class BoldTexts : public Look {
protected:
    /// A label of the test's own: the same text and colours, drawn bold or not.
    QImage drawn(const Label& like, const std::string& caption, bool bold) {
        Label label(popup().picPopup, "drawn");
        label.lay({.Name = "drawn",
                   .Width = like.Width(),
                   .Height = like.Height(),
                   .Caption = caption,
                   .ForeColor = like.ForeColor(),
                   .BackColor = like.BackColor(),
                   .Bold = bold,
                   .Transparent = false});
        return pictureOf(widgetOfControl(label));
    }
    /// The width of a label that sizes itself to its text.
    float width(const std::string& caption, bool bold) {
        Label label(player(), "drawn");
        label.lay(
            {.Name = "drawn", .Height = 195, .Caption = caption, .Bold = bold, .AutoSize = true});
        return label.Width();
    }
};

TEST_F(BoldTexts, OfTheDisplayAreBoldAndOthersAreNot) {
    for (const Label* label : {&player().lbl_Info, &player().lbl_Info_SH}) {
        EXPECT_EQ(label->Width(), width(label->Caption(), true));
        EXPECT_NE(label->Width(), width(label->Caption(), false));
    }
    player().lblTime[0].setCaption("12:34");
    player().lblTime[1].setCaption("56:07");
    for (const Label* label : {&player().lblStatus, &player().lblTime[0], &player().lblTime[1]}) {
        EXPECT_EQ(label->Width(), width(label->Caption(), false));
        EXPECT_NE(label->Width(), width(label->Caption(), true));
    }
}

TEST_F(BoldTexts, OfTheMenuAreBold) {
    for (const Label& item : popup().lblPopup) {
        if (item.Caption().starts_with("--")) {
            continue;
        }
        const QImage shown = pictureOf(widgetOfControl(item));
        EXPECT_EQ(shown, drawn(item, item.Caption(), true)) << item.Caption();
        EXPECT_NE(shown, drawn(item, item.Caption(), false)) << item.Caption();
    }
}

TEST_F(BoldTexts, OfTheSwitchesAreBold) {
    for (CheckBox& box : popup().chkPopup) {
        const QImage shown = pictureOf(widgetOfControl(box));
        const auto drawnAs = [&](bool bold) {
            CheckBox other(popup().picPopup, "drawn");
            other.lay({.Name = "drawn",
                       .Width = box.Width(),
                       .Height = box.Height(),
                       .Caption = box.Caption(),
                       .ForeColor = box.ForeColor(),
                       .BackColor = box.BackColor(),
                       .Bold = bold});
            return pictureOf(widgetOfControl(other));
        };
        EXPECT_EQ(shown, drawnAs(true)) << box.Caption();
        EXPECT_NE(shown, drawnAs(false)) << box.Caption();
    }
}

} // namespace
} // namespace zvonivec
