// faults PROGRAM SLOW_DISK [PATTERN]: breaks one thing after another under a player that plays, and
// prints for each what the user sees, whether the player went on, and how long it didn't answer.

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
#include <fstream>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <thread>

namespace {

using namespace std::chrono_literals;
namespace player = support::player;
using std::chrono::milliseconds;

constexpr milliseconds LONGEST_WITHOUT_ANSWER = 100ms;

/// A disk whose files are those of a folder, and which can become slow or fail.
class SlowDisk {
public:
    SlowDisk(const std::string& program, const std::string& folder)
        : process_({program, folder, place_.path(), mood_}, {}) {}
    SlowDisk(const SlowDisk&) = delete;
    SlowDisk& operator=(const SlowDisk&) = delete;
    ~SlowDisk() {
        become("");
        process_.terminate();
    }

    [[nodiscard]] std::string file(const std::string& name) const { return place_.file(name); }

    /// From now on it is well (empty), serves nothing ("stall"), answers with errors ("fail"), or
    /// reads so many bytes a second ("rate 10000").
    void become(const std::string& mood) const {
        support::writeFile(mood_ + ".new", mood + "\n");
        std::filesystem::rename(mood_ + ".new", mood_);
    }

private:
    support::TemporaryFolder folder_;
    support::TemporaryFolder place_;
    std::string mood_ = folder_.file("mood");
    support::Process process_;
};

/// What a fault needs beside a display and a sound server.
struct Stage {
    support::PulseServer::Kind server = support::PulseServer::Kind::rewinding;
    bool isOnSlowDisk = false; ///< the tracks are on a disk that can become slow
    bool hasFakeClock = false; ///< the player's clock can be set
};

/// Returns a library by which a program's clock can be set, or an empty path.
std::string fakeClock() {
    for (const auto& entry : std::filesystem::directory_iterator("/usr/lib")) {
        const auto library = entry.path() / "faketime" / "libfaketime.so.1";
        if (std::filesystem::exists(library)) {
            return library;
        }
    }
    return {};
}

/// A desktop with a player that plays a track of a minute.
class Scene {
public:
    Scene(const std::string& program, const std::string& slowDisk, const Stage& stage)
        : sound(support::PulseServer::Sink(), stage.server), hasFakeClock_(stage.hasFakeClock),
          player_(display, program, environment(stage)) {
        support::encodeNoise(track, 60, {"-b", "128"});
        support::encodeNoise(other, 20, {"-b", "64", "--tt", OTHER_TITLE});
        if (stage.isOnSlowDisk) {
            disk = std::make_unique<SlowDisk>(slowDisk, folder.path());
            track = disk->file("track.mp3");
            other = disk->file("other.mp3");
        }
    }

    [[nodiscard]] bool begin() {
        const auto ready = [this] { return sound.running() && std::filesystem::exists(track); };
        if (!support::waitUntil(ready) || !player_.start()) {
            return false;
        }
        const std::string maps = "/proc/" + std::to_string(player_.process().pid()) + "/maps";
        if (hasFakeClock_ && support::readFile(maps).find("libfaketime") == std::string::npos) {
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
    /// Whether that stream is the other track's.
    [[nodiscard]] bool isPlayingOther() const {
        return isPlaying() && sound.describeStreams().find(OTHER_TITLE) != std::string::npos;
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
    /// Does something later, and at the scene's end at the latest waits for it.
    void after(milliseconds time, std::function<void()> action) {
        later_ = std::jthread([time, action = std::move(action)] {
            std::this_thread::sleep_for(time);
            action();
        });
    }
    [[nodiscard]] support::WatchedPlayer& player() { return player_; }

    support::TemporaryFolder folder;
    support::Display display;
    support::PulseServer sound;
    support::MessageBus bus{display.environment()};
    support::Pointer pointer{display};
    support::Keyboard keyboard{display};
    std::string track = folder.file("track.mp3");
    std::string other = folder.file("other.mp3");
    std::string clock = folder.file("clock"); ///< what is added to the player's clock, in seconds
    std::unique_ptr<SlowDisk> disk;

private:
    static constexpr const char* OTHER_TITLE = "The other track";

    support::Process::Environment environment(const Stage& stage) {
        support::Process::Environment all = display.environment();
        if (stage.hasFakeClock) {
            support::writeFile(clock, "+0");
            all.insert(all.end(), {{"LD_PRELOAD", fakeClock()},
                                   {"FAKETIME_TIMESTAMP_FILE", clock},
                                   {"FAKETIME_NO_CACHE", "1"},
                                   {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}});
        }
        for (const auto& more : {sound.environment(), bus.environment()}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }

    bool hasFakeClock_;
    support::WatchedPlayer player_;
    std::jthread later_; ///< ends before all that it uses
};

/// What the user sees in the end.
enum class Outcome {
    plays,  ///< the track goes on
    other,  ///< the other track plays
    box,    ///< the box of an error
    silent, ///< neither
    ends,   ///< the program ends in order, its settings saved
};

struct Fault {
    const char* name;
    Outcome outcome;
    std::function<void(Scene&)> breakIt;
    milliseconds watched = 4s; ///< the player is asked all that time
    Stage stage = {};
};

constexpr Stage PIPE_WIRE{.server = support::PulseServer::Kind::pipeWire};
constexpr Stage SLOW_DISK{.isOnSlowDisk = true};
constexpr Stage FAKE_CLOCK{.hasFakeClock = true};

/// Lets the disk serve nothing for some time.
std::function<void(Scene&)> stallDisk(milliseconds time) {
    return [time](Scene& scene) {
        scene.disk->become("stall");
        scene.after(time, [&scene] { scene.disk->become(""); });
    };
}

/// Opens the other track from a disk that reads so many bytes a second.
std::function<void(Scene&)> openFromDisk(int rate) {
    return [rate](Scene& scene) {
        scene.disk->become("rate " + std::to_string(rate));
        scene.open(scene.other);
    };
}

/// The player gets no more of a resource than this.
void limit(Scene& scene, __rlimit_resource resource, rlim_t most) {
    const rlimit limits{most, most};
    prlimit(scene.player().process().pid(), resource, &limits, nullptr);
}

/// The player gets no more descriptors than it has.
void limitFiles(Scene& scene) {
    rlim_t most = 0;
    const std::string pid = std::to_string(scene.player().process().pid());
    for (const auto& entry : std::filesystem::directory_iterator("/proc/" + pid + "/fd")) {
        most = std::max<rlim_t>(most, std::stoul(entry.path().filename()) + 1);
    }
    limit(scene, RLIMIT_NOFILE, most);
}

/// Stops the player's process for some time.
std::function<void(Scene&)> stopProcess(milliseconds time) {
    return [time](Scene& scene) {
        scene.player().process().signal(SIGSTOP);
        std::this_thread::sleep_for(time);
        scene.player().process().signal(SIGCONT);
    };
}

/// Fills the disk on which the settings are.
void fillDisk(Scene& scene) {
    std::ofstream filler(scene.folder.file("filler"), std::ios::binary);
    const std::string block(1 << 20, 'x');
    while (filler.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
    }
}

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
             scene.after(5s, [&scene] { scene.sound.thaw(); });
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
             scene.after(1s, [&scene] { scene.tell({"suspend-sink", "test_sink", "0"}); });
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
        {"process stopped for 5 s", Outcome::plays, stopProcess(5s)},
        {"process stopped for a minute", Outcome::plays, stopProcess(60s)},
        {"clock set a day ahead", Outcome::plays,
         [](Scene& scene) { support::writeFile(scene.clock, "+86400"); }, 4s, FAKE_CLOCK},
        {"clock set a day back", Outcome::plays,
         [](Scene& scene) { support::writeFile(scene.clock, "-86400"); }, 4s, FAKE_CLOCK},
        {"disk serves nothing for 5 s", Outcome::plays, stallDisk(5s), 9s, SLOW_DISK},
        {"disk serves nothing for a minute", Outcome::plays, stallDisk(60s), 66s, SLOW_DISK},
        {"disk fails", Outcome::box, [](Scene& scene) { scene.disk->become("fail"); }, 9s,
         SLOW_DISK},
        {"file opened from a disk of 10 kB/s", Outcome::other, openFromDisk(10'000), 20s,
         SLOW_DISK},
        {"file opened from a disk of 100 kB/s", Outcome::other, openFromDisk(100'000), 9s,
         SLOW_DISK},
        {"file opened from a disk of 5 MB/s", Outcome::other, openFromDisk(5'000'000), 9s,
         SLOW_DISK},
        {"no more memory for the process", Outcome::plays,
         [](Scene& scene) { limit(scene, RLIMIT_AS, 0); }},
        {"no more files for the process", Outcome::plays, limitFiles},
        {"no size for its files", Outcome::plays,
         [](Scene& scene) { limit(scene, RLIMIT_FSIZE, 0); }},
        {"disk of the settings full", Outcome::plays, fillDisk},
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
    case Outcome::other:
        return "the other one plays";
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
    if (scene.isPlayingOther()) {
        return Outcome::other;
    }
    return scene.isPlaying() ? Outcome::plays : Outcome::silent;
}

/// Returns whether all is as it shall be.
bool tryOut(const std::string& program, const std::string& slowDisk, const Fault& fault) {
    Scene scene(program, slowDisk, fault.stage);
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
    if (argc < 3 || argc > 4) {
        std::fputs("usage: faults PROGRAM SLOW_DISK [PATTERN]\n", stderr);
        return 2;
    }
    if (std::filesystem::space(std::filesystem::temp_directory_path()).capacity > 1ULL << 30U) {
        std::fputs("One of the faults fills the temporary folder: use tests/faults/run\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const std::string pattern = argc > 3 ? argv[3] : "";
    std::puts("| Fault | What is seen after it | Longest without an answer | Its end |\n"
              "|---|---|---|---|");
    std::vector<const char*> wrong;
    for (const Fault& fault : faults()) {
        if (std::string(fault.name).find(pattern) != std::string::npos &&
            !tryOut(argv[1], argv[2], fault)) {
            wrong.push_back(fault.name);
        }
    }
    for (const char* name : wrong) {
        std::printf("\nNot as it shall be: %s", name);
    }
    std::puts("");
    return wrong.empty() ? 0 : 1;
}
