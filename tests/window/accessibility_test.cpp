#include "tests/window/player_test.h"

#include <QAccessible>

namespace zvonivec {
namespace {

class Accessibility : public PlayerTest {
protected:
    void SetUp() override { start(); }

    QAccessibleInterface& of(const Control& control) {
        QWidget* widget = widgetOf(window(), control);
        return *QAccessible::queryAccessibleInterface(
            widget != nullptr ? widget
                              : widgetOf(*QWidget::find(player().Popup().hWnd()), control));
    }
    QString name(const Control& control) { return of(control).text(QAccessible::Name); }
};

TEST_F(Accessibility, AButtonHasItsToolTipAndCanBePressed) {
    open("a.mp3");
    const char* const names[] = {"Přetočit dozadu",  "Pozastavit",    "Přehrát", "Zastavit",
                                 "Přetočit dopředu", "Minimalizovat", "Zavřít"};
    for (std::size_t i = 0; i < BUTTON_COUNT; ++i) {
        EXPECT_EQ(of(player().imgButtons[i]).role(), QAccessible::PushButton);
        EXPECT_EQ(name(player().imgButtons[i]), QString::fromUtf8(names[i]));
    }
    auto* actions = of(player().imgButtons[1]).actionInterface();
    ASSERT_NE(actions, nullptr);
    ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(engine().playState(), PlayState::paused);
}

TEST_F(Accessibility, ADisabledButtonReportsItAndCannotBePressed) {
    QAccessibleInterface& play = of(player().imgButtons[2]);
    EXPECT_TRUE(play.state().disabled);
    EXPECT_FALSE(
        play.actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    play.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_FALSE(player().gClickArmed);
    open("a.mp3");
    EXPECT_FALSE(of(player().imgButtons[2]).state().disabled);
}

TEST_F(Accessibility, TheLogoOpensAFile) {
    EXPECT_EQ(name(player().imgLogo), "Otevřít soubor MP3");
    of(player().imgLogo).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(dialog().shown, 1);
}

TEST_F(Accessibility, TheLoudspeakerReportsTheVolumeAndRaisesIt) {
    EXPECT_EQ(of(player().imgVolume).role(), QAccessible::PushButton);
    EXPECT_EQ(name(player().imgVolume), "50% hlasitost");
    of(player().imgVolume).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(name(player().imgVolume), "60% hlasitost");
}

TEST_F(Accessibility, ALabelHasItsCaption) {
    player().lblTime[0].setCaption("01:23");
    EXPECT_EQ(of(player().lblTime[0]).role(), QAccessible::StaticText);
    EXPECT_EQ(name(player().lblTime[0]), "01:23");
    EXPECT_EQ(name(player().lbl_Info), "Vítejte v programu Zvonivec MP3 Player 0.0.7");
    player().lblStatus.setCaption("a && b");
    EXPECT_EQ(name(player().lblStatus), "a & b");
}

TEST_F(Accessibility, TheBarHasItsValueAndRange) {
    player().PB.setMax(200);
    player().PB.setValue(50);
    QAccessibleInterface& bar = of(player().PB);
    EXPECT_EQ(bar.role(), QAccessible::ProgressBar);
    ASSERT_NE(bar.valueInterface(), nullptr);
    EXPECT_EQ(bar.valueInterface()->currentValue().toFloat(), 50);
    EXPECT_EQ(bar.valueInterface()->minimumValue().toFloat(), 0);
    EXPECT_EQ(bar.valueInterface()->maximumValue().toFloat(), 200);
    EXPECT_EQ(of(player().imgLogo).valueInterface(), nullptr);
}

TEST_F(Accessibility, ACheckBoxHasItsStateAndCanBeSwitched) {
    CheckBox& repeat = player().Popup().chkPopup[popupRepeat];
    EXPECT_EQ(of(repeat).role(), QAccessible::CheckBox);
    EXPECT_EQ(name(repeat), "Přehrávat opakovaně");
    EXPECT_TRUE(of(repeat).state().checked);
    of(repeat).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(of(repeat).state().checked);
    EXPECT_EQ(repeat.Value(), 0);
    EXPECT_FALSE(of(repeat).state().checkStateMixed);
    repeat.setValue(2);
    EXPECT_FALSE(of(repeat).state().checked);
    EXPECT_TRUE(of(repeat).state().checkStateMixed);
}

TEST_F(Accessibility, OnlyControlsThatActOfferTheirAction) {
    const auto offersPress = [this](const Control& control) {
        return of(control).actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction());
    };
    EXPECT_TRUE(offersPress(player().Popup().lblPopup[0]));
    EXPECT_TRUE(offersPress(player().Popup().chkPopup[popupRepeat]));
    EXPECT_TRUE(offersPress(player().imgLogo));
    EXPECT_FALSE(offersPress(player().imgDisplay_Mark));
    EXPECT_FALSE(offersPress(player().lbl_Info));
    EXPECT_FALSE(offersPress(player().PB));
    EXPECT_FALSE(offersPress(player().picDisplay));
}

TEST_F(Accessibility, TheMarkIsAPictureWithTheCommandsName) {
    EXPECT_EQ(of(player().imgDisplay_Mark).role(), QAccessible::Graphic);
    EXPECT_EQ(name(player().imgDisplay_Mark), "Zastavit");
}

} // namespace
} // namespace zvonivec
