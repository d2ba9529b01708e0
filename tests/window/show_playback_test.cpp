#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class ShowPlayback : public PlayerTest {
protected:
    void SetUp() override { start(); }
};

TEST_F(ShowPlayback, ThePlayingLookShowsTheTrack) {
    auto& track = engine().tracks["a.mp3"];
    track.attributes["Album"] = "A";
    track.attributes["Title"] = "T";
    track.attributes["Author"] = "I";
    track.duration = 250.25;
    track.durationString = "04:10";
    open("a.mp3");
    expectLook(true);
    EXPECT_EQ(player().lbl_Info.Caption(),
              "Přehrávání: 128 kb/s        Album: A        Skladba: T        Interpret: I");
    EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
    EXPECT_EQ(player().lblTime[1].Caption(), "04:10");
    EXPECT_EQ(player().PB.Max(), 250.25F);
    EXPECT_EQ(player().picDisplay.Width(), player().lbl_Info.Width() + 20);
    EXPECT_EQ(player().picDisplay.Left(), 2455 + 100);
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 24));
    EXPECT_EQ(player().imgDisplay_Mark.ToolTipText(), "Přehrát");
    EXPECT_TRUE(player().Timer1.Enabled());
}

TEST_F(ShowPlayback, TheIdleLookShowsTheWelcomeText) {
    open("a.mp3");
    player().PB.setValue(40);
    player().ShowPlayback(false);
    expectLook(false);
    EXPECT_EQ(player().lbl_Info.Caption(), "Vítejte v programu Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
    EXPECT_EQ(player().PB.Value(), 0);
    EXPECT_EQ(player().picDisplay.Width(), player().lbl_Info.Width() + 20);
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 25));
    EXPECT_EQ(player().imgDisplay_Mark.ToolTipText(), "Zastavit");
    EXPECT_TRUE(player().Timer1.Enabled());
    EXPECT_FALSE(player().PB.Visible());
    EXPECT_FALSE(player().lblTime[0].Visible());
    EXPECT_FALSE(player().lblTime[1].Visible());
}

TEST_F(ShowPlayback, ShowingTheIdleLookTwiceChangesNothing) {
    open("a.mp3");
    player().ShowPlayback(false);
    player().Timer1.setEnabled(false);
    const QImage once = pictureOf(window());
    player().ShowPlayback(false);
    player().Timer1.setEnabled(false);
    EXPECT_EQ(pictureOf(window()), once);
    expectLook(false);
}

TEST_F(ShowPlayback, MarkupAndAmpersandsAreShownLiterally) {
    const std::string title = "<b>x</b> <img src=/etc/passwd> a && b &c";
    engine().tracks["a.mp3"].attributes["Title"] = title;
    open("a.mp3");
    EXPECT_EQ(player().lbl_Info.accessibleTraits().name,
              "Přehrávání: 128 kb/s        Skladba: " + title);
}

TEST_F(ShowPlayback, WaitsUntilTheEngineKnowsTheBitRate) {
    engine().answersUntilBitrateIsKnown = 50;
    open("a.mp3");
    EXPECT_EQ(engine().questionsForBitrate, 50);
    const auto asked =
        std::find(engine().calls.begin(), engine().calls.end(), "getItemInfo Bitrate");
    EXPECT_EQ(std::count(engine().calls.begin(), asked, "isReadOnlyItem Bitrate"), 50);
}

TEST_F(ShowPlayback, TheTimerIsStoppedMeanwhile) {
    engine().During = [this](const std::string& call) {
        if (call == "durationString") {
            EXPECT_FALSE(player().Timer1.Enabled());
        }
    };
    open("a.mp3");
    EXPECT_GE(engine().count("durationString"), 1);
    EXPECT_TRUE(player().Timer1.Enabled());
}

TEST_F(ShowPlayback, AShorterTrackStartsWithAnEmptyBar) {
    engine().tracks["long.mp3"].duration = 500;
    open("long.mp3");
    player().PB.setValue(400);
    engine().tracks["short.mp3"].duration = 100;
    open("short.mp3");
    EXPECT_EQ(player().PB.Max(), 100);
    EXPECT_EQ(player().PB.Value(), 0);
}

TEST_F(ShowPlayback, AFileOfUnknownLengthKeepsTheBarsRange) {
    engine().tracks["a.mp3"].duration = 0;
    open("a.mp3");
    EXPECT_EQ(player().PB.Max(), 100);
}

struct InfoCase {
    const char* name;
    support::FakeEngine::Attributes attributes;
    const char* line;
};

class InfoLine : public PlayerTest, public testing::WithParamInterface<InfoCase> {};

TEST_P(InfoLine, ShowsTheTagsOfTheFile) {
    start();
    engine().tracks["a.mp3"].attributes = GetParam().attributes;
    engine().setURL("a.mp3");
    EXPECT_EQ(player().BuildInfoLine(), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Files, InfoLine,
    testing::Values(
        InfoCase{"Everything",
                 {{"Bitrate", "128000"}, {"Album", "A"}, {"Title", "T"}, {"Author", "I"}},
                 "Přehrávání: 128 kb/s        Album: A        Skladba: T        Interpret: I"},
        InfoCase{"OddRate", {{"Bitrate", "320500"}}, "Přehrávání: 320500 b/s"},
        InfoCase{"NoTags", {{"Bitrate", "128000"}}, "Přehrávání: 128 kb/s"},
        InfoCase{"TitleOnly",
                 {{"Bitrate", "192000"}, {"Title", "T"}},
                 "Přehrávání: 192 kb/s        Skladba: T"},
        InfoCase{"Blanks",
                 {{"Bitrate", "192000"}, {"Author", " "}},
                 "Přehrávání: 192 kb/s        Interpret:  "},
        InfoCase{"Ampersand",
                 {{"Bitrate", "192000"}, {"Title", "R&B"}},
                 "Přehrávání: 192 kb/s        Skladba: R&B"},
        InfoCase{"NoRate", {}, "Přehrávání:  b/s"}),
    [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
} // namespace zvonivec
