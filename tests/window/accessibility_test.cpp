#include "tests/window/player_test.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>

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
    /// Carries out an action, as an assistive program asks for it.
    void act(const Control& control, const QString& action) {
        of(control).actionInterface()->doAction(action);
        QCoreApplication::processEvents();
    }
    void press(const Control& control) { act(control, QAccessibleActionInterface::pressAction()); }
    QString value(const Control& control) { return of(control).text(QAccessible::Value); }
    QString description(const Control& control) {
        return of(control).text(QAccessible::Description);
    }
    std::vector<QAccessibleInterface*> childrenOf(QWidget& form) {
        QAccessibleInterface* parent = QAccessible::queryAccessibleInterface(&form);
        std::vector<QAccessibleInterface*> children;
        for (int i = 0; i < parent->childCount(); ++i) {
            children.push_back(parent->child(i));
            EXPECT_EQ(parent->indexOfChild(parent->child(i)), i);
            EXPECT_EQ(parent->child(i)->parent(), parent);
        }
        return children;
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
    press(player().imgButtons[1]);
    EXPECT_EQ(engine().playState(), PlayState::paused);
}

TEST_F(Accessibility, ADisabledButtonReportsItAndCannotBePressed) {
    QAccessibleInterface& play = of(player().imgButtons[2]);
    EXPECT_TRUE(play.state().disabled);
    EXPECT_FALSE(
        play.actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    press(player().imgButtons[2]);
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_FALSE(player().gClickArmed);
    open("a.mp3");
    EXPECT_FALSE(of(player().imgButtons[2]).state().disabled);
}

TEST_F(Accessibility, TheLogoOpensAFile) {
    EXPECT_EQ(name(player().imgLogo), "Otevřít soubor MP3");
    of(player().imgLogo).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(dialog().shown, 0) << "the assistive program gets its answer first";
    QCoreApplication::processEvents();
    EXPECT_EQ(dialog().shown, 1);
}

TEST_F(Accessibility, TheLoudspeakerReportsTheVolumeAndRaisesIt) {
    EXPECT_EQ(of(player().imgVolume).role(), QAccessible::PushButton);
    EXPECT_EQ(name(player().imgVolume), "Hlasitost");
    EXPECT_EQ(value(player().imgVolume), "50 %");
    press(player().imgVolume);
    EXPECT_EQ(value(player().imgVolume), "60 %");
    act(player().imgVolume, QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(engine().settings().volume(), 70);
    act(player().imgVolume, QAccessibleActionInterface::decreaseAction());
    act(player().imgVolume, QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(engine().settings().volume(), 50);
    QAccessibleValueInterface* range = of(player().imgVolume).valueInterface();
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->currentValue().toInt(), 50);
    EXPECT_EQ(range->minimumValue().toInt(), 0);
    EXPECT_EQ(range->maximumValue().toInt(), 100);
}

TEST_F(Accessibility, ALabelHasItsCaption) {
    player().lblTime[0].setCaption("01:23");
    EXPECT_EQ(of(player().lblTime[0]).role(), QAccessible::StaticText);
    EXPECT_EQ(name(player().lblTime[0]), "Čas");
    EXPECT_EQ(value(player().lblTime[0]), "01:23");
    ASSERT_NE(of(player().lblTime[0]).textInterface(), nullptr);
    EXPECT_EQ(of(player().lblTime[0]).textInterface()->characterCount(), 5);
    EXPECT_EQ(of(player().lblTime[0]).textInterface()->text(3, 5), "23");
    EXPECT_EQ(description(player().lblTime[0]), "Aktuální pozice přehrávání");
    EXPECT_EQ(name(player().lblTime[1]), "Délka");
    EXPECT_EQ(name(player().lbl_Info), "Vítejte v programu Zvonivec MP3 Player 0.0.7");
    player().lblStatus.setCaption("a && b");
    EXPECT_EQ(name(player().lblStatus), "a & b");
}

TEST_F(Accessibility, TheBarHasItsValueAndRange) {
    player().PB.setMax(200);
    player().PB.setValue(50);
    QAccessibleInterface& bar = of(player().PB);
    EXPECT_EQ(bar.role(), QAccessible::Slider);
    EXPECT_EQ(name(player().PB), "Pozice");
    EXPECT_EQ(value(player().PB), "00:50");
    player().PB.setToolTipText("00:07");
    EXPECT_EQ(name(player().PB), "Pozice");
    EXPECT_EQ(description(player().PB), "00:07");
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
    press(repeat);
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

TEST_F(Accessibility, TheBarSeeks) {
    engine().tracks["a.mp3"].duration = 100;
    open("a.mp3");
    player().Timer1.setEnabled(false);
    engine().position = 50;
    act(player().PB, QAccessibleActionInterface::increaseAction());
    EXPECT_NEAR(engine().position, 55, 0.01);
    act(player().PB, QAccessibleActionInterface::decreaseAction());
    EXPECT_NEAR(engine().position, 50, 0.01);
    of(player().PB).valueInterface()->setCurrentValue(20.0);
    QCoreApplication::processEvents();
    EXPECT_NEAR(engine().position, 20, 0.01);
    EXPECT_EQ(value(player().PB), "00:20");
}

TEST_F(Accessibility, TheWindowContainsWhatIsSeenFromTopToBottom) {
    std::vector<QString> names;
    for (QAccessibleInterface* child : childrenOf(window())) {
        names.push_back(child->text(QAccessible::Name));
    }
    EXPECT_EQ(names, (std::vector<QString>{"Minimalizovat", "Zavřít", WELCOME_TEXT, "50% hlasitost",
                                           "Hlasitost", "Zastavit", "Otevřít soubor MP3",
                                           "Přetočit dozadu", "Přetočit dopředu", "Pozastavit",
                                           "Zastavit", "Přehrát", "Čas", "Délka", "Pozice"}));
}

TEST_F(Accessibility, TheWindowOffersItsMenu) {
    act(player(), QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(popup().Visible());
    EXPECT_EQ(popup().lblPopup[0].BackColor(), HIGHLIGHT_BACK_COLOR);
    EXPECT_TRUE(of(popup().lblPopup[0]).state().focused);
    EXPECT_FALSE(of(popup().lblPopup[10]).state().focused);
}

TEST_F(Accessibility, NothingIsDoneWhileADialogIsOpen) {
    QDialog box(&window());
    box.setModal(true);
    box.show();
    ASSERT_TRUE(serveUntil([] { return QApplication::activeModalWidget() != nullptr; }));
    press(player().imgLogo);
    press(player().imgVolume);
    EXPECT_EQ(dialog().shown, 0);
    EXPECT_EQ(engine().settings().volume(), 50);
    box.hide();
    press(player().imgVolume);
    EXPECT_EQ(engine().settings().volume(), 60);
}

TEST_F(Accessibility, WhatTheKeyboardWorksOnCanTakeTheFocus) {
    window().activateWindow();
    ASSERT_TRUE(serveUntil([this] { return window().isActiveWindow(); }));
    EXPECT_TRUE(of(player().imgLogo).state().focusable);
    EXPECT_FALSE(of(player().imgDisplay_Mark).state().focusable);
    act(player().imgLogo, QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(player().focusedControl(), &player().imgLogo);
    EXPECT_TRUE(of(player().imgLogo).state().focused);
}

TEST_F(Accessibility, TheMarkIsAPictureWithTheCommandsName) {
    EXPECT_EQ(of(player().imgDisplay_Mark).role(), QAccessible::Graphic);
    EXPECT_EQ(name(player().imgDisplay_Mark), "Zastavit");
}

} // namespace
} // namespace zvonivec
