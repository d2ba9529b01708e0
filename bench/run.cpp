#include "bench/run.h"

#include "bench/probe.h"
#include "tests/desktop/player_window.h"
#include "tests/support/pointer.h"
#include "tests/support/screenshot.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <thread>

namespace bench {

using namespace std::chrono_literals;

namespace {

constexpr auto BETWEEN_LOOKS = 2ms;
constexpr auto LONGEST = 30s;

double secondsSince(Clock::time_point moment) {
    return std::chrono::duration<double>(Clock::now() - moment).count();
}

bool waitUntil(const std::function<bool()>& condition) {
    const auto end = Clock::now() + LONGEST;
    while (!condition()) {
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(BETWEEN_LOOKS);
    }
    return true;
}

} // namespace

Run::Run(const Subject& subject, support::Display& display, support::PulseServer& sound)
    : subject_(&subject), display_(&display), sound_(&sound) {
    if (!subject.settingsFile.empty()) {
        const std::filesystem::path file =
            std::filesystem::path(folder_.path()) / subject.settingsFile;
        std::filesystem::create_directories(file.parent_path());
        support::writeFile(file.string(), std::string(subject.settings));
    }
    if (subject.onBus) {
        bus_.emplace(display.environment());
    }
}

void Run::start(const std::vector<std::string_view>& options, const std::string& file) {
    std::string program(subject_->program);
    if (subject_->ours) {
        // The settings lie beside the program, so each run has a copy of it: as packages have it,
        // without symbols.
        const std::string copy = folder_.file("zvonivec");
        if (support::run({"strip", "-o", copy, program}) != 0) {
            std::filesystem::copy_file(program, copy);
        }
        program = copy;
    }
    std::vector<std::string> argv{program};
    argv.insert(argv.end(), options.begin(), options.end());
    if (!file.empty()) {
        argv.push_back(file);
    }
    support::Process::Options process;
    process.environment = display_->environment();
    const auto sound = sound_->environment();
    process.environment.insert(process.environment.end(), sound.begin(), sound.end());
    if (bus_) {
        const auto bus = bus_->environment();
        process.environment.insert(process.environment.end(), bus.begin(), bus.end());
    }
    process.environment.emplace_back("HOME", folder_.path());
    process.environment.emplace_back("XDG_CONFIG_HOME", folder_.file(".config"));
    process.errorFile = folder_.file("messages");
    started_ = Clock::now();
    process_ = support::Process(argv, process);
}

void Run::startIdle() {
    start(subject_->idleOptions, "");
}

bool Run::startPlaying(const std::string& file) {
    const bool throughDialog = subject_->ours;
    const support::Recording recording(*sound_);
    if (throughDialog) {
        start({}, "");
        if (!timeToWindow() || !chooseFile(file)) {
            return false;
        }
    } else {
        start(subject_->options, file);
    }
    const auto from = throughDialog ? Clock::now() : started_;
    timeToSound_ = waitForSound(from, recording, 0);
    return timeToSound_.has_value();
}

bool Run::chooseFile(const std::string& file) {
    namespace player = support::player;
    const support::Pointer pointer(*display_);
    const support::Keyboard keyboard(*display_);
    const auto place = window()->place();
    const support::Point logo = player::LOGO.middle();
    pointer.click({place.x + logo.x, place.y + logo.y});
    const auto dialog = support::waitForWindow(*display_, player::DIALOG_TITLE);
    if (!dialog || !waitUntil([&] { return dialog->isActive(); })) {
        return false;
    }
    keyboard.type(file);
    // The dialog completes and looks up the name while it is typed. That time isn't measured.
    std::this_thread::sleep_for(500ms);
    keyboard.key("Return");
    pointer.moveTo({1, 1});
    return true;
}

std::optional<support::Window> Run::window() const {
    return support::findWindow(*display_, [&](const support::Window& window) {
        return window.className() == subject_->windowClass && window.isShown();
    });
}

bool Run::isPainted(const support::Window& window) const {
    // A window that has only been cleared has one colour.
    const support::Rectangle place = window.place();
    std::set<support::Colour> colours;
    constexpr int strips = 8;
    for (int i = 1; i < strips; ++i) {
        const support::Screenshot strip(
            *display_, {place.x, place.y + place.height * i / strips, place.width, 1});
        for (int x = 0; x < strip.width(); ++x) {
            colours.insert(strip.at(x, 0));
        }
    }
    constexpr std::size_t several = 4;
    return colours.size() >= several;
}

std::optional<double> Run::timeToWindow() {
    const bool seen = waitUntil([&] {
        const auto found = window();
        return found && isPainted(*found);
    });
    return seen ? std::optional(secondsSince(started_)) : std::nullopt;
}

std::optional<double> Run::waitForSound(Clock::time_point from, const support::Recording& recording,
                                        std::size_t after) const {
    const bool heard = waitUntil([&] {
        const support::Samples samples = recording.samples();
        return support::firstSound(samples, after) < samples.size();
    });
    return heard ? std::optional(secondsSince(from)) : std::nullopt;
}

std::optional<double> Run::timeFromPlayToSound() {
    namespace player = support::player;
    const bool hasButtons = subject_->ours;
    const auto shown = window();
    if (!shown || (!hasButtons && subject_->playKey.empty())) {
        return std::nullopt;
    }
    const support::Recording recording(*sound_);
    const support::Pointer pointer(*display_);
    const support::Keyboard keyboard(*display_);
    // Prepares the moment that counts: the pointer presses the button, or the window has the
    // keyboard.
    const auto prepare = [&](player::Button button) {
        if (hasButtons) {
            const auto place = shown->place();
            const auto middle = player::BUTTONS.at(button).middle();
            pointer.moveTo({place.x + middle.x, place.y + middle.y});
            pointer.press();
        } else {
            shown->activate();
            waitUntil([&] { return shown->isActive(); });
        }
        std::this_thread::sleep_for(300ms);
    };
    const auto carryOut = [&](std::string_view key) {
        if (hasButtons) {
            pointer.release();
        } else {
            keyboard.key(std::string(key).c_str());
        }
    };
    prepare(player::stop);
    const std::size_t stopped = recording.frames();
    carryOut(subject_->stopKey);
    if (!recording.waitForSilence(500ms)) {
        return std::nullopt;
    }
    const std::size_t end = support::behindLastSound(recording.samples()) / 2;
    timeToSilence_ = static_cast<double>(end - std::min(end, stopped)) / sound_->sink().rate;
    prepare(player::play);
    const std::size_t silent = recording.samples().size();
    const auto from = Clock::now();
    carryOut(subject_->playKey);
    const auto time = waitForSound(from, recording, silent);
    pointer.moveTo({1, 1});
    return time;
}

Minute Run::measure(std::chrono::milliseconds time) {
    const auto threadsBefore = threadsOf(process_.pid());
    const Cost before = costOf(process_.pid());
    const Cost serverBefore = costOf(display_->server());
    const auto energyBefore = packageEnergy();
    const auto from = Clock::now();
    std::this_thread::sleep_for(time);
    const Cost after = costOf(process_.pid());
    const Cost serverAfter = costOf(display_->server());
    const double seconds = secondsSince(from);
    Minute minute{.processor = (after.processor - before.processor) / seconds * 60,
                  .server = (serverAfter.processor - serverBefore.processor) / seconds * 60,
                  .wakeUps = (after.wakeUps - before.wakeUps) / seconds,
                  .energy = {},
                  .threads = threadsOf(process_.pid())};
    if (const auto energy = packageEnergy(); energy && energyBefore && *energy > *energyBefore) {
        minute.energy = (*energy - *energyBefore) / seconds * 60;
    }
    for (auto& [name, processor] : minute.threads) {
        const auto old = threadsBefore.find(name);
        processor = (processor - (old != threadsBefore.end() ? old->second : 0)) / seconds * 60;
    }
    return minute;
}

void Run::minimise() {
    if (const auto shown = window()) {
        shown->minimise();
        waitUntil([&] { return !shown->isShown(); });
    }
}

} // namespace bench
