// The message passes of the handlers that show something: how many there are, and what the window
// shows in each of them.

#include "tests/window/player_test.h"

#include <QElapsedTimer>
#include <sstream>

namespace zvonivec {
namespace {

class MessagePasses : public PlayerTest {
protected:
    using Texts = std::vector<std::string>;

    void SetUp() override {
        start();
        open("a.mp3");
        player().Timer1.setEnabled(false);
        player().Timer1.setInterval(600'000); // enabled again, it doesn't tick in a test's time
        engine().position = 61.5;
        engine().positionString = "01:01";
    }

    /// Runs a handler. Returns what a function says in each message pass, in order.
    Texts duringPasses(const std::function<void()>& handler,
                       const std::function<std::string()>& look) {
        Texts seen;
        bool running = true;
        // An event that is posted in a pass waits for the next pass.
        const std::function<void()> inPass = [&] {
            if (running) {
                seen.push_back(look());
                Application::post(inPass);
            }
        };
        Application::post(inPass);
        handler();
        running = false;
        DoEvents();
        return seen;
    }
    std::string position() {
        std::ostringstream text;
        text << player().picDisplay.Left() << ' ' << player().lblTime[0].Caption() << ' '
             << player().PB.Value();
        return text.str();
    }
    std::string look() {
        std::ostringstream text;
        text << (player().picDisplay.Left() == 2455 + 100 ? "right" : "elsewhere") << ", "
             << (shows(player().imgButtons[2], 3) ? "normal" : "disabled") << ", "
             << player().lbl_Info.Caption() << ", " << (player().PB.Visible() ? "bar" : "no bar");
        return text.str();
    }
};

TEST_F(MessagePasses, ATickShowsTheStripAndThenThePosition) {
    player().picDisplay.setLeft(900);
    EXPECT_EQ(duringPasses([this] { player().Timer1.Tick(); }, [this] { return position(); }),
              (Texts{"870 00:00 0", "870 01:01 61.5"}));
}

TEST_F(MessagePasses, ATickOfAPausedTrackShowsTheStripAlone) {
    player().WMP->controls().pause();
    player().picDisplay.setLeft(900);
    EXPECT_EQ(duringPasses([this] { player().Timer1.Tick(); }, [this] { return position(); }),
              Texts{"870 00:00 0"});
}

TEST_F(MessagePasses, ASeekHasOnePassBeforeAndOneAfterThePosition) {
    player().picDisplay.setLeft(900);
    engine().During = [this](const std::string& call) {
        if (call.starts_with("seek ")) {
            engine().positionString = "00:50";
        }
    };
    // (950 + 50) / 38.55 * 1.8 seconds
    EXPECT_EQ(duringPasses([this] { player().PB.MouseUp({.Button = 1, .X = 950}); },
                           [this] { return position(); }),
              (Texts{"900 00:00 0", "900 00:50 46.6926"}));
}

TEST_F(MessagePasses, ThePlayingLookShowsItsButtonsBeforeItsText) {
    player().ShowPlayback(false);
    player().picDisplay.setLeft(900);
    engine().setURL("a.mp3");
    EXPECT_EQ(duringPasses([this] { player().ShowPlayback(true); }, [this] { return look(); }),
              (Texts{"right, normal, Vítejte v programu Zvonivec MP3 Player 0.0.7, no bar",
                     "right, normal, Přehrávání: 128 kb/s, bar"}));
}

TEST_F(MessagePasses, TheIdleLookShowsItsButtonsBeforeItsText) {
    player().picDisplay.setLeft(900);
    EXPECT_EQ(duringPasses([this] { player().ShowPlayback(false); }, [this] { return look(); }),
              (Texts{"right, disabled, Přehrávání: 128 kb/s, bar",
                     "right, disabled, Vítejte v programu Zvonivec MP3 Player 0.0.7, no bar"}));
}

TEST_F(MessagePasses, AnErrorHasOneMoreBeforeItsBox) {
    std::size_t beforeBox = 0;
    std::size_t passes = 0;
    boxes().During = [&] { beforeBox = passes; };
    const Texts seen = duringPasses([this] { engine().fail(); },
                                    [&] {
                                        ++passes;
                                        return look();
                                    });
    EXPECT_EQ(beforeBox, 3U);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[2], seen[1]);
    EXPECT_EQ(seen[2], "right, disabled, Vítejte v programu Zvonivec MP3 Player 0.0.7, no bar");
}

TEST_F(MessagePasses, AVolumeStepShowsTheVolume) {
    EXPECT_EQ(duringPasses([this] { player().imgVolume_MouseUp({.Button = 1}); },
                           [this] { return player().lblStatus.Caption(); }),
              Texts{"60% hlasitost"});
}

TEST_F(MessagePasses, TheMenuHidesInOne) {
    player().ShowPopupMenu();
    EXPECT_EQ(duringPasses([this] { popup().Form_Deactivate(); },
                           [this] { return popup().Visible() ? "shown" : "hidden"; }),
              Texts{"hidden"});
}

TEST_F(MessagePasses, ATickThatIsDueComesInAHandlersPass) {
    player().picDisplay.setLeft(900);
    player().Timer1.setInterval(1);
    player().Timer1.setEnabled(true);
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < 5) { // no event is served meanwhile
    }
    EXPECT_EQ(player().picDisplay.Left(), 900);
    player().imgVolume_MouseUp({.Button = 1});
    player().Timer1.setEnabled(false);
    EXPECT_EQ(player().picDisplay.Left(), 870);
    EXPECT_EQ(player().lblTime[0].Caption(), "01:01");
}

TEST_F(MessagePasses, ATickInATicksOwnPassMovesTheStripOnceMore) {
    player().picDisplay.setLeft(900);
    Application::post([this] { player().Timer1.Tick(); });
    player().Timer1.Tick();
    EXPECT_EQ(player().picDisplay.Left(), 840);
    EXPECT_EQ(player().lblTime[0].Caption(), "01:01");
}

} // namespace
} // namespace zvonivec
