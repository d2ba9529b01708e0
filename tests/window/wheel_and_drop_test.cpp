// The wheel, and files that are dropped on the window.

#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QWindow>

namespace zvonivec {
namespace {

class Wheel : public PlayerTest {
protected:
    void SetUp() override {
        start();
        engine().tracks["a.mp3"].duration = 100;
        open("a.mp3");
        player().Timer1.setEnabled(false);
        engine().position = 50;
        engine().calls.clear();
    }
    void turn(const Control& control, int turned) {
        const QWidget& widget = widgetOfControl(control);
        input::wheel(*widget.window()->windowHandle(), widget.mapTo(widget.window(), QPoint(2, 2)),
                     turned);
    }
    std::int32_t volume() { return engine().settings().volume(); }
};

TEST_F(Wheel, StepsTheVolumeEverywhereButOnTheBar) {
    std::int32_t expected = 50;
    for (const Control* control : std::initializer_list<const Control*>{
             &player().imgLogo, &player().imgButtons[2], &player().lbl_Info, &player().lblStatus,
             &player().imgVolume, &player().imgDisplay_Mark}) {
        turn(*control, 120);
        EXPECT_EQ(volume(), expected + 10) << control->Name();
        turn(*control, -240);
        expected -= 10;
        EXPECT_EQ(volume(), expected) << control->Name();
        turn(*control, 120);
        expected += 10;
    }
    input::wheel(*window().windowHandle(), QPoint(30, 200), 120);
    EXPECT_EQ(volume(), 60);
    EXPECT_EQ(player().lblStatus.Caption(), "60% hlasitost");
    EXPECT_TRUE(engine().calls.empty());
}

TEST_F(Wheel, StepsTheVolumeOverADisabledButtonToo) {
    engine().fail();
    turn(player().imgButtons[2], 120);
    EXPECT_EQ(volume(), 60);
}

TEST_F(Wheel, SeeksOverTheBar) {
    turn(player().PB, 120);
    EXPECT_NEAR(engine().position, 55, 0.01);
    turn(player().PB, -240);
    EXPECT_NEAR(engine().position, 45, 0.01);
    EXPECT_EQ(volume(), 50);
}

TEST_F(Wheel, FineTurnsAddUp) {
    turn(player().imgLogo, 50);
    turn(player().imgLogo, 50);
    EXPECT_EQ(volume(), 50);
    turn(player().imgLogo, 50);
    EXPECT_EQ(volume(), 60);
    turn(player().imgLogo, -100); // what is left of the other way doesn't count
    EXPECT_EQ(volume(), 60);
    turn(player().imgLogo, -20);
    EXPECT_EQ(volume(), 50);
    turn(player().PB, 100);
    turn(player().imgLogo, 20);
    EXPECT_EQ(volume(), 50) << "the bar and the window count by themselves";
}

TEST_F(Wheel, DoesNothingOverTheMenu) {
    player().ShowPopupMenu();
    turn(popup().lblPopup[3], 120);
    EXPECT_EQ(volume(), 50);
    EXPECT_TRUE(popup().Visible());
}

class Drop : public PlayerTest {
protected:
    void SetUp() override { start(); }
    bool hover(const QList<QUrl>& urls) {
        return input::drag(*window().windowHandle(), QPoint(160, 200), urls);
    }
    bool drop(const QList<QUrl>& urls) {
        return input::drop(*window().windowHandle(), QPoint(160, 200), urls);
    }
};

TEST_F(Drop, AFileIsOpenedAsFromTheDialog) {
    const QString path = QStringLiteral("/music/Žluťoučký kůň.mp3");
    const std::string file = QDir::toNativeSeparators(path).toStdString();
    engine().tracks.try_emplace(file);
    const QUrl url = QUrl::fromLocalFile(path);
    EXPECT_TRUE(hover({url}));
    EXPECT_EQ(engine().URL(), "");
    EXPECT_TRUE(drop({url}));
    EXPECT_EQ(engine().URL(), file);
    EXPECT_EQ(engine().playState(), PlayState::playing);
    expectLook(true);
    EXPECT_EQ(dialog().shown, 0);
    EXPECT_EQ(dialog().InitDir, file);
}

TEST_F(Drop, AFileWhoseNameIsNotUtf8IsOpenedToo) {
    const std::string file = "/music/p\xEDse\xF2.mp3";
    engine().tracks.try_emplace(file);
    EXPECT_TRUE(drop({QUrl::fromEncoded("file:///music/p%EDse%F2.mp3")}));
    EXPECT_EQ(engine().URL(), file);
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(Drop, AFileThatIsNoMp3IsRefusedOnce) {
    open("a.mp3");
    dialog().shown = 0;
    EXPECT_TRUE(drop({QUrl::fromLocalFile(QStringLiteral("/music/a.wav"))}));
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, "Tento soubor není ve formátu MP3!");
    EXPECT_EQ(boxes().boxes[0].style, vbCritical);
    EXPECT_EQ(boxes().boxes[0].title, APPLICATION_TITLE);
    expectLook(false);
    EXPECT_EQ(dialog().shown, 0);
    EXPECT_TRUE(drop({QUrl::fromLocalFile(QStringLiteral("a.mp3"))}));
}

TEST_F(Drop, OnlyOneFileOfThisMachineIsTaken) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"));
    const QList<QUrl> refused[] = {{},
                                   {file, file},
                                   {QUrl(QStringLiteral("http://example.org/a.mp3"))},
                                   {QUrl(QStringLiteral("file://elsewhere.example.org/a.mp3"))}};
    for (const QList<QUrl>& urls : refused) {
        EXPECT_FALSE(hover(urls)) << urls.size();
        EXPECT_FALSE(drop(urls)) << urls.size();
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_TRUE(hover({QUrl(QStringLiteral("file://localhost/music/a.mp3"))}));
    EXPECT_TRUE(hover({file}));
}

TEST_F(Drop, NothingIsTakenWhileADialogIsOpen) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"));
    QDialog box(&window());
    box.setModal(true);
    box.show();
    ASSERT_TRUE(serveUntil([] { return QApplication::activeModalWidget() != nullptr; }));
    EXPECT_FALSE(hover({file}));
    box.hide();
    EXPECT_TRUE(hover({file}));
}

TEST_F(Drop, AFileThatIsDroppedWhileAnotherIsBeingOpenedIsIgnored) {
    engine().tracks.try_emplace("b.mp3");
    dialog().During = [this] { player().OpenGivenFile("b.mp3"); };
    player().OpenMp3File();
    EXPECT_EQ(engine().count("setURL b.mp3"), 0);
    player().OpenGivenFile("b.mp3");
    EXPECT_EQ(engine().count("setURL b.mp3"), 1);
}

} // namespace
} // namespace zvonivec
