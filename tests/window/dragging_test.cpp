// Dragging the window, and clicks that open the menu or leave it closed.

#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QWindow>

namespace zvonivec {
namespace {

class Dragging : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3"); // so that every control is visible
        player().picDisplay.setLeft(0);
        player().Timer1.setEnabled(false);
        // A window manager that places the window late would move it during a drag.
        ASSERT_TRUE(serveUntil([this] { return window().windowHandle()->isExposed(); }));
        // Moved in one step. After two steps the server could report the first when the second is
        // already done.
        window().move(300, 200);
        ASSERT_TRUE(serveUntil([this] { return window().pos() == QPoint(300, 200); }));
    }

    /// Presses a button on a control, moves the pointer and releases. Returns the distance that the
    /// window has moved.
    QPoint drag(const Control& control, Qt::MouseButton button) {
        const QPoint before = window().pos();
        const QPoint from = pointIn(control);
        QWindow& handle = *window().windowHandle();
        input::press(handle, button, from);
        for (const QPoint step : {QPoint(5, 0), QPoint(20, 30)}) {
            // Relative to the window, which has moved with the pointer.
            input::move(handle, from + step - (window().pos() - before));
        }
        input::release(handle, button, from + QPoint(20, 30) - (window().pos() - before));
        return window().pos() - before;
    }

    /// Returns a point of the control that nothing covers.
    QPoint pointIn(const Control& control) {
        if (&control == &player()) {
            return {30, 200};
        }
        QWidget& widget = widgetOfControl(control);
        for (const QPoint place : {QPoint(2, 2), QPoint(2, widget.height() - 1)}) {
            const QPoint inWindow = widget.mapTo(&window(), place);
            if (window().childAt(inWindow) == &widget) {
                return inWindow;
            }
        }
        ADD_FAILURE() << control.Name() << " is hidden";
        return {};
    }
};

TEST_F(Dragging, TheMenuOpensByARightClickOnTheBodyAndTheDisplay) {
    const Control* const surfaces[] = {&player(), &player().picBGround, &player().picDisplay,
                                       &player().lbl_Info, &player().lbl_Info_SH};
    for (const Control* surface : surfaces) {
        for (const std::int16_t button : {LEFT_BUTTON, MIDDLE_BUTTON, RIGHT_BUTTON}) {
            const MouseArgs mouse{.Button = button};
            surface->MouseDown(mouse);
            surface->MouseUp(mouse);
            EXPECT_EQ(popup().Visible(), button == RIGHT_BUTTON) << surface->Name() << button;
            popup().Form_Deactivate();
        }
    }
}

TEST_F(Dragging, NothingElseOpensTheMenu) {
    const Control* const others[] = {
        &player().lblStatus,  &player().imgVolume,  &player().imgLogo, &player().imgDisplay_Mark,
        &player().lblTime[0], &player().lblTime[1], &player().PB,      &player().imgButtons[0]};
    for (const Control* other : others) {
        click(*other, Qt::RightButton);
        EXPECT_FALSE(popup().Visible()) << other->Name();
    }
    EXPECT_EQ(engine().settings().volume(), 30); // lblStatus and imgVolume each lower it
}

TEST_F(Dragging, TimesAndMarkDoNothing) {
    engine().calls.clear();
    for (const Control* control : {static_cast<const Control*>(&player().lblTime[0]),
                                   static_cast<const Control*>(&player().lblTime[1]),
                                   static_cast<const Control*>(&player().imgDisplay_Mark)}) {
        for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            EXPECT_EQ(drag(*control, button), QPoint(0, 0)) << control->Name();
        }
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_FALSE(popup().Visible());
}

} // namespace
} // namespace zvonivec
