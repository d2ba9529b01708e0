// The real window and the real engine. A sound server plays into a sink that is recorded.

#include "tests/support/mp3_samples.h"
#include "tests/support/no_threads.h"
#include "tests/support/pulse_server.h"
#include "tests/support/recording.h"
#include "tests/window/player_test.h"

#include <utility>

namespace zvonivec {
namespace {

class RealEngine : public testing::Test {
protected:
    void SetUp() override {
        sound_.useInThisProcess();
        auto dialog = std::make_unique<FakeDialog>();
        auto boxes = std::make_unique<FakeBoxes>();
        dialog_ = dialog.get();
        boxes_ = boxes.get();
        player_ = std::make_unique<frmPlayer>(
            frmPlayer::Parts{.engine = createPlayerEngine(Application::post),
                             .dialog = std::move(dialog),
                             .boxes = std::move(boxes),
                             .programFolder = "/opt/zvonivec"});
        player().Form_Load();
        player().WMP->settings().setVolume(100);
        file_ = folder_.file("track.mp3");
        ASSERT_TRUE(support::encodeNoise(file_, 2, {"-b", "128"}));
        samples_ = support::decodeWithMpg123(file_);
    }

    void open(const std::string& path) {
        dialog_->answers.emplace_back(path);
        player().OpenMp3File();
    }
    void repeat(int value) { player().Popup().chkPopup[popupRepeat].setValue(value); }

    /// Returns the end of the track in the recording, or nothing when the whole track isn't in the
    /// recording from an index on.
    std::optional<std::size_t> heardFrom(std::size_t place) {
        const support::Samples heard = recording_.samples();
        // So short that hardly ever a gap of a busy machine falls into it.
        const support::Samples start(samples_.begin(), samples_.begin() + 200);
        const auto at = support::findIn(heard, start, place);
        if (!at) {
            return std::nullopt;
        }
        const support::Match match = support::follow(heard, *at, samples_, 0);
        return match.length == samples_.size() ? std::optional(match.end) : std::nullopt;
    }

    frmPlayer& player() { return *player_; }
    FakeBoxes& boxes() { return *boxes_; }

    support::TemporaryFolder folder_;
    support::PulseServer sound_;
    support::Recording recording_{sound_};
    std::string file_;
    support::Samples samples_;

private:
    FakeDialog* dialog_ = nullptr;
    FakeBoxes* boxes_ = nullptr;
    std::unique_ptr<frmPlayer> player_;
};

TEST_F(RealEngine, ATrackPlaysToItsEndAndStops) {
    repeat(0);
    open(file_);
    EXPECT_EQ(player().lblTime[1].Caption(), "00:02");
    EXPECT_TRUE(serveUntil([this] { return player().lblTime[0].Caption() == "00:01"; }));
    EXPECT_GT(player().PB.Value(), 0.9F);
    EXPECT_TRUE(serveUntil([this] { return player().WMP->playState() == PlayState::stopped; }));
    EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
    EXPECT_EQ(player().PB.Value(), 0);
    EXPECT_EQ(player().imgDisplay_Mark.ToolTipText(), "Zastavit");
    EXPECT_EQ(player().WMP->URL(), file_);
    EXPECT_TRUE(serveUntil([this] { return heardFrom(0).has_value(); }));
    EXPECT_TRUE(recording_.waitForSilence());

    player().gClickArmed = true;
    player().imgButtons_MouseUp(buttonPlay, {.Button = 1});
    const std::size_t once = heardFrom(0).value_or(0);
    EXPECT_TRUE(serveUntil([&] { return heardFrom(once).has_value(); }));
    EXPECT_TRUE(boxes().boxes.empty());
}

TEST_F(RealEngine, ATrackIsRepeatedWithoutTouchingTheDisplay) {
    repeat(1);
    open(file_);
    EXPECT_TRUE(serveUntil([this] {
        const auto once = heardFrom(0);
        return once && heardFrom(*once).has_value();
    }));
    EXPECT_EQ(player().imgDisplay_Mark.ToolTipText(), "Přehrát");
    EXPECT_EQ(player().WMP->playState(), PlayState::playing);
}

TEST_F(RealEngine, StopEndsARepeatedTrack) {
    repeat(1);
    open(file_);
    EXPECT_TRUE(serveUntil([this] { return player().PB.Value() > 0.3F; }));
    for (int i = 0; i < 3; ++i) {
        player().gClickArmed = true;
        player().imgButtons_MouseUp(buttonStop, {.Button = 1});
    }
    EXPECT_TRUE(recording_.waitForSilence());
    EXPECT_EQ(player().WMP->playState(), PlayState::stopped);
}

TEST_F(RealEngine, AnotherFileReplacesTheFirstWithoutAnEndEvent) {
    repeat(1);
    open(file_);
    const std::string other = folder_.file("other.mp3");
    ASSERT_TRUE(support::encodeNoise(other, 2, {"-b", "192"}, 44100, 2, 7));
    samples_ = support::decodeWithMpg123(other);
    open(other);
    EXPECT_TRUE(serveUntil([this] { return heardFrom(0).has_value(); }));
    EXPECT_EQ(player().WMP->URL(), other);
    EXPECT_EQ(player().lbl_Info.Caption().find("Přehrávání: 192 kb/s"), 0U);
}

TEST_F(RealEngine, AFileThatIsNoMp3IsRefused) {
    const std::string wav = folder_.file("wave.mp3");
    support::writeWav(wav, support::noise(1));
    open(wav);
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, "Tento soubor není ve formátu MP3!");
}

TEST_F(RealEngine, WithoutAThreadOpeningEndsInTheErrorBox) {
    // The toolkit draws with threads of its own and waits for them: this is about the engine's.
    QWidget* const window = QWidget::find(player().hWnd());
    window->setUpdatesEnabled(false);
    {
        const support::NoThreads none;
        open(file_);
        EXPECT_TRUE(serveUntil([this] { return !boxes().boxes.empty(); }));
    }
    window->setUpdatesEnabled(true);
    EXPECT_EQ(boxes().boxes[0].text, "Nastala chyba při přehrávání souboru - nelze přehrát!");
    EXPECT_FALSE(player().PB.Visible());
    open(file_);
    EXPECT_TRUE(serveUntil([this] { return player().PB.Value() > 0.3F; }));
    EXPECT_EQ(boxes().boxes.size(), 1U);
}

TEST_F(RealEngine, ALostSoundServerCausesOneErrorAndALaterFilePlays) {
    open(file_);
    EXPECT_TRUE(serveUntil([this] { return player().PB.Value() > 0.3F; }));
    sound_.kill();
    EXPECT_TRUE(serveUntil([this] { return !boxes().boxes.empty(); }));
    EXPECT_EQ(boxes().boxes[0].text, "Nastala chyba při přehrávání souboru - nelze přehrát!");
    EXPECT_FALSE(player().PB.Visible());
    sound_.restart();
    open(file_);
    EXPECT_TRUE(serveUntil([this] { return player().PB.Value() > 0.3F; }));
    EXPECT_EQ(boxes().boxes.size(), 1U);
}

} // namespace
} // namespace zvonivec
