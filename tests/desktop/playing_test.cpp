#include "tests/desktop/playing_test.h"

#include <cmath>
#include <csignal>

namespace support {

Samples PlayingTest::makeFile(const std::string& path, double seconds) const {
    EXPECT_TRUE(encodeNoise(
        path, seconds,
        {"-b", "128", "--tt", "Rock & Roll", "--ta", "Someone", "--tl", "<b>Bold</b>"}));
    return decodeWithMpg123(path);
}

void PlayingTest::turnUp() {
    for (const char* status :
         {"60% hlasitost", "70% hlasitost", "80% hlasitost", "90% hlasitost", "100% hlasitost"}) {
        click(player::VOLUME.middle());
        ASSERT_TRUE(waitUntil([&] { return player_->showsStatus(status); })) << status;
    }
}

void PlayingTest::playFile(double seconds) {
    file_ = folder_.file("noise.mp3");
    samples_ = makeFile(file_, seconds);
    turnUp();
    recording_ = std::make_unique<Recording>(sound_);
    openFile(file_);
    ASSERT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    ASSERT_TRUE(waitForSound());
}

bool PlayingTest::waitForSound() const {
    const std::size_t from = recording_->frames() * 2;
    return waitUntil([&] {
        const Samples heard = recording_->samples();
        return firstSound(heard, from) < heard.size();
    });
}

std::optional<double> PlayingTest::heardPlace() const {
    constexpr std::size_t length = 2000;
    std::optional<std::size_t> place;
    waitUntil([&] {
        if (!waitForSound()) {
            return false;
        }
        const std::size_t from = recording_->frames() * 2;
        waitUntil([&] { return recording_->frames() * 2 >= from + length; });
        const Samples heard = recording_->samples();
        const Samples part(heard.begin() + static_cast<std::ptrdiff_t>(from),
                           heard.begin() + static_cast<std::ptrdiff_t>(from + length));
        // A part in which the sound swells or fades isn't in the file. The next part is.
        place = findIn(samples_, part);
        return place.has_value();
    });
    if (!place) {
        return std::nullopt;
    }
    return static_cast<double>(*place) / 2 / RATE;
}

namespace {

TEST_F(PlayingTest, ShowsTheTrack) {
    playFile(20);
    EXPECT_TRUE(player_->showsMark(player::play));
    EXPECT_TRUE(waitUntil([&] { return player_->showsLength("00:20"); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:01"); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:02"); }));
    EXPECT_TRUE(waitUntil([&] {
        const double value = player_->barValue().value_or(0);
        return value > 0.14 && value < 0.2;
    }));
    EXPECT_TRUE(waitUntil(
        [&] {
            return player_
                ->informationLeft("Přehrávání: 128 kb/s        Album: <b>Bold</b>        "
                                  "Skladba: Rock & Roll        Interpret: Someone")
                .has_value();
        },
        std::chrono::seconds(20)));
}

TEST_F(PlayingTest, SoundsAsTheFileAndAgainAtItsEnd) {
    playFile(2);
    const Samples start(samples_.begin(), samples_.begin() + 2000);
    std::optional<std::size_t> again;
    // Repeating is on without settings. The second round is the file from its first sample on.
    ASSERT_TRUE(waitUntil(
        [&] {
            again = findIn(recording_->samples(), start, samples_.size());
            return again.has_value();
        },
        std::chrono::seconds(20)));
    EXPECT_TRUE(player_->showsPlayingLook());
    EXPECT_TRUE(player_->showsMark(player::play));
    ASSERT_TRUE(waitUntil(
        [&] { return recording_->samples().size() > *again + samples_.size() + RATE / 2; }));

    const Samples heard = recording_->samples();
    const auto first = findIn(heard, start);
    ASSERT_TRUE(first);
    // Other tests run beside this one: the server may have put silence between two samples.
    for (const std::size_t round : {*first, *again}) {
        EXPECT_EQ(follow(heard, round, samples_, 0).length, samples_.size());
    }
    // Nothing but the file was heard.
    EXPECT_GE(firstSound(heard) + 1, *first + firstSound(samples_));
    EXPECT_LT(*again - *first - samples_.size(), RATE * 2 / 2U) << "half a second between rounds";
}

TEST_F(PlayingTest, PauseHoldsThePlaceAndPlayGoesOnThere) {
    playFile(20);
    ASSERT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:02"); }));
    click(player::pause);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::pause); }));
    EXPECT_TRUE(recording_->waitForSilence());
    const auto value = player_->barValue();

    // A second time changes nothing.
    click(player::pause);
    EXPECT_TRUE(recording_->waitForSilence(std::chrono::seconds(1)));
    EXPECT_EQ(player_->barValue(), value);
    EXPECT_TRUE(player_->showsRunningTime("00:02"));

    click(player::play);
    const auto place = heardPlace();
    ASSERT_TRUE(place);
    EXPECT_GE(*place, 2.0);
    EXPECT_LT(*place, 4.0);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::play); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:03"); }));
}

TEST_F(PlayingTest, StopAndRewindGoToTheStart) {
    playFile(20);
    for (const auto button : {player::stop, player::rewind}) {
        ASSERT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:01"); }));
        click(button);
        EXPECT_TRUE(waitUntil([&] { return player_->showsMark(button); }));
        EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:00"); }));
        EXPECT_TRUE(recording_->waitForSilence());
        EXPECT_EQ(player_->barValue(), 0.0);
        EXPECT_TRUE(player_->showsPlayingLook());

        const std::size_t silent = recording_->frames() * 2;
        click(player::play);
        EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::play); }));
        const Samples start(samples_.begin(), samples_.begin() + 2000);
        EXPECT_TRUE(
            waitUntil([&] { return findIn(recording_->samples(), start, silent).has_value(); }));
    }
}

TEST_F(PlayingTest, ForwardGoesToTheEndAndPlayStartsAgain) {
    playFile(20);
    click(player::forward);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::forward); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:20"); }));
    EXPECT_TRUE(waitUntil([&] { return player_->barValue() == 1.0; }));
    EXPECT_TRUE(recording_->waitForSilence());
    // Stopped by the user, it isn't repeated.
    EXPECT_TRUE(recording_->waitForSilence(std::chrono::seconds(1)));

    click(player::play);
    const auto place = heardPlace();
    ASSERT_TRUE(place);
    EXPECT_LT(*place, 2.0);
    EXPECT_TRUE(waitUntil([&] { return player_->barValue().value_or(1) < 0.1; }));
}

TEST_F(PlayingTest, AClickOnTheBarSeeks) {
    playFile(40);
    click(player::pause);
    ASSERT_TRUE(waitUntil([&] { return player_->showsMark(player::pause); }));
    // Pixel 192 of 257: (192 * 15 + 50) / 3855 of 40 seconds are 30.4.
    click({player::BAR.x + 192, player::BAR.y + 5});
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:30"); }));
    EXPECT_NEAR(player_->barValue().value_or(0), 0.76, 0.01);
    EXPECT_TRUE(recording_->waitForSilence());
    click(player::play);
    EXPECT_NEAR(heardPlace().value_or(0), 30.7, 0.35);

    // The time goes on from there, and a seek while playing is heard too.
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:31"); }));
    click({player::BAR.x + 96, player::BAR.y + 5});
    EXPECT_TRUE(waitUntil([&] {
        const double place = heardPlace().value_or(0);
        return place >= 15.4 && place < 17.0;
    }));

    // The release counts, with any mouse button, and it may be left of the bar.
    moveTo({player::BAR.x + 100, player::BAR.y + 5});
    pointer_.press(3);
    moveTo({player::BAR.x - 20, player::BAR.y + 5});
    const std::size_t before = recording_->frames() * 2;
    pointer_.release(3);
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:00"); }));
    const Samples start(samples_.begin(), samples_.begin() + 2000);
    EXPECT_TRUE(
        waitUntil([&] { return findIn(recording_->samples(), start, before).has_value(); }));
}

TEST_F(PlayingTest, TheVolumeIsHeard) {
    playFile(20);
    const auto loudness = [this] {
        const std::size_t from = recording_->frames() * 2 + RATE / 2;
        recording_->waitFor(std::chrono::milliseconds(600));
        const Samples heard = recording_->samples();
        double sum = 0;
        for (std::size_t i = from; i < heard.size(); ++i) {
            sum += std::abs(static_cast<double>(heard[i]));
        }
        return sum / static_cast<double>(heard.size() - from);
    };
    const double loud = loudness();
    const auto turnDown = [this](Point place, int button, std::initializer_list<const char*> said) {
        for (const char* status : said) {
            click(place, button);
            ASSERT_TRUE(waitUntil([&] { return player_->showsStatus(status); })) << status;
        }
    };
    turnDown(player::VOLUME.middle(), 3,
             {"90% hlasitost", "80% hlasitost", "70% hlasitost", "60% hlasitost", "50% hlasitost"});
    const double half = loudness();
    EXPECT_LT(half, loud * 0.9);
    EXPECT_GT(half, loud * 0.05);
    turnDown({player::STATUS.x + 5, player::STATUS.y + 5}, 2,
             {"40% hlasitost", "30% hlasitost", "20% hlasitost", "10% hlasitost", "0% hlasitost"});
    EXPECT_EQ(loudness(), 0);
    EXPECT_TRUE(player_->showsPlayingLook());
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("10% hlasitost"); }));
    const double quiet = loudness();
    EXPECT_GT(quiet, 0);
    EXPECT_LT(quiet, half);
}

class ButtonTest : public PlayingTest, public testing::WithParamInterface<player::Button> {};

TEST_P(ButtonTest, ShowsHoverAndPressedPictures) {
    playFile(20);
    const player::Button button = GetParam();
    const auto looks = [&](player::Look look) {
        return waitUntil([&] { return player_->showsButton(button, look); });
    };
    const Point middle = player::BUTTONS.at(button).middle();
    EXPECT_TRUE(looks(player::Look::normal));
    moveTo(middle);
    EXPECT_TRUE(looks(player::Look::hover));
    moveTo(player::BODY);
    EXPECT_TRUE(looks(player::Look::normal));
    moveTo(middle);
    EXPECT_TRUE(looks(player::Look::hover));
    pointer_.press();
    EXPECT_TRUE(looks(player::Look::pressed));
    moveTo(player::BODY);
    EXPECT_TRUE(looks(player::Look::pressed));
    pointer_.release();
    // The command comes with the release, wherever the pointer is then.
    if (button == player::close) {
        EXPECT_EQ(player_->process().waitForExit(), 0);
    } else if (button == player::minimise) {
        EXPECT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
        player_->window().activate();
        EXPECT_TRUE(looks(player::Look::normal));
        EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::play); }));
    } else {
        EXPECT_TRUE(looks(player::Look::normal));
        EXPECT_TRUE(waitUntil([&] { return player_->showsMark(button); }));
    }
}

constexpr const char* NAMES[] = {"rewind", "pause", "play", "stop", "forward", "minimise", "close"};

INSTANTIATE_TEST_SUITE_P(Each, ButtonTest,
                         testing::Values(player::rewind, player::pause, player::play, player::stop,
                                         player::forward, player::minimise, player::close),
                         [](const auto& parameter) { return NAMES[parameter.param]; });

TEST_F(PlayingTest, PlaysOnWhileMinimised) {
    playFile(20);
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    const auto place = heardPlace();
    ASSERT_TRUE(place);
    EXPECT_TRUE(waitUntil([&] { return heardPlace().value_or(0) > *place + 1; }));
    player_->window().activate();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
}

TEST_F(PlayingTest, ClosingEndsTheSound) {
    playFile(20);
    click(player::close);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_TRUE(recording_->waitForSilence());
    EXPECT_EQ(player_->messages(), "");
}

TEST_F(PlayingTest, ASignalEndsItWhilePlaying) {
    playFile(20);
    player_->process().signal(SIGTERM);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(player_->messages(), "");
}

} // namespace

} // namespace support
