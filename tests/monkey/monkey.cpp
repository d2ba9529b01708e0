// monkey PROGRAM SECONDS SEED [ACTION...]: plays with the player as no person would, or with these
// actions alone, and tells what it found. The same seed makes the same choices; what they hit
// depends on the machine's speed too.

#include "tests/desktop/player_window.h"
#include "tests/monkey/figures.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/pointer.h"
#include "tests/support/pulse_server.h"
#include "tests/support/watched_player.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

using namespace std::chrono_literals;
using monkey::Growth;
using support::Point;
using support::Rectangle;
using support::Window;
namespace player = support::player;

/// Actions at the beginning of a life that aren't counted in what grows: caches fill.
constexpr int FIRST_ACTIONS = 300;
constexpr int ACTIONS_BETWEEN_SAMPLES = 50;

constexpr int MENU_WIDTH = 168;
constexpr int MENU_HEIGHT = 289;
constexpr int LAST_LINE = 28; ///< its last line ends the program

class Monkey {
public:
    /// Without names all actions.
    Monkey(const std::string& program, unsigned long seed, const std::vector<std::string>& names)
        : random_(seed), player_(display_, program, environment()) {
        for (const Action& action : ACTIONS) {
            const bool wanted = names.empty() || std::ranges::count(names, action.name) > 0;
            weights_.push_back(wanted ? action.weight : 0);
        }
        for (const char* bitrate : {"64", "128", "320"}) {
            const std::string file = folder_.file(bitrate + std::string(".mp3"));
            support::encodeNoise(file, 3, {"-b", bitrate});
            files_.push_back(file);
        }
        support::writeFile(folder_.file("no music.mp3"), support::randomBytes(5000, 1));
        files_.push_back(folder_.file("no music.mp3"));
        files_.push_back(folder_.file("nothing.mp3"));
    }

    [[nodiscard]] static bool canDo(const std::string& name) {
        return std::ranges::any_of(ACTIONS,
                                   [&](const Action& action) { return name == action.name; });
    }

    /// Returns whether nothing was found.
    bool play(std::chrono::seconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (findings_ < 10 && std::chrono::steady_clock::now() < end) {
            live(end);
        }
        report();
        return findings_ == 0;
    }

private:
    support::Process::Environment environment() {
        support::Process::Environment all = display_.environment();
        const auto sound = sound_.environment();
        all.insert(all.end(), sound.begin(), sound.end());
        return all;
    }

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    bool oneIn(int chances) { return upTo(chances - 1) == 0; }
    template<class Choices>
    auto oneOf(const Choices& choices) {
        return choices[static_cast<std::size_t>(upTo(static_cast<int>(std::size(choices)) - 1))];
    }

    void found(const std::string& what) {
        ++findings_;
        std::printf("FOUND after %d actions, the last ones \"%s\": %s\n", actions_, last_.c_str(),
                    what.c_str());
    }

    /// From a start of the player to its end, whoever brings that about.
    void live(std::chrono::steady_clock::time_point end) {
        ++lives_;
        if (!player_.start()) {
            found("no window");
            return;
        }
        for (Growth* growth : {&memory_, &threads_, &descriptors_, &inServer_}) {
            growth->beginLife();
        }
        for (int age = 0; player_.isRunning() && std::chrono::steady_clock::now() < end; ++age) {
            act();
            const auto answer = player_.answer();
            if (!answer) {
                found("no answer within ten seconds");
                player_.process().signal(SIGABRT);
                break;
            }
            longest_ = std::max(longest_, *answer);
            late_ += *answer > 100ms ? 1 : 0;
            if (age >= FIRST_ACTIONS && age % ACTIONS_BETWEEN_SAMPLES == 0) {
                sample(age);
            }
        }
        if (player_.isRunning()) {
            player_.process().signal(SIGTERM);
        }
        if (const std::string wrong = player_.judgeEnd(); !wrong.empty()) {
            found(wrong);
        }
    }

    /// Takes the figures with nothing open: what an open dialog holds isn't growth.
    void sample(int age) {
        for (int i = 0; i < 10 && player_.windows().size() > 1; ++i) {
            keyboard_.key("Escape");
            std::this_thread::sleep_for(50ms);
        }
        const auto windows = player_.windows();
        if (windows.size() != 1) {
            return;
        }
        const monkey::Holdings holdings = monkey::holdingsOf(player_.process().pid());
        if (holdings.threads > 0) {
            memory_.add(age, holdings.kilobytes);
            threads_.add(age, holdings.threads);
            descriptors_.add(age, holdings.descriptors);
            inServer_.add(age, windows.front().heldInServer());
        }
    }

    struct Action {
        int weight;
        const char* name;
        void (Monkey::*run)();
    };
    static const std::array<Action, 10> ACTIONS;

    void act() {
        const Action& chosen = ACTIONS[static_cast<std::size_t>(
            std::discrete_distribution<int>(weights_.begin(), weights_.end())(random_))];
        ++actions_;
        last_ += last_.empty() ? "" : " ";
        last_ += chosen.name;
        if (last_.size() > 200) {
            last_.erase(0, last_.find(' ') + 1);
        }
        player_.restore();
        (this->*chosen.run)();
    }

    /// A point of a window of the player, or nothing: beside its outline lies the desktop.
    std::optional<Point> somewhere() {
        const auto windows = player_.windows();
        if (windows.empty()) {
            return std::nullopt;
        }
        const Window window = oneOf(windows);
        const Rectangle place = window.place();
        const Point inside{upTo(std::max(0, place.width - 1)), upTo(std::max(0, place.height - 1))};
        const Point point{place.x + inside.x, place.y + inside.y};
        // Else no life would be long enough to show what grows.
        const bool ends = place.width == player::WIDTH
                              ? player::BUTTONS[player::close].contains(inside)
                              : place.width == MENU_WIDTH && inside.y > MENU_HEIGHT - LAST_LINE;
        if (ends && !oneIn(50)) {
            return std::nullopt;
        }
        const auto shape = window.inputShape();
        const Rectangle screen{0, 0, display_.width(), display_.height()};
        return screen.contains(point) &&
                       std::ranges::any_of(
                           shape, [&](const Rectangle& part) { return part.contains(inside); })
                   ? std::optional(point)
                   : std::nullopt;
    }

    void clickSomewhere() {
        if (const auto point = somewhere()) {
            const int button = 1 + upTo(2);
            const int times = oneIn(5) ? 3 : 1;
            for (int i = 0; i < times; ++i) {
                pointer_.click(*point, button);
            }
        }
    }

    /// The buttons, the loudspeaker, the mark, the logo and the bar.
    void clickCommand() {
        const auto window = player_.mainWindow();
        if (!window) {
            return;
        }
        const Rectangle area = window->place();
        std::vector<Rectangle> places{player::VOLUME, player::MARK, player::LOGO};
        places.insert(places.end(), player::BUTTONS.begin(),
                      player::BUTTONS.begin() + player::minimise);
        Point place = oneOf(places).middle();
        if (oneIn(4)) {
            place = {player::BAR.x + upTo(player::BAR.width - 1), player::BAR.middle().y};
        }
        pointer_.click({area.x + place.x, area.y + place.y}, oneIn(6) ? 1 + upTo(2) : 1);
    }

    void drag() {
        const auto point = somewhere();
        if (!point) {
            return;
        }
        const int button = 1 + upTo(2);
        pointer_.moveTo(*point);
        pointer_.press(button);
        for (int steps = upTo(5); steps >= 0; --steps) {
            pointer_.moveTo({upTo(display_.width() - 1), upTo(display_.height() - 1)});
        }
        pointer_.release(button);
    }

    void turnWheel() {
        if (const auto point = somewhere()) {
            const int button = 4 + upTo(1);
            for (int times = upTo(8); times >= 0; --times) {
                pointer_.click(*point, button);
            }
        }
    }

    void pressKey() {
        static constexpr std::array keys{"Tab",    "space",
                                         "Return", "Escape",
                                         "Left",   "Right",
                                         "Up",     "Down",
                                         "Prior",  "Next",
                                         "Home",   "End",
                                         "Menu",   "F10",
                                         "plus",   "Delete",
                                         "m",      "o",
                                         "p",      "s",
                                         "a",      "0",
                                         "F1",     "Tab",
                                         "space",  "XF86AudioPlay"};
        const char* const held = oneIn(6) ? (oneIn(2) ? "Shift" : "Control") : nullptr;
        for (int times = oneIn(5) ? 10 : 1; times > 0; --times) {
            keyboard_.key(oneOf(keys), held);
        }
    }

    void openFile() {
        const auto window = player_.mainWindow();
        if (!window || player_.windows().size() > 1) {
            return;
        }
        const Rectangle area = window->place();
        pointer_.click(player::LOGO.movedBy({area.x, area.y}).middle());
        if (support::waitUntil([this] { return player_.windows().size() > 1; }, 1s)) {
            keyboard_.type(oneOf(files_));
            keyboard_.key("Return");
        }
    }

    void wait() { std::this_thread::sleep_for(std::chrono::milliseconds(upTo(300))); }

    void useWindowManager() {
        const auto window = player_.mainWindow();
        if (!window) {
            return;
        }
        switch (upTo(5)) {
        case 0:
        case 1:
            window->minimise();
            break;
        case 2:
        case 3:
            window->moveTo({upTo(900), upTo(450)});
            break;
        case 4:
            window->raise();
            break;
        default:
            if (oneIn(20)) {
                window->requestClose();
            }
            break;
        }
    }

    void disturbSound() {
        if (oneIn(3)) {
            sound_.kill();
            sound_.restart();
        } else {
            sound_.freeze();
            std::this_thread::sleep_for(std::chrono::milliseconds(upTo(500)));
            sound_.thaw();
        }
    }

    void escape() { keyboard_.key("Escape"); }

    void report() const {
        std::printf("%d actions, %d lives of the program, %d findings\n", actions_, lives_,
                    findings_);
        std::printf("longest time without an answer %lld ms, above 100 ms: %d\n",
                    static_cast<long long>(longest_.count()), late_);
        const auto line = [](const char* name, const char* unit, const Growth& growth) {
            const Growth::Slope slope = growth.slope();
            std::printf(
                "%s: at most %.0f%s, growth for 1,000 actions %+.2f%s, standard error %.2f\n", name,
                growth.largest(), unit, slope.value, unit, slope.error);
        };
        line("memory", " kB", memory_);
        line("threads", "", threads_);
        line("descriptors", "", descriptors_);
        line("held in the display server", "", inServer_);
    }

    std::vector<int> weights_; ///< of the actions, 0 for those that aren't wanted
    std::mt19937_64 random_;
    support::TemporaryFolder folder_;
    support::Display display_;
    support::PulseServer sound_;
    support::Pointer pointer_{display_};
    support::Keyboard keyboard_{display_};
    support::WatchedPlayer player_;
    std::vector<std::string> files_;
    Growth memory_;
    Growth threads_;
    Growth descriptors_;
    Growth inServer_;
    std::string last_;
    std::chrono::milliseconds longest_{0};
    int late_ = 0;
    int actions_ = 0;
    int lives_ = 0;
    int findings_ = 0;
};

constexpr std::array<Monkey::Action, 10> Monkey::ACTIONS{{{30, "click", &Monkey::clickSomewhere},
                                                          {25, "command", &Monkey::clickCommand},
                                                          {10, "drag", &Monkey::drag},
                                                          {10, "wheel", &Monkey::turnWheel},
                                                          {15, "key", &Monkey::pressKey},
                                                          {5, "open", &Monkey::openFile},
                                                          {5, "wait", &Monkey::wait},
                                                          {2, "window", &Monkey::useWindowManager},
                                                          {1, "sound", &Monkey::disturbSound},
                                                          {3, "escape", &Monkey::escape}}};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> names(argv + std::min(argc, 4), argv + argc);
    if (argc < 4 || !std::ranges::all_of(names, &Monkey::canDo)) {
        std::fputs("usage: monkey PROGRAM SECONDS SEED [ACTION...]\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Monkey monkey(argv[1], std::strtoul(argv[3], nullptr, 10), names);
    return monkey.play(std::chrono::seconds(std::strtol(argv[2], nullptr, 10))) ? 0 : 1;
}
