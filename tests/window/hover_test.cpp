// The hover picture: what takes it back and what leaves it.

#include "tests/window/player_test.h"

#include <QCoreApplication>
#include <QEvent>

namespace zvonivec {
namespace {

class Hover : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3"); // so that every control is shown
        player().Timer1.setEnabled(false);
        player().picDisplay.setLeft(0);
    }
    void expectHover(std::size_t index) {
        EXPECT_TRUE(shows(player().imgButtons[index], index + 8));
        EXPECT_EQ(player().gHoverIndex, index);
    }
};

TEST_F(Hover, StaysWhileThePointerIsOverOtherControls) {
    const Control* const others[] = {
        &player().picBGround,  &player().picDisplay, &player().lbl_Info,
        &player().lbl_Info_SH, &player().PB,         &player().imgVolume,
        &player().lblStatus,   &player().imgLogo,    &player().imgDisplay_Mark,
        &player().lblTime[0],  &player().lblTime[1]};
    moveOver(player().imgButtons[2]);
    for (const Control* other : others) {
        QWidget& widget = widgetOfControl(*other);
        if (window().childAt(widget.mapTo(&window(), QPoint(2, 2))) == &widget) {
            moveOver(*other);
        }
        // By its handler too: another control may cover it.
        if (other->MouseMove) {
            other->MouseMove({});
        }
        SCOPED_TRACE(other->Name());
        expectHover(2);
    }
}

TEST_F(Hover, StaysWhenThePointerLeavesTheWindow) {
    moveOver(player().imgButtons[6]);
    for (QWidget* left : {&widgetOfControl(player().imgButtons[6]), &window()}) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(left, &leave);
        DoEvents();
        expectHover(6);
    }
    // And goes when it comes back over the body.
    moveOverBody();
    EXPECT_TRUE(shows(player().imgButtons[6], 6 + 1));
    EXPECT_EQ(player().gHoverIndex, NO_BUTTON);
}

TEST_F(Hover, ADisabledButtonKeepsItsPictureWhenThePointerGoes) {
    moveOver(player().imgButtons[2]);
    expectHover(2);
    engine().fail();
    EXPECT_TRUE(shows(player().imgButtons[2], 2 + 27));
    moveOverBody();
    EXPECT_TRUE(shows(player().imgButtons[2], 2 + 27));
    EXPECT_EQ(player().gHoverIndex, NO_BUTTON);
    // Enabled again, it takes part again.
    open("a.mp3");
    moveOver(player().imgButtons[2], {4, 4});
    expectHover(2);
    moveOverBody();
    EXPECT_TRUE(shows(player().imgButtons[2], 2 + 1));
}

} // namespace
} // namespace zvonivec
