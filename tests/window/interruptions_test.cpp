// A handler that processes events may be interrupted by any event. Here each handler is interrupted
// by each event, in each of its message passes.

#include "tests/window/player_test.h"

#include <QCloseEvent>

namespace zvonivec {
namespace {

struct Command {
    const char* name;
    std::function<void(frmPlayer&)> run;
};

/// A moment of a handler: an engine call, the dialog or a box, after which the next message pass
/// brings the event; START is the call of the handler.
constexpr const char* START = "";
constexpr const char* LOADED = "setURL b.mp3";
constexpr const char* UNLOADED = "setURL ";
constexpr const char* TYPE_READ = "getItemInfo Filetype";
constexpr const char* RATE_KNOWN = "isReadOnlyItem Bitrate";
constexpr const char* LENGTH_READ = "durationString";
constexpr const char* DIALOG = "dialog";
constexpr const char* BOX = "box";

struct Handler : Command {
    std::vector<const char*> moments; ///< all that it has
};

/// Handlers that the user or the engine starts, with all their message passes.
const Handler HANDLERS[] = {
    {{"Open", [](frmPlayer& player) { player.OpenMp3File(); }},
     {START, DIALOG, LOADED, TYPE_READ, RATE_KNOWN, LENGTH_READ}},
    {{"ShowPlaying", [](frmPlayer& player) { player.ShowPlayback(true); }},
     {START, RATE_KNOWN, LENGTH_READ}},
    {{"ShowIdle", [](frmPlayer& player) { player.ShowPlayback(false); }}, {START, UNLOADED}},
    {{"Error", [](frmPlayer& player) { player.WMP->MediaError(); }}, {START, UNLOADED, BOX}},
    {{"Tick", [](frmPlayer& player) { player.Timer1.Tick(); }}, {START}},
    {{"Seek", [](frmPlayer& player) { player.PB.MouseUp({.Button = 1, .X = 1000}); }}, {START}},
    {{"Volume", [](frmPlayer& player) { player.imgVolume_MouseUp({.Button = 1}); }}, {START}},
    {{"MenuHides", [](frmPlayer& player) { player.Popup().Form_Deactivate(); }}, {START}},
    {{"MenuOpensFile", [](frmPlayer& player) { player.Popup().lblPopup_Click(itemOpen); }},
     {START, DIALOG, LOADED, TYPE_READ, RATE_KNOWN, LENGTH_READ}},
    {{"MenuProperties", [](frmPlayer& player) { player.Popup().lblPopup_Click(itemProperties); }},
     {START, RATE_KNOWN, LENGTH_READ, BOX}},
    {{"MenuStops", [](frmPlayer& player) { player.Popup().lblPopup_Click(7); }}, {START}},
    {{"MenuSwitch", [](frmPlayer& player) { player.Popup().chkPopup[popupOnTop].press(); }},
     {START}},
};

void clickButton(frmPlayer& player, std::int16_t index) {
    if (player.imgButtons[static_cast<std::size_t>(index)].Enabled()) {
        player.imgButtons[static_cast<std::size_t>(index)].MouseDown({.Button = 1});
        player.imgButtons_MouseUp(index, {.Button = 1});
    }
}

/// Events that may interrupt a handler.
const Command EVENTS[] = {
    {"Close", [](frmPlayer& player) { player.CloseApplication(); }},
    {"CloseByWindowManager", [](frmPlayer& player) { QWidget::find(player.hWnd())->close(); }},
    {"PopupGoes", [](frmPlayer& player) { player.Popup().Unload(); }},
    {"OpenAnother", [](frmPlayer& player) { player.OpenMp3File(); }},
    {"ClickOnLogo",
     [](frmPlayer& player) {
         player.imgLogo.MouseDown({.Button = 1});
         player.imgLogo.MouseUp({.Button = 1});
     }},
    {"Error", [](frmPlayer& player) { player.WMP->MediaError(); }},
    {"Learnt", [](frmPlayer& player) { player.WMP->MediaChange(); }},
    {"Stop", [](frmPlayer& player) { clickButton(player, buttonStop); }},
    {"Forward", [](frmPlayer& player) { clickButton(player, buttonForward); }},
    {"End", [](frmPlayer& player) { player.WMP->PlayStateChange(PlayState::stopped); }},
    {"Idle", [](frmPlayer& player) { player.ShowPlayback(false); }},
    {"Tick", [](frmPlayer& player) { player.Timer1.Tick(); }},
    {"MenuOpens", [](frmPlayer& player) { player.ShowPopupMenu(); }},
    {"MenuAgain", [](frmPlayer& player) { player.Popup().lblPopup_Click(itemOpen); }},
    {"MenuQuits", [](frmPlayer& player) { player.Popup().lblPopup_Click(itemQuit); }},
    {"Minimise", [](frmPlayer& player) { player.setWindowState(Form::WindowState::minimised); }},
};

class Interruption : public PlayerTest, public testing::WithParamInterface<Handler> {
protected:
    /// Runs the handler and lets the event interrupt it in the message pass after a moment.
    void interrupt(const Command& handler, const Command& event, const std::string& moment) {
        open("a.mp3");
        player().Timer1.setEnabled(true);
        engine().tracks.try_emplace("b.mp3");
        engine().tracks.try_emplace("c.mp3");
        dialog().answers = {"b.mp3"};
        const int opened = dialog().shown;
        bool due = true;
        int served = 0;
        const auto post = [&](const std::string& now) {
            if (due && now == moment) {
                due = false;
                Application::post([&] {
                    ++served;
                    dialog().answers.emplace_back("c.mp3");
                    event.run(player());
                });
            }
        };
        engine().During = post;
        dialog().During = [&] { post(DIALOG); };
        boxes().During = [&] {
            post(BOX);
            DoEvents(); // a real box serves events until it is closed
        };
        post(START);
        handler.run(player());
        EXPECT_EQ(served, 1); // in one of its passes
        engine().During = nullptr;
        dialog().During = nullptr;
        boxes().During = nullptr;
        EXPECT_LE(dialog().shown - opened, 2);
    }

    void expectConsistentState() {
        EXPECT_EQ(player().Timer1.Enabled(), player().Loaded());
        if (player().Loaded()) {
            expectLook(!engine().URL().empty());
        } else {
            EXPECT_FALSE(player().Visible());
            EXPECT_EQ(engine().URL(), "");
            EXPECT_EQ(engine().playState(), PlayState::undefined);
        }
    }
};

TEST_P(Interruption, LeavesAConsistentState) {
    for (const Command& event : EVENTS) {
        for (const char* moment : GetParam().moments) {
            SCOPED_TRACE(std::string(event.name) + " after " + moment);
            renew();
            player().Form_Load();
            interrupt(GetParam(), event, moment);
            expectConsistentState();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Handlers, Interruption, testing::ValuesIn(HANDLERS),
                         [](const auto& tested) { return std::string(tested.param.name); });

// --- Results of certain interruptions ---------------------------------------------------------

class Overtaken : public PlayerTest {
protected:
    void SetUp() override { start(); }

    /// Runs a function in the message pass after a call of the engine.
    void after(const std::string& moment, const std::function<void()>& function) {
        engine().During = [moment, function, due = true](const std::string& call) mutable {
            if (due && call == moment) {
                due = false;
                Application::post(function);
            }
        };
    }
};

TEST_F(Overtaken, AFileThatFailsWhileItIsShownEndsIdleWithOneBox) {
    after("durationString", [this] { engine().fail(); });
    open("a.mp3");
    expectLook(false);
    EXPECT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(engine().playState(), PlayState::undefined);
}

TEST_F(Overtaken, AFileThatFailsBeforeItsTypeIsKnownIsNotRefused) {
    after("setURL a.mp3", [this] { engine().fail(); });
    open("a.mp3");
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_NE(boxes().boxes[0].text, "Tento soubor není ve formátu MP3!");
    EXPECT_EQ(dialog().shown, 1);
}

TEST_F(Overtaken, ASecondClickOnTheLogoOpensNoSecondDialog) {
    after("setURL a.mp3", [this] { player().OpenMp3File(); });
    open("a.mp3");
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(Overtaken, ClosingWhileTheDialogIsOpenPlaysNothing) {
    dialog().During = [this] { player().CloseApplication(); };
    open("a.mp3");
    EXPECT_EQ(engine().count("play"), 0);
    EXPECT_EQ(engine().URL(), "");
}

TEST_F(Overtaken, ClosingWhileTheRefusalIsShownOpensNoDialog) {
    boxes().During = [this] { player().CloseApplication(); };
    dialog().answers = {"text.txt", "text.txt"};
    player().OpenMp3File();
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_EQ(boxes().boxes.size(), 1U);
}

TEST_F(Overtaken, ClosingWhileTheTrackIsShownPlaysNothing) {
    after("durationString", [this] { player().CloseApplication(); });
    open("a.mp3");
    EXPECT_FALSE(player().Loaded());
    EXPECT_EQ(engine().URL(), "");
    EXPECT_NE(engine().playState(), PlayState::playing);
    EXPECT_FALSE(player().Timer1.Enabled());
}

TEST_F(Overtaken, AnErrorAfterTheEndShowsNoBox) {
    player().CloseApplication();
    engine().fail();
    EXPECT_TRUE(boxes().boxes.empty());
}

} // namespace
} // namespace zvonivec
