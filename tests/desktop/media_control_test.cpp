// The desktop's controls of players, over a message bus.
#include "tests/desktop/playing_test.h"
#include "tests/support/message_bus.h"

#include <algorithm>

namespace support {

namespace {

class MediaControlTest : public PlayingTest {
protected:
    /// Starts a player that knows the bus, instead of the fixture's.
    void SetUp() override {
        PlayingTest::SetUp();
        ASSERT_TRUE(bus_.running());
        player_.reset();
        player_ = std::make_unique<Player>(display_, folder_.file("program"), withBus());
        ASSERT_TRUE(player_->waitUntilShown()) << player_->messages();
        ASSERT_TRUE(waitUntil([this] { return ask({"-l"}) == "zvonivec"; })) << ask({"-l"});
    }
    [[nodiscard]] Process::Environment withBus() const {
        Process::Environment all = environment();
        const Process::Environment bus = bus_.environment();
        all.insert(all.end(), bus.begin(), bus.end());
        return all;
    }
    /// Runs playerctl. Returns what it writes.
    [[nodiscard]] std::string ask(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "playerctl");
        return answerOf(arguments);
    }
    [[nodiscard]] std::string answerOf(const std::vector<std::string>& command) const {
        const std::string file = folder_.file("answer");
        Process::Options options;
        options.environment = withBus();
        options.outputFile = file;
        options.errorFile = folder_.file("answer-errors");
        run(command, options, std::chrono::seconds(30));
        std::string answer = readFile(file);
        while (answer.ends_with('\n')) {
            answer.pop_back();
        }
        return answer;
    }
    [[nodiscard]] bool answers(const std::vector<std::string>& arguments,
                               const std::string& answer) const {
        return waitUntil([&] { return ask(arguments) == answer; });
    }
    /// Calls a method of the player on the bus.
    [[nodiscard]] std::string call(const std::vector<std::string>& methodAndArguments) const {
        std::vector<std::string> command{"dbus-send", "--session", "--print-reply",
                                         "--dest=org.mpris.MediaPlayer2.zvonivec",
                                         "/org/mpris/MediaPlayer2"};
        command.insert(command.end(), methodAndArguments.begin(), methodAndArguments.end());
        return answerOf(command);
    }
    /// Returns a property of one of the player's two interfaces.
    [[nodiscard]] std::string property(const std::string& name,
                                       const std::string& interface = ".Player") const {
        return call({"org.freedesktop.DBus.Properties.Get",
                     "string:org.mpris.MediaPlayer2" + interface, "string:" + name});
    }

    MessageBus bus_{environment()};
};

TEST_F(MediaControlTest, WithoutAFileItSaysSo) {
    EXPECT_TRUE(answers({"status"}, "Stopped"));
    for (const char* name : {"CanPlay", "CanPause", "CanSeek", "CanGoNext", "CanGoPrevious"}) {
        EXPECT_NE(property(name).find("boolean false"), std::string::npos) << name;
    }
    EXPECT_NE(property("CanControl").find("boolean true"), std::string::npos);
    for (const char* name : {"CanQuit", "CanRaise"}) {
        EXPECT_NE(property(name, "").find("boolean true"), std::string::npos) << name;
    }
    EXPECT_NE(property("Identity", "").find("\"Zvonivec MP3 Player\""), std::string::npos);
    EXPECT_NE(property("DesktopEntry", "").find("\"zvonivec\""), std::string::npos);
}

TEST_F(MediaControlTest, ItControlsThePlayer) {
    playFile(60);
    EXPECT_TRUE(answers({"status"}, "Playing"));
    EXPECT_EQ(ask({"metadata", "xesam:title"}), "Rock & Roll");
    EXPECT_EQ(ask({"metadata", "xesam:artist"}), "Someone");
    EXPECT_EQ(ask({"metadata", "xesam:album"}), "<b>Bold</b>");
    EXPECT_EQ(ask({"metadata", "xesam:url"}), "file://" + file_);
    const double length = std::stod(ask({"metadata", "mpris:length"})) / 1e6;
    EXPECT_NEAR(length, 60, 0.1);
    for (const char* name : {"CanPlay", "CanPause", "CanSeek", "CanGoNext"}) {
        EXPECT_NE(property(name).find("boolean true"), std::string::npos) << name;
    }

    (void)ask({"play-pause"});
    EXPECT_TRUE(answers({"status"}, "Paused"));
    EXPECT_TRUE(player_->showsMark(player::pause));
    (void)ask({"pause"});
    EXPECT_EQ(ask({"status"}), "Paused");
    (void)ask({"position", "30"});
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:30"); }));
    EXPECT_NEAR(std::stod(ask({"position"})), 30, 0.1);
    (void)ask({"position", "5-"});
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:25"); }));
    (void)ask({"play-pause"});
    EXPECT_TRUE(answers({"status"}, "Playing"));
    EXPECT_TRUE(player_->showsMark(player::play));

    (void)ask({"volume", "0.3"});
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("30% hlasitost"); }));
    EXPECT_EQ(std::stod(ask({"volume"})), 0.3);
    EXPECT_EQ(ask({"loop"}), "Track");
    (void)ask({"loop", "none"});
    EXPECT_TRUE(answers({"loop"}, "None"));

    (void)ask({"stop"});
    EXPECT_TRUE(answers({"status"}, "Stopped"));
    EXPECT_TRUE(player_->showsMark(player::stop));
    (void)ask({"previous"});
    EXPECT_TRUE(player_->showsMark(player::stop));
    (void)ask({"next"});
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::forward); }));
    EXPECT_TRUE(player_->showsRunningTime("01:00"));
}

TEST_F(MediaControlTest, AChangeIsSentAndNothingElse) {
    playFile(60);
    ASSERT_TRUE(answers({"status"}, "Playing"));
    const std::string seen = folder_.file("seen");
    Process::Options options;
    options.environment = withBus();
    options.outputFile = seen;
    Process monitor({"stdbuf", "-oL", "dbus-monitor", "--session",
                     "type='signal',path='/org/mpris/MediaPlayer2'"},
                    options);
    const auto count = [&](const std::string& text) {
        const std::string all = readFile(seen);
        std::size_t found = 0;
        for (std::size_t at = all.find(text); at != std::string::npos;
             at = all.find(text, at + 1)) {
            ++found;
        }
        return found;
    };
    // The bus takes the monitor's name away when it begins to watch.
    ASSERT_TRUE(waitUntil([&] { return count("NameLost") > 0; }));
    const std::size_t before = count("path=/org/mpris");
    ASSERT_TRUE(
        waitUntil([&] { return player_->showsRunningTime("00:04"); }, std::chrono::seconds(20)));
    EXPECT_EQ(count("path=/org/mpris"), before) << "while it plays nothing is sent";
    (void)ask({"pause"});
    ASSERT_TRUE(waitUntil([&] { return count("member=PropertiesChanged") == 1; }));
    EXPECT_EQ(count("\"PlaybackStatus\""), 1U);
    (void)ask({"position", "30"});
    EXPECT_TRUE(waitUntil([&] { return count("member=Seeked") == 1; }));
    EXPECT_EQ(count("int64 30"), 1U);
}

TEST_F(MediaControlTest, ASecondCopyHasANameOfItsOwn) {
    Player second(display_, folder_.file("second"), withBus());
    ASSERT_TRUE(second.waitUntilShown());
    const std::string name = "zvonivec.instance" + std::to_string(second.process().pid());
    EXPECT_TRUE(waitUntil([&] { return ask({"-l"}).find(name) != std::string::npos; }));
    EXPECT_NE(ask({"-l"}).find("zvonivec\n"), std::string::npos);
    (void)call({"org.mpris.MediaPlayer2.Quit"});
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_TRUE(second.process().running());
}

TEST_F(MediaControlTest, ItIsRaisedAndEnds) {
    (void)call({"org.mpris.MediaPlayer2.Raise"});
    EXPECT_TRUE(player_->window().isShown());
    click(player::minimise);
    EXPECT_TRUE(waitUntil([&] { return !player_->window().isShown(); }));
    (void)call({"org.mpris.MediaPlayer2.Raise"});
    EXPECT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    (void)call({"org.mpris.MediaPlayer2.Quit"});
    EXPECT_EQ(player_->process().waitForExit(), 0);
}

TEST_F(MediaControlTest, ItOpensAFileWhoseNameIsNotUtf8) {
    (void)makeFile(folder_.file("p\xEDse\xF2.mp3"), 60);
    const std::string url = "file://" + folder_.file("p%EDse%F2.mp3");
    (void)call({"org.mpris.MediaPlayer2.Player.OpenUri", "string:" + url});
    EXPECT_TRUE(answers({"status"}, "Playing"));
    EXPECT_EQ(ask({"metadata", "xesam:url"}), url);
}

TEST_F(MediaControlTest, ItAnswersWhileABoxIsOpen) {
    const std::string text = folder_.file("text.txt");
    writeFile(text, "no music");
    const std::string answer =
        call({"org.mpris.MediaPlayer2.Player.OpenUri", "string:file://" + text});
    EXPECT_NE(answer.find("method return"), std::string::npos);
    const auto box = waitForMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(ask({"status"}), "Stopped");
    this->answer(*box, "Return");
}

TEST_F(MediaControlTest, ItIsDescribed) {
    const std::string description = call({"org.freedesktop.DBus.Introspectable.Introspect"});
    for (const char* part : {"org.mpris.MediaPlayer2.Player", "PlayPause", "SetPosition", "Seeked",
                             "LoopStatus", "org.freedesktop.DBus.Properties"}) {
        EXPECT_NE(description.find(part), std::string::npos) << part;
    }
}

} // namespace

} // namespace support
