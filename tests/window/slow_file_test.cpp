// Files of which the engine knows nothing, or not everything, when it has loaded them.

#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class SlowFile : public PlayerTest {
protected:
    void SetUp() override {
        start();
        engine().tracks.try_emplace("slow.mp3");
        engine().tracks["slow.txt"].attributes = {{"Filetype", "txt"}};
    }

    /// Chooses a file in the dialog whose kind the engine doesn't know yet.
    void choose(const std::string& path) {
        engine().kindIsKnown = false;
        dialog().answers.emplace_back(path);
        player().OpenMp3File();
    }
    void kindBecomesKnown() {
        engine().kindIsKnown = true;
        engine().learn();
    }
    void expectNotRefused() {
        EXPECT_TRUE(boxes().boxes.empty());
        EXPECT_EQ(dialog().shown, 1);
    }
};

TEST_F(SlowFile, TheWindowIsIdleUntilTheKindIsKnown) {
    choose("slow.mp3");
    expectIdleLookWithFile("slow.mp3");
    expectNotRefused();
    EXPECT_EQ(engine().count("play"), 0);
    EXPECT_EQ(dialog().InitDir, "slow.mp3");

    kindBecomesKnown();
    expectLook(true);
    expectNotRefused();
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(engine().count("setURL slow.mp3"), 1);
    EXPECT_EQ(engine().count("setURL "), 0);
    EXPECT_TRUE(player().Timer1.Enabled());
}

TEST_F(SlowFile, TheFileBeforeLeavesTheWindowMeanwhile) {
    open("a.mp3");
    choose("slow.mp3");
    expectIdleLookWithFile("slow.mp3");
    EXPECT_EQ(engine().playState(), PlayState::ready);
    kindBecomesKnown();
    expectLook(true);
    EXPECT_EQ(engine().URL(), "slow.mp3");
}

TEST_F(SlowFile, IsRefusedLikeAnyOther) {
    choose("slow.txt");
    expectNotRefused();
    boxes().During = [this] {
        EXPECT_EQ(engine().URL(), "");
        EXPECT_EQ(dialog().shown, 1);
    };
    kindBecomesKnown();
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, "Tento soubor není ve formátu MP3!");
    EXPECT_EQ(boxes().boxes[0].style, 16);
    EXPECT_EQ(dialog().shown, 2) << "the dialog comes again";
    EXPECT_EQ(engine().URL(), "");
    expectLook(false);
}

TEST_F(SlowFile, OneThatWasGivenIsRefusedWithoutADialog) {
    engine().kindIsKnown = false;
    player().OpenGivenFile("slow.txt");
    EXPECT_TRUE(boxes().boxes.empty());
    kindBecomesKnown();
    EXPECT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(dialog().shown, 0);
}

TEST_F(SlowFile, AnotherFileTakesItsPlace) {
    choose("slow.txt");
    engine().tracks.try_emplace("b.mp3");
    engine().kindIsKnown = true;
    player().OpenGivenFile("b.mp3");
    expectLook(true);
    EXPECT_EQ(engine().URL(), "b.mp3");
    engine().learn();
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_EQ(engine().count("play"), 1);
}

TEST_F(SlowFile, WaitsForTheDialogThatIsOpen) {
    choose("slow.mp3");
    dialog().During = [this] {
        kindBecomesKnown();
        EXPECT_FALSE(player().PB.Visible());
    };
    player().OpenMp3File(); // cancelled
    EXPECT_EQ(dialog().shown, 2);
    expectLook(true);
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(SlowFile, IsForgottenForAnotherChoice) {
    choose("slow.txt");
    engine().tracks.try_emplace("b.mp3");
    dialog().During = [this] { kindBecomesKnown(); };
    dialog().answers.emplace_back("b.mp3");
    player().OpenMp3File();
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_EQ(engine().URL(), "b.mp3");
    expectLook(true);
}

TEST_F(SlowFile, TheKindMayComeWhileTheWindowBecomesIdle) {
    open("a.mp3");
    engine().During = [this](const std::string& call) {
        if (call == "setURL slow.mp3") {
            // In the pass after the next one, which is that of the idle look.
            Application::post([this] { Application::post([this] { kindBecomesKnown(); }); });
        }
    };
    choose("slow.mp3");
    EXPECT_TRUE(serveUntil([this] { return player().PB.Visible(); }));
    expectLook(true);
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(engine().count("play"), 2);
}

TEST_F(SlowFile, TheProgramMayEndMeanwhile) {
    choose("slow.txt");
    player().CloseApplication();
    kindBecomesKnown();
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_EQ(engine().URL(), "");
    EXPECT_EQ(dialog().shown, 1);
}

TEST_F(SlowFile, ButtonsAndTimerLeaveItAlone) {
    choose("slow.mp3");
    for (std::int16_t i = 0; i < buttonMinimise; ++i) {
        player().PressButton(i);
    }
    player().Timer1.Tick();
    player().SeekTo(10);
    EXPECT_EQ(engine().count("play"), 0);
    EXPECT_EQ(engine().count("stop"), 0);
    expectIdleLookWithFile("slow.mp3");
}

class LateFacts : public PlayerTest {
protected:
    void SetUp() override {
        start();
        engine().tracks["a.mp3"] = {.attributes = {{"Filetype", "mp3"}, {"Bitrate", "320000"}},
                                    .duration = 100,
                                    .durationString = "01:40"};
        open("a.mp3");
        player().Timer1.setEnabled(false);
    }
    void learnAll() {
        engine().tracks["a.mp3"] = {
            .attributes = {{"Filetype", "mp3"}, {"Bitrate", "224000"}, {"Title", "R&B"}},
            .duration = 200,
            .durationString = "03:20"};
        engine().learn();
    }
};

TEST_F(LateFacts, TakeTheirPlaces) {
    player().picDisplay.setLeft(300);
    engine().position = 30;
    player().Timer1.Tick();
    int reports = 0;
    player().StateChanged = [&] { ++reports; };
    learnAll();
    EXPECT_EQ(player().lbl_Info.Caption(), "Přehrávání: 224 kb/s        Skladba: R&&B");
    EXPECT_EQ(player().lbl_Info_SH.Caption(), player().lbl_Info.Caption());
    EXPECT_EQ(player().picDisplay.Width(), player().lbl_Info.Width() + 20);
    EXPECT_EQ(player().picDisplay.Left(), 300 - 30) << "the strip goes on where it is";
    EXPECT_EQ(player().lblTime[1].Caption(), "03:20");
    EXPECT_EQ(player().PB.Max(), 200);
    EXPECT_EQ(player().PB.Value(), 30);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(player().BuildPropertiesText(), "Přehrávání: 224 kb/s\r\nDélka skladby: 03:20\r\n"
                                              "Skladba: R&B\r\n\r\nURL: a.mp3");
    expectLook(true);
}

TEST_F(LateFacts, LeaveABarAtItsEndThere) {
    player().PressButton(buttonForward);
    EXPECT_EQ(player().lblTime[0].Caption(), "01:40");
    learnAll();
    EXPECT_EQ(player().PB.Value(), 200);
    EXPECT_EQ(player().lblTime[0].Caption(), "03:20");
    player().PressButton(buttonPlay);
    EXPECT_EQ(player().PB.Value(), 0);
}

TEST_F(LateFacts, DontTouchAnIdleWindow) {
    player().ShowPlayback(false);
    learnAll();
    expectLook(false);
}

TEST_F(LateFacts, OfAFileThatWillBeRefusedAreNotShown) {
    engine().tracks["b.txt"].attributes = {{"Filetype", "txt"}};
    engine().During = [this](const std::string& call) {
        if (call == "setURL b.txt") {
            Application::post([this] { engine().learn(); });
        }
    };
    engine().calls.clear();
    dialog().answers = {"b.txt"};
    player().OpenMp3File();
    EXPECT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(engine().count("getItemInfo Bitrate"), 0);
}

} // namespace
} // namespace zvonivec
