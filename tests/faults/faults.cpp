// faults PROGRAM [PATTERN]: breaks one thing after another under a player that plays, and prints
// for each what the user sees, whether the player went on, and how long it didn't answer.

#include "tests/desktop/player_window.h"
#include "tests/support/message_bus.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/pointer.h"
#include "tests/support/pulse_server.h"
#include "tests/support/watched_player.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <thread>

namespace {

using namespace std::chrono_literals;
namespace player = support::player;
using std::chrono::milliseconds;

constexpr milliseconds LONGEST_WITHOUT_ANSWER = 100ms;

/// A desktop with a player that plays a track of a minute.
class Scene {
public:
    Scene(const std::string& program, support::PulseServer::Kind kind)
        : sound(support::PulseServer::Sink(), kind), player_(display, program, environment()) {
        support::encodeNoise(track, 60, {"-b", "128"});
        other = folder.file("other.mp3");
        support::encodeNoise(other, 20, {"-b", "64"});
    }

    [[nodiscard]] bool begin() {
        if (!support::waitUntil([this] { return sound.running(); }) || !player_.start()) {
            return false;
        }
        open(track);
        return support::waitUntil([this] { return isPlaying(); });
    }

    /// Opens a file by the dialog.
    void open(const std::string& path) {
        if (const auto window = player_.mainWindow()) {
            const support::Rectangle area = window->place();
            pointer.click(player::LOGO.movedBy({area.x, area.y}).middle());
            support::waitUntil([this] {
                const auto windows = player_.windows();
                return windows.size() > 1 && windows.back().isActive();
            });
            keyboard.type(path);
            keyboard.key("Return");
        }
    }

    /// Whether the server has a stream of the player that isn't held.
    [[nodiscard]] bool isPlaying() const {
        return sound.describeStreams().find("Corked: no") != std::string::npos;
    }
    [[nodiscard]] bool showsBox() { return player_.windows().size() > 1; }

    /// Says something to the sound server.
    void tell(std::vector<std::string> words) const {
        words.insert(words.begin(), "pactl");
        support::run(words, {.environment = sound.sessionOfClients(),
                             .outputFile = {},
                             .errorFile = "/dev/null",
                             .directory = {}});
    }
    [[nodiscard]] support::WatchedPlayer& player() { return player_; }

    support::TemporaryFolder folder;
    support::Display display;
    support::PulseServer sound;
    support::MessageBus bus{display.environment()};
    support::Pointer pointer{display};
    support::Keyboard keyboard{display};
    std::string track = folder.file("track.mp3");
    std::string other;

private:
    support::Process::Environment environment() {
        support::Process::Environment all = display.environment();
        for (const auto& more : {sound.environment(), bus.environment()}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }

    support::WatchedPlayer player_;
};

/// What the user sees in the end.
enum class Outcome {
    plays,  ///< the track goes on
    box,    ///< the box of an error
    silent, ///< neither
    ends,   ///< the program ends in order, its settings saved
};

struct Fault {
    const char* name;
    Outcome outcome;
    std::function<void(Scene&)> breakIt;
    milliseconds watched = 4s; ///< the player is asked all that time
    support::PulseServer::Kind server = support::PulseServer::Kind::rewinding;
};

constexpr auto PIPE_WIRE = support::PulseServer::Kind::pipeWire;

/// Kills one of the server's processes.
std::function<void(Scene&)> killPart(const std::string& name) {
    return [name](Scene& scene) {
        for (const support::Process& process : scene.sound.processes()) {
            const std::string its =
                support::readFile("/proc/" + std::to_string(process.pid()) + "/comm");
            if (its == name + "\n") {
                process.signal(SIGKILL);
            }
        }
    };
}

const std::vector<Fault>& faults() {
    static const std::vector<Fault> all{
        {"nothing", Outcome::plays, [](Scene&) {}},
        {"sound server killed", Outcome::box, [](Scene& scene) { scene.sound.kill(); }},
        {"sound server killed and started again", Outcome::box,
         [](Scene& scene) {
             scene.sound.kill();
             scene.sound.restart();
         }},
        {"sound server hangs for 5 s", Outcome::plays,
         [](Scene& scene) {
             scene.sound.freeze();
             std::thread([&scene] {
                 std::this_thread::sleep_for(5s);
                 scene.sound.thaw();
             }).detach();
         },
         9s},
        {"sink unloaded, another one stays", Outcome::plays,
         [](Scene& scene) {
             scene.tell({"load-module", "module-null-sink", "sink_name=second"});
             scene.tell({"unload-module", "1"}); // the server's first sink
         }},
        {"sink suspended for a second", Outcome::plays,
         [](Scene& scene) {
             scene.tell({"suspend-sink", "test_sink", "1"});
             std::thread([&scene] {
                 std::this_thread::sleep_for(1s);
                 scene.tell({"suspend-sink", "test_sink", "0"});
             }).detach();
         }},
        {"another default sink", Outcome::plays,
         [](Scene& scene) {
             scene.tell({"load-module", "module-null-sink", "sink_name=second"});
             scene.tell({"set-default-sink", "second"});
         }},
        {"stream moved to another sink", Outcome::plays,
         [](Scene& scene) {
             scene.tell({"load-module", "module-null-sink", "sink_name=second"});
             scene.tell({"move-sink-input", "0", "second"});
         }},
        {"PipeWire killed", Outcome::box, killPart("pipewire"), 4s, PIPE_WIRE},
        {"PipeWire's session manager killed, none comes", Outcome::silent, killPart("wireplumber"),
         4s, PIPE_WIRE},
        {"PipeWire's PulseAudio server killed", Outcome::box, killPart("pipewire-pulse"), 4s,
         PIPE_WIRE},
        {"file deleted", Outcome::plays,
         [](Scene& scene) { std::filesystem::remove(scene.track); }},
        {"file replaced", Outcome::plays,
         [](Scene& scene) { std::filesystem::rename(scene.other, scene.track); }},
        {"file cut to nothing", Outcome::box,
         [](Scene& scene) { std::filesystem::resize_file(scene.track, 0); }, 8s},
        {"message bus killed", Outcome::plays, [](Scene& scene) { scene.bus.kill(); }},
        {"window manager killed", Outcome::plays,
         [](Scene& scene) { scene.display.killWindowManager(); }},
        {"process stopped for 5 s", Outcome::plays,
         [](Scene& scene) {
             scene.player().process().signal(SIGSTOP);
             std::this_thread::sleep_for(5s);
             scene.player().process().signal(SIGCONT);
         }},
        {"SIGHUP", Outcome::ends, [](Scene& scene) { scene.player().process().signal(SIGHUP); }},
        {"SIGINT", Outcome::ends, [](Scene& scene) { scene.player().process().signal(SIGINT); }},
        {"SIGTERM", Outcome::ends, [](Scene& scene) { scene.player().process().signal(SIGTERM); }},
        {"SIGPIPE", Outcome::plays, [](Scene& scene) { scene.player().process().signal(SIGPIPE); }},
    };
    return all;
}

const char* textOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::plays:
        return "plays";
    case Outcome::box:
        return "error box";
    case Outcome::silent:
        return "silent";
    case Outcome::ends:
        break;
    }
    return "ends";
}

Outcome outcomeOf(Scene& scene) {
    if (!scene.player().isRunning()) {
        return Outcome::ends;
    }
    if (scene.showsBox()) {
        return Outcome::box;
    }
    return scene.isPlaying() ? Outcome::plays : Outcome::silent;
}

/// Returns whether all is as it shall be.
bool tryOut(const std::string& program, const Fault& fault) {
    Scene scene(program, fault.server);
    if (!scene.begin()) {
        std::printf("| %s | | didn't begin | |\n", fault.name);
        return false;
    }
    milliseconds longest{0};
    bool answers = true;
    fault.breakIt(scene);
    const auto end = std::chrono::steady_clock::now() + fault.watched;
    while (answers && scene.player().isRunning() && std::chrono::steady_clock::now() < end) {
        const auto answer = scene.player().answer();
        answers = answer.has_value();
        longest = std::max(longest, answer.value_or(10s));
        std::this_thread::sleep_for(10ms);
    }
    const Outcome outcome = outcomeOf(scene);
    if (scene.player().isRunning()) {
        scene.player().process().signal(SIGTERM);
    }
    const std::string wrong = scene.player().judgeEnd();
    std::printf("| %s | %s | %lld ms | %s |\n", fault.name, textOf(outcome),
                static_cast<long long>(longest.count()),
                wrong.empty() ? "in order" : wrong.c_str());
    return outcome == fault.outcome && longest <= LONGEST_WITHOUT_ANSWER && wrong.empty();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fputs("usage: faults PROGRAM [PATTERN]\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const std::string pattern = argc > 2 ? argv[2] : "";
    std::puts("| Fault | What is seen after it | Longest without an answer | Its end |\n"
              "|---|---|---|---|");
    std::vector<const char*> wrong;
    for (const Fault& fault : faults()) {
        if (std::string(fault.name).find(pattern) != std::string::npos && !tryOut(argv[1], fault)) {
            wrong.push_back(fault.name);
        }
    }
    for (const char* name : wrong) {
        std::printf("\nNot as it shall be: %s", name);
    }
    std::puts("");
    return wrong.empty() ? 0 : 1;
}
