#include "controls/CheckBox.h"
#include "controls/private/caption_text.h"
#include "controls/private/font.h"
#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>
#include <limits>

namespace zvonivec {
namespace {

/// Tests controls in the real window.
class Controls : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().Timer1.setEnabled(false);
        player().picDisplay.setLeft(0);
    }

    /// Returns the picture of a label with this caption.
    QImage drawn(const std::string& caption) {
        player().lblStatus.setCaption(caption);
        return pictureOf(*widgetOf(window(), player().lblStatus));
    }
};

TEST_F(Controls, EveryWidgetHasTheNameOfItsControl) {
    for (const char* name : {"picBGround", "picDisplay", "lbl_Info", "lbl_Info_SH", "PB",
                             "imgVolume", "lblStatus", "imgLogo", "imgDisplay_Mark", "imgButtons_0",
                             "imgButtons_3", "imgButtons_6", "lblTime_0", "lblTime_1"}) {
        EXPECT_NE(window().findChild<QWidget*>(QString::fromLatin1(name)), nullptr) << name;
    }
    EXPECT_EQ(window().objectName(), "frmPlayer");
    QWidget* popup = QWidget::find(player().Popup().hWnd());
    EXPECT_EQ(popup->objectName(), "frmPopup");
    for (const char* name : {"picPopup", "chkPopup_0", "chkPopup_1", "lblPopup_0", "lblPopup_14"}) {
        EXPECT_NE(popup->findChild<QWidget*>(QString::fromLatin1(name)), nullptr) << name;
    }
}

// --- Captions ---------------------------------------------------------------------------------

TEST_F(Controls, ACaptionDrawsADoubledAmpersandAsOne) {
    EXPECT_EQ(CaptionText::of("a && b").text, "a & b");
    EXPECT_TRUE(CaptionText::of("a && b").underlined.isEmpty());
    EXPECT_EQ(CaptionText::of("&&&&").text, "&&");
}

TEST_F(Controls, ACaptionUnderlinesTheLetterAfterASingleAmpersand) {
    EXPECT_EQ(CaptionText::of("a &bc").text, "a bc");
    EXPECT_EQ(CaptionText::of("a &bc").underlined, QList<int>{2});
    EXPECT_EQ(CaptionText::of("&&&x").text, "&x");
    EXPECT_EQ(CaptionText::of("&&&x").underlined, QList<int>{1});
    EXPECT_EQ(CaptionText::of("end&").text, "end");
    EXPECT_NE(drawn("ab"), drawn("&ab"));
    EXPECT_EQ(drawn("ab").size(), drawn("&ab").size());
}

TEST_F(Controls, ACaptionIsOneLineWithBlanksForControlCharacters) {
    const QString plain = QStringLiteral("a b c d e f g");
    EXPECT_EQ(CaptionText::of(QStringLiteral("a\nb\tc\rd\u2028e\u0001f\u0085g")).text, plain);
    EXPECT_EQ(drawn("a\nb\tc"), drawn("a b c"));
    EXPECT_EQ(player().lblStatus.Height(), 195);
}

TEST_F(Controls, ACaptionIsNeverRichText) {
    const QFontMetrics metrics(formFont(false));
    for (const char* text : {"<b>x</b> <img src=/etc/passwd>", "&amp;lt;", "<html>"}) {
        const QImage picture = drawn(text);
        EXPECT_EQ(picture.width(),
                  metrics.horizontalAdvance(CaptionText::of(QString::fromUtf8(text)).text));
    }
}

TEST_F(Controls, ALabelSizesItselfToItsCaption) {
    const QFontMetrics metrics(formFont(false));
    player().lblStatus.setCaption("100% hlasitost");
    EXPECT_EQ(player().lblStatus.Width(),
              toTwips(metrics.horizontalAdvance(QStringLiteral("100% hlasitost"))));
    EXPECT_EQ(player().lblStatus.Left(), 1665);
}

TEST_F(Controls, DescendersAreNotCutOff) {
    const QFontMetrics metrics(formFont(true));
    EXPECT_LE(metrics.ascent() + metrics.descent(), 13);
}

TEST_F(Controls, TheFontIsElevenPixelsHighOnAnyDesktop) {
    for (const bool bold : {false, true}) {
        const QFontInfo font(formFont(bold));
        EXPECT_EQ(font.pixelSize(), 11);
        EXPECT_EQ(font.bold(), bold);
    }
    if (QFontDatabase::hasFamily(QStringLiteral("Liberation Sans")) &&
        !QFontDatabase::hasFamily(QStringLiteral("MS Sans Serif"))) {
        EXPECT_EQ(QFontInfo(formFont(false)).family(), "Liberation Sans");
    }
    const QFont before = QApplication::font();
    QFont desktop = before;
    desktop.setPointSize(30);
    desktop.setItalic(true);
    const QImage usual = drawn("Hlasitost");
    QApplication::setFont(desktop);
    EXPECT_EQ(drawn("Hlasitost"), usual);
    QApplication::setFont(before);
}

// --- Tooltips ---------------------------------------------------------------------------------

TEST_F(Controls, AToolTipIsPlainText) {
    player().imgLogo.setToolTipText("<b>a</b> && <i>c</i>");
    QWidget& logo = *widgetOf(window(), player().imgLogo);
    QHelpEvent ask(QEvent::ToolTip, {5, 5}, logo.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&logo, &ask);
    ASSERT_TRUE(QToolTip::isVisible());
    QLabel* shown = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->inherits("QTipLabel") && top->isVisible()) {
            shown = qobject_cast<QLabel*>(top);
        }
    }
    ASSERT_NE(shown, nullptr);
    QTextDocument rendered;
    rendered.setHtml(shown->text());
    EXPECT_EQ(rendered.toPlainText(), "<b>a</b> && <i>c</i>");
    QToolTip::hideText();
}

TEST_F(Controls, WithoutATextNoToolTipAppears) {
    QWidget& volume = *widgetOf(window(), player().imgVolume);
    QHelpEvent ask(QEvent::ToolTip, {5, 5}, volume.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&volume, &ask);
    EXPECT_FALSE(QToolTip::isVisible());
}

// --- The pointer ------------------------------------------------------------------------------

TEST_F(Controls, APressCapturesThePointerUntilTheRelease) {
    moveOver(player().imgVolume);
    std::vector<std::string> events;
    player().imgVolume.MouseDown = [&](const MouseArgs&) { events.emplace_back("volume down"); };
    player().imgVolume.MouseMove = [&](const MouseArgs&) { events.emplace_back("volume move"); };
    player().imgVolume.MouseUp = [&](const MouseArgs&) { events.emplace_back("volume up"); };
    player().imgLogo.MouseMove = [&](const MouseArgs&) { events.emplace_back("logo move"); };
    player().imgLogo.MouseUp = [&](const MouseArgs&) { events.emplace_back("logo up"); };
    press(player().imgVolume);
    moveOver(player().imgLogo, {5, 5});
    release(player().imgLogo, Qt::LeftButton, {5, 5});
    moveOver(player().imgLogo, {6, 6});
    EXPECT_EQ(events,
              (std::vector<std::string>{"volume down", "volume move", "volume up", "logo move"}));
}

TEST_F(Controls, PointerEventsAreInTwipsFromTheControlsCorner) {
    std::vector<MouseArgs> events;
    const auto note = [&](const MouseArgs& mouse) { events.push_back(mouse); };
    player().imgLogo.MouseDown = note;
    player().imgLogo.MouseUp = note;
    press(player().imgLogo, Qt::RightButton, {3, 7});
    release(player().imgLogo, Qt::RightButton, {-2, 40});
    press(player().imgLogo, Qt::MiddleButton, {0, 0});
    release(player().imgLogo, Qt::MiddleButton, {0, 0});
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].Button, 2);
    EXPECT_EQ(events[0].X, 45);
    EXPECT_EQ(events[0].Y, 105);
    EXPECT_EQ(events[1].Button, 2);
    EXPECT_EQ(events[1].X, -30);
    EXPECT_EQ(events[1].Y, 600);
    EXPECT_EQ(events[2].Button, 4);
}

TEST_F(Controls, ADisabledControlTakesNoPointerEventsAndPassesNoneOn) {
    int events = 0;
    const auto count = [&](const MouseArgs&) { ++events; };
    for (Control* control : std::initializer_list<Control*>{&player().imgButtons[2], &player()}) {
        control->MouseDown = count;
        control->MouseMove = count;
        control->MouseUp = count;
    }
    moveOver(player().imgButtons[2], {15, 15});
    click(player().imgButtons[2], Qt::LeftButton, {15, 15});
    click(player().imgButtons[2], Qt::RightButton, {15, 15});
    EXPECT_EQ(events, 0);
}

TEST_F(Controls, APressOnAControlIsNoPressOnItsContainer) {
    int body = 0;
    player().MouseDown = [&](const MouseArgs&) { ++body; };
    player().MouseUp = [&](const MouseArgs&) { ++body; };
    click(player().imgDisplay_Mark);
    EXPECT_EQ(body, 0);
}

TEST_F(Controls, TheReleaseReachesAControlDisabledMeanwhile) {
    int releases = 0;
    player().imgVolume.MouseUp = [&](const MouseArgs&) { ++releases; };
    press(player().imgVolume);
    player().imgVolume.setEnabled(false);
    release(player().imgVolume);
    EXPECT_EQ(releases, 1);
    click(player().imgVolume);
    EXPECT_EQ(releases, 1);
}

TEST_F(Controls, TheSecondPressOfADoubleClickIsAPress) {
    int presses = 0;
    int releases = 0;
    player().imgVolume.MouseDown = [&](const MouseArgs&) { ++presses; };
    player().imgVolume.MouseUp = [&](const MouseArgs&) { ++releases; };
    const QPoint place = widgetOf(window(), player().imgVolume)->mapTo(&window(), QPoint(2, 2));
    input::doubleClick(*window().windowHandle(), Qt::LeftButton, place);
    EXPECT_EQ(presses, releases);
    EXPECT_GE(presses, 2);
}

TEST_F(Controls, TwoButtonsHeldAreTwoCaptures) {
    std::vector<int> buttons;
    player().imgVolume.MouseDown = [&](const MouseArgs& mouse) { buttons.push_back(mouse.Button); };
    player().imgVolume.MouseUp = [&](const MouseArgs& mouse) { buttons.push_back(-mouse.Button); };
    press(player().imgVolume, Qt::LeftButton);
    press(player().imgVolume, Qt::RightButton);
    release(player().imgVolume, Qt::LeftButton);
    release(player().imgVolume, Qt::RightButton);
    EXPECT_EQ(buttons, (std::vector<int>{1, 2, -1, -2}));
}

// --- Refused values ---------------------------------------------------------------------------

TEST_F(Controls, ABarRefusesValuesOutsideItsRange) {
    ProgressBar& bar = player().PB;
    bar.setMax(50);
    bar.setValue(20);
    for (const float refused : {-1.0F, 50.01F, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()}) {
        bar.setValue(refused);
        EXPECT_EQ(bar.Value(), 20) << refused;
    }
    for (const float refused : {0.0F, -5.0F, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()}) {
        bar.setMax(refused);
        EXPECT_EQ(bar.Max(), 50) << refused;
    }
    bar.setValue(0);
    EXPECT_EQ(bar.Value(), 0);
    bar.setValue(50);
    EXPECT_EQ(bar.Value(), 50);
    bar.setMax(30);
    EXPECT_EQ(bar.Value(), 30);
}

TEST_F(Controls, ABarFillsFromTheLeft) {
    ProgressBar& bar = player().PB;
    bar.setMax(100);
    const auto pixelsUnlikeEmpty = [&](float value) {
        bar.setValue(0);
        const QImage empty = pictureOf(*widgetOf(window(), bar));
        bar.setValue(value);
        const QImage filled = pictureOf(*widgetOf(window(), bar));
        int last = 0;
        for (int x = 0; x < filled.width(); ++x) {
            last = filled.pixel(x, 5) != empty.pixel(x, 5) ? x + 1 : last;
        }
        return last;
    };
    EXPECT_EQ(pixelsUnlikeEmpty(0), 0);
    EXPECT_NEAR(pixelsUnlikeEmpty(50), 129, 1);
    EXPECT_NEAR(pixelsUnlikeEmpty(100), 256, 1);
}

TEST_F(Controls, ACheckBoxRefusesAllButItsThreeValues) {
    CheckBox& box = player().Popup().chkPopup[popupRepeat];
    int clicks = 0;
    box.Click = [&] { ++clicks; };
    ASSERT_EQ(box.Value(), 1);
    for (const int refused : {-1, 3, 256, 65536, 65537}) {
        box.setValue(refused);
        EXPECT_EQ(box.Value(), 1);
    }
    EXPECT_EQ(clicks, 0);
    box.setValue(2);
    EXPECT_EQ(box.Value(), 2);
    box.setValue(0);
    EXPECT_EQ(box.Value(), 0);
    EXPECT_EQ(clicks, 2);
    box.setValue(0);
    EXPECT_EQ(clicks, 2);
}

TEST_F(Controls, InvalidPlacesAndSizesAreRefused) {
    player().picDisplay.setLeft(30);
    player().picDisplay.setLeft(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(player().picDisplay.Left(), 30);
    player().picDisplay.setWidth(-15);
    EXPECT_GT(player().picDisplay.Width(), 0);
}

TEST_F(Controls, ThePopupShowsItsTexts) {
    const char* const captions[POPUP_ITEM_COUNT] = {
        " Otevřít...",
        " Vlastnosti",
        "------------------------------------",
        "------------------------------------",
        " Přetočit dozadu",
        " Pozastavit",
        " Přehrát",
        " Zastavit",
        " Přetočit dopředu",
        "------------------------------------",
        " O programu",
        " Minimalizovat",
        " Konec",
        " Zesílit hlasitost o 10%",
        " Zeslabit hlasitost o 10%",
    };
    for (std::size_t i = 0; i < POPUP_ITEM_COUNT; ++i) {
        const Label& item = player().Popup().lblPopup[i];
        EXPECT_EQ(item.Caption(), captions[i]);
        const bool needsFile = i == 1 || (i >= 4 && i <= 8);
        EXPECT_EQ(item.ForeColor(), needsFile ? DISABLED_ITEM_COLOR : ENABLED_ITEM_COLOR) << i;
        EXPECT_EQ(item.BackColor(), MENU_BACK_COLOR) << i;
        EXPECT_EQ(item.Left(), 120) << i;
        EXPECT_EQ(item.Width(), 2220) << i;
    }
    EXPECT_EQ(player().Popup().chkPopup[0].Caption(), "Vždy navrchu");
    EXPECT_EQ(player().Popup().chkPopup[1].Caption(), "Přehrávat opakovaně");
    EXPECT_EQ(player().Popup().Width(), 2520);
    EXPECT_EQ(player().Popup().Height(), 4335);
}

} // namespace
} // namespace zvonivec
