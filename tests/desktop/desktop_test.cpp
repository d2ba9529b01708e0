#include "tests/desktop/desktop_test.h"

#include <algorithm>
#include <filesystem>
#include <regex>

namespace support {

using player::BAR;
using player::BUTTONS;
using player::Look;

Player::Player(const Display& display, const std::string& folder, Process::Environment environment)
    : display_(&display), messageFile_(folder + "/messages") {
    std::error_code ignored;
    std::filesystem::create_directories(folder);
    const std::string program = folder + "/zvonivec";
    std::filesystem::copy_file(PLAYER_PROGRAM, program,
                               std::filesystem::copy_options::overwrite_existing, ignored);
    // The working folder isn't the program's folder, so a test would show if the program used it.
    process_ = Process({program}, {.environment = std::move(environment),
                                   .outputFile = {},
                                   .errorFile = messageFile_,
                                   .directory = "/"});
}

bool Player::waitUntilShown(int scale) {
    const auto isOurs = [this, scale](const Window& window) {
        return window.pid() == process_.pid() && window.isShown() &&
               window.title() == player::TITLE && window.place().width == player::WIDTH * scale;
    };
    const bool shown = waitUntil(
        [&] {
            window_ = findWindow(*display_, isOurs);
            return window_.has_value() || !process_.running();
        },
        std::chrono::seconds(30));
    return shown && window_.has_value();
}

std::string Player::messages() const {
    // The font library says so where the system's cache is older than its fonts: the player may
    // write no cache of its own.
    static const std::regex line("Fontconfig error: No writable cache directories\n");
    return std::regex_replace(readFile(messageFile_), line, "");
}

Point Player::onScreen(Point place) const {
    const Rectangle area = window_->place();
    return {area.x + place.x, area.y + place.y};
}

Screenshot Player::screenshot() const {
    return {*display_, window_->place()};
}

Screenshot Player::screenshot(const Rectangle& part) const {
    const Rectangle area = window_->place();
    return Screenshot(*display_, part.movedBy({area.x, area.y}));
}

bool Player::showsButton(player::Button button, Look look) const {
    return differentPixels(screenshot(BUTTONS.at(button)), buttonPicture(button, look)) == 0;
}

bool Player::shows(const Picture& window, const Rectangle& place) const {
    return differentPixels(screenshot(place), window.part(place)) == 0;
}

bool Player::showsMark(player::Button command) const {
    Picture expected("body.gif");
    expected.put(player::markPicture(command), {player::MARK.x, player::MARK.y});
    return shows(expected, player::MARK);
}

bool Player::showsStatus(const std::string& text) const {
    Picture expected("body.gif");
    expected.write(text, {player::STATUS.x, player::STATUS.y}, 0xFFFF80, {});
    return shows(expected, player::STATUS);
}

bool Player::showsRunningTime(const std::string& text) const {
    Picture expected("body.gif");
    expected.write(text, {player::RUNNING_TIME.x, player::RUNNING_TIME.y}, 0xC0FFC0, {});
    return shows(expected, player::RUNNING_TIME);
}

bool Player::showsLength(const std::string& text) const {
    Picture expected("body.gif");
    expected.write(text, {player::LENGTH.x + player::LENGTH.width, player::LENGTH.y}, 0xFFFFC0,
                   {.endsThere = true});
    return shows(expected, player::LENGTH);
}

std::optional<int> Player::informationLeft(const std::string& text) const {
    const Picture strip = Picture::informationStrip(text);
    const Screenshot display = screenshot(player::INFORMATION);
    const int half = display.width() / 2;
    for (int left = half - strip.width(); left <= half; ++left) {
        const int begin = std::max(0, left);
        const int end = std::min(display.width(), left + strip.width());
        bool same = end - begin >= half;
        for (int x = begin; x < end && same; ++x) {
            for (int y = 0; y < strip.height() && same; ++y) {
                same = display.at(x, y) == strip.at(x - left, y);
            }
        }
        if (same) {
            return left;
        }
    }
    return std::nullopt;
}

bool Player::showsPlayingLook() const {
    for (const player::Button button :
         {player::rewind, player::pause, player::play, player::stop, player::forward}) {
        if (!showsButton(button, Look::normal)) {
            return false;
        }
    }
    return barValue().has_value();
}

bool Player::showsIdleLook() const {
    const Picture expected = player::idlePicture();
    const Screenshot window = screenshot();
    const auto isText = [](Point place) {
        return std::any_of(std::begin(player::TEXTS), std::end(player::TEXTS),
                           [&](const Rectangle& text) { return text.contains(place); });
    };
    // Under a compositor the edge is mixed with what lies beneath.
    const bool isSmooth = display_->hasCompositor();
    const auto isEdge = [&](int x, int y) {
        for (const Point step : {Point{-1, 0}, Point{1, 0}, Point{0, -1}, Point{0, 1},
                                 Point{-1, -1}, Point{1, 1}, Point{-1, 1}, Point{1, -1}}) {
            if (!expected.at(x + step.x, y + step.y)) {
                return true;
            }
        }
        return false;
    };
    for (int y = 0; y < player::HEIGHT; ++y) {
        for (int x = 0; x < player::WIDTH; ++x) {
            const auto colour = expected.at(x, y);
            if (isSmooth && isEdge(x, y)) {
                continue;
            }
            if (colour && *colour != window.at(x, y) && !isText({x, y})) {
                return false;
            }
        }
    }
    return true;
}

std::optional<double> Player::barValue() const {
    const Screenshot bar = screenshot(BAR);
    const Picture body("body.gif");
    bool hidden = true;
    int lit = 0;
    for (int x = 1; x < BAR.width - 1; ++x) {
        const Colour colour = bar.at(x, BAR.height / 2);
        hidden = hidden && colour == body.at(BAR.x + x, BAR.y + BAR.height / 2);
        // A lit segment is bright green to blue. Unlit segments and gaps are nearly black.
        lit = ((colour >> 8) & 0xFF) > 96 ? x : lit;
    }
    if (hidden) {
        return std::nullopt;
    }
    return lit / static_cast<double>(BAR.width - 2);
}

void DesktopTest::SetUp() {
    ASSERT_TRUE(display_.ok()) << display_.problem();
    ASSERT_TRUE(sound_.running());
    // A pointer that rests where the window appears would light a button.
    pointer_.moveTo({display_.width() - 1, display_.height() - 1});
    startPlayer();
}

void DesktopTest::startPlayer() {
    player_ = std::make_unique<Player>(display_, folder_.file("program"), environment());
    ASSERT_TRUE(player_->waitUntilShown()) << player_->messages();
}

Process::Environment DesktopTest::environment() const {
    Process::Environment environment = display_.environment();
    const Process::Environment sound = sound_.environment();
    environment.insert(environment.end(), sound.begin(), sound.end());
    return environment;
}

void DesktopTest::TearDown() {
    if (HasFailure()) {
        keepEvidence();
    }
}

void DesktopTest::keepEvidence() const {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '-');
    std::filesystem::create_directories(FAILURES_FOLDER);
    const std::string file = std::string(FAILURES_FOLDER) + "/" + name;
    if (display_.ok()) {
        save(Screenshot(display_), file + ".png");
    }
    if (player_) {
        writeFile(file + ".txt", player_->messages());
    }
}

std::optional<Window>
DesktopTest::waitForWindowWithKeyboard(const std::function<bool(const Window&)>& condition) const {
    std::optional<Window> found;
    waitUntil(
        [&] {
            found = findWindow(display_, [&](const Window& window) {
                return window.isShown() && window.pid() == player_->process().pid() &&
                       condition(window);
            });
            return found.has_value();
        },
        std::chrono::seconds(20));
    if (found && !display_.hasWindowManager()) {
        found->focus();
    }
    if (found && !waitUntil([&] { return found->isActive(); })) {
        found.reset();
    }
    return found;
}

std::optional<Window> DesktopTest::waitForDialog() const {
    return waitForWindowWithKeyboard(
        [](const Window& window) { return window.title() == player::DIALOG_TITLE; });
}

std::optional<Window> DesktopTest::waitForMessageBox() const {
    return waitForWindowWithKeyboard([this](const Window& window) {
        return window.title() == player::TITLE && !(window == player_->window());
    });
}

void DesktopTest::answer(const Window& window, const char* key) const {
    keyboard_.key(key);
    EXPECT_TRUE(waitUntil([&] { return !window.isShown(); })) << window.title();
}

void DesktopTest::chooseFile(const std::string& path) {
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog) << "no dialog";
    keyboard_.type(path);
    answer(*dialog, path.empty() ? "Escape" : "Return");
}

void DesktopTest::openFile(const std::string& path) {
    click(player::LOGO.middle());
    chooseFile(path);
}

} // namespace support
