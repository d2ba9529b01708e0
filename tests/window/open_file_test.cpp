#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class OpenFile : public PlayerTest {
protected:
    void SetUp() override { start(); }
};

TEST_F(OpenFile, AsksForAnExistingMp3File) {
    player().OpenMp3File();
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_EQ(dialog().Filter, "MP3 soubory (*.mp3)|*.mp3|Všechny soubory (*.*)|*.*|");
    EXPECT_EQ(dialog().DialogTitle, "Otevřít soubor MP3");
    EXPECT_EQ(dialog().Flags, 4100U);
}

TEST_F(OpenFile, PlaysAnAcceptedFile) {
    open("/music/a.mp3");
    expectLook(true);
    EXPECT_EQ(engine().URL(), "/music/a.mp3");
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(engine().calls.back(), "play");
    EXPECT_EQ(dialog().InitDir, "/music/a.mp3");
    EXPECT_TRUE(boxes().boxes.empty());
}

TEST_F(OpenFile, AcceptsTheTypeInUpperCase) {
    engine().tracks["x"].attributes["Filetype"] = "MP3";
    open("x");
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(OpenFile, CancellingWhileIdleChangesNothing) {
    player().OpenMp3File();
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(dialog().InitDir, programFolder().substr(0, 2));
    expectLook(false);
}

TEST_F(OpenFile, CancellingWhileAFilePlaysChangesNothing) {
    open("a.mp3");
    engine().calls.clear();
    player().OpenMp3File();
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(dialog().InitDir, "a.mp3");
    expectLook(true);
}

TEST_F(OpenFile, RefusesAFileThatIsMp3OnlyByName) {
    engine().tracks["fake.mp3"].attributes["Filetype"] = "wav";
    open("fake.mp3");
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, "Tento soubor není ve formátu MP3!");
    EXPECT_EQ(boxes().boxes[0].style, 16);
    EXPECT_EQ(boxes().boxes[0].title, "Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(dialog().shown, 2);
    EXPECT_EQ(dialog().InitDir, "fake.mp3");
    EXPECT_EQ(engine().URL(), "");
}

TEST_F(OpenFile, RefusingWhileIdleLeavesTheDisplayAlone) {
    player().Timer1.setEnabled(false);
    player().picDisplay.setLeft(600);
    dialog().answers = {"text.txt"};
    player().OpenMp3File();
    EXPECT_EQ(player().picDisplay.Left(), 600);
    EXPECT_FALSE(player().Timer1.Enabled());
    EXPECT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(dialog().shown, 2);
}

TEST_F(OpenFile, RefusingWhileAFilePlaysStopsItAndShowsTheIdleWindowFirst) {
    open("a.mp3");
    boxes().During = [this] {
        expectLook(false);
        EXPECT_EQ(engine().playState(), PlayState::undefined);
        EXPECT_EQ(dialog().shown, 2);
    };
    dialog().answers = {"text.txt"};
    player().OpenMp3File();
    EXPECT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(dialog().shown, 3);
    expectLook(false);
}

TEST_F(OpenFile, AsksUntilTheFileIsAnMp3) {
    engine().tracks.try_emplace("good.mp3");
    dialog().answers = {"one.txt", "two.txt", "good.mp3"};
    player().OpenMp3File();
    EXPECT_EQ(boxes().boxes.size(), 2U);
    EXPECT_EQ(dialog().shown, 3);
    EXPECT_EQ(engine().URL(), "good.mp3");
    expectLook(true);
}

TEST_F(OpenFile, ProcessesEventsBeforeItAsksForTheType) {
    engine().tracks.try_emplace("a.mp3");
    engine().During = [this](const std::string& call) {
        if (call == "setURL a.mp3") {
            Application::post([this] { engine().calls.emplace_back("pass"); });
        }
    };
    dialog().answers = {"a.mp3"};
    player().OpenMp3File();
    ASSERT_GE(engine().calls.size(), 3U);
    EXPECT_EQ(engine().calls[1], "pass");
    EXPECT_EQ(engine().calls[2], "getItemInfo Filetype");
}

} // namespace
} // namespace zvonivec
