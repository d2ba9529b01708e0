// Measures this player and others side by side. The script bench/compare builds and starts it.

#include "bench/probe.h"
#include "bench/report.h"
#include "bench/run.h"
#include "bench/subject.h"
#include "tests/support/mp3_samples.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <thread>

namespace {

using namespace bench;
using namespace std::chrono_literals;

constexpr std::string_view OURS = "Zvonivec";
constexpr std::string_view FLOOR = "mpg123";
constexpr std::string_view TOOLKIT = "empty window";
constexpr std::string_view THREAD = "playing, thread "; ///< begins the key of a thread's share

struct Plan {
    int rounds = 5;
    std::chrono::milliseconds stretch = 12s; ///< over which processor time is measured
    std::chrono::milliseconds settling = 3s; ///< waited before, so that no start is measured
    double fileSeconds = 240;
    support::PulseServer::Kind server = support::PulseServer::Kind::rewinding;
    std::string jsonFile;
    std::string only; ///< names of players; empty: all installed ones
    bool bus = false; ///< measures our player with a session bus too
};

/// What a figure of our player is compared with.
enum class Against {
    floor,   ///< mpg123's
    leanest, ///< the least of the other players with a window
    toolkit, ///< that of an empty window
    nothing, ///< the target is a figure, not a ratio
};

/// A target for our player: the greatest ratio to the same figure of others.
struct Target {
    std::string_view title;
    std::string_view key;
    double most;
    Against against;
};

constexpr std::array TARGETS{
    Target{"playing in sight, to mpg123", "playing", 0.8, Against::floor},
    Target{"playing in sight, to the leanest with a window", "playing", 0.2, Against::leanest},
    Target{"minimised and playing, to mpg123", "minimised", 0.4, Against::floor},
    Target{"wake-ups a second, playing in sight", "playing_wake_ups", 20, Against::nothing},
    Target{"wake-ups a second, minimised", "minimised_wake_ups", 6, Against::nothing},
    Target{"wake-ups a second, idle", "idle_wake_ups", 10, Against::nothing},
    Target{"memory, to the leanest with a window", "memory", 0.5, Against::leanest},
    Target{"window up, to an empty window", "window", 1.4, Against::toolkit},
    Target{"window up, to the quickest", "window", 0.6, Against::leanest},
    Target{"sound, to the quickest with a window", "sound", 0.5, Against::leanest},
    Target{"play to sound after a stop, s", "play", 0.020, Against::nothing},
    Target{"stop to silence, s", "stop", 0.040, Against::nothing},
    Target{"idle in sight, s/min", "idle", 0.15, Against::nothing},
    Target{"program with its pictures, stripped, bytes", "program", 1 << 20, Against::nothing},
};

/// The shared libraries that each player maps while it plays.
struct Libraries {
    std::map<std::string_view, std::set<std::string>> of;

    /// Returns the bytes of the libraries that no other player uses.
    [[nodiscard]] double own(std::string_view subject) const {
        double size = 0;
        for (const std::string& library : of.at(subject)) {
            bool shared = false;
            for (const auto& [other, libraries] : of) {
                shared = shared || (other != subject && libraries.contains(library));
            }
            std::error_code gone;
            const auto bytes = std::filesystem::file_size(library, gone);
            size += shared || gone ? 0 : static_cast<double>(bytes);
        }
        return size;
    }
};

/// Measures everything of one player once. False when it didn't show or play.
bool measure(const Subject& subject, support::Display& display, support::PulseServer& sound,
             const std::string& file, const Plan& plan, Report& report, Libraries& libraries) {
    if (subject.hasWindow) {
        { // so that all are in the processor's and the system's caches alike
            Run first(subject, display, sound);
            first.startIdle();
            if (!first.timeToWindow()) {
                return false;
            }
        }
        Run idle(subject, display, sound);
        idle.startIdle();
        const auto window = idle.timeToWindow();
        if (!window) {
            return false;
        }
        report.add(subject.name, "window", window);
        std::this_thread::sleep_for(plan.settling);
        const Minute minute = idle.measure(plan.stretch);
        report.add(subject.name, "idle", minute.processor);
        report.add(subject.name, "idle_wake_ups", minute.wakeUps);
        if (!subject.plays) {
            const Memory memory = memoryOf(idle.pid());
            report.add(subject.name, "memory", memory.proportional);
            report.add(subject.name, "own_memory", memory.ownWritten);
            return true;
        }
    }

    Run playing(subject, display, sound);
    if (!playing.startPlaying(file)) {
        return false;
    }
    report.add(subject.name, "sound", playing.timeToSound());
    std::this_thread::sleep_for(plan.settling);
    Minute minute = playing.measure(plan.stretch);
    report.add(subject.name, "playing", minute.processor);
    report.add(subject.name, "playing_display", minute.server);
    for (const auto& [name, processor] : minute.threads) {
        report.add(subject.name, std::string(THREAD) + name, processor);
    }
    report.add(subject.name, "playing_wake_ups", minute.wakeUps);
    report.add(subject.name, "playing_energy", minute.energy);
    const Memory memory = memoryOf(playing.pid());
    report.add(subject.name, "memory", memory.proportional);
    report.add(subject.name, "own_memory", memory.ownWritten);
    libraries.of[subject.name] = librariesOf(playing.pid());
    std::error_code gone;
    report.add(subject.name, "program",
               static_cast<double>(std::filesystem::file_size(
                   "/proc/" + std::to_string(playing.pid()) + "/exe", gone)));

    report.add(subject.name, "play", playing.timeFromPlayToSound());
    report.add(subject.name, "stop", playing.timeFromStopToSilence());
    if (subject.hasWindow) {
        playing.minimise();
        std::this_thread::sleep_for(plan.settling);
        minute = playing.measure(plan.stretch);
    }
    // A player without a window is out of sight all the time.
    report.add(subject.name, "minimised", minute.processor);
    report.add(subject.name, "minimised_wake_ups", minute.wakeUps);
    return true;
}

void printThreads(const Report& report) {
    std::puts("\n| Our threads, playing in sight | s/min |\n|---|---:|");
    constexpr double least = 0.001;
    for (const std::string& key : report.keys(OURS)) {
        const double processor = report.of(OURS, key).value_or(0);
        if (key.starts_with(THREAD) && processor >= least) {
            std::printf("| %s | %.3f |\n", key.c_str() + THREAD.size(), processor);
        }
    }
}

std::optional<double> comparedWith(const Target& target, const Report& report,
                                   std::span<const std::string_view> withWindow) {
    switch (target.against) {
    case Against::floor:
        return report.of(FLOOR, target.key);
    case Against::leanest:
        return report.smallest(withWindow, target.key);
    case Against::toolkit:
        return report.of(TOOLKIT, target.key);
    case Against::nothing:
        return 1;
    }
    return std::nullopt;
}

void printTargets(const Report& report, std::span<const std::string_view> withWindow) {
    const auto print = [](std::string_view title, double is, double most) {
        std::printf("| %.*s | %.3g | %.3g | %s |\n", static_cast<int>(title.size()), title.data(),
                    is, most, is <= most ? "met" : "**not met**");
    };
    std::puts("\n| Target | is | at most | |\n|---|---:|---:|---|");
    for (const Target& target : TARGETS) {
        const auto ours = report.of(OURS, target.key);
        const auto theirs = comparedWith(target, report, withWindow);
        if (ours && theirs && *theirs > 0) {
            print(target.title, *ours / *theirs, target.most);
        }
    }
}

int usage() {
    std::fputs(
        "bench_compare [--quick] [--pipewire] [--bus] [--rounds N] [--seconds N] [--only NAME,...] "
        "[--json FILE]\n",
        stderr);
    return 2;
}

/// Returns nothing when the arguments make no plan.
std::optional<Plan> planFrom(std::span<char*> arguments) {
    Plan plan;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view option = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (option == "--quick") {
            plan.rounds = 1;
            plan.stretch = 500ms;
            plan.settling = 100ms;
            plan.fileSeconds = 20;
        } else if (option == "--pipewire") {
            plan.server = support::PulseServer::Kind::pipeWire;
        } else if (option == "--bus") {
            plan.bus = true;
        } else if (option == "--rounds" && hasValue) {
            plan.rounds = std::atoi(arguments[++i]);
        } else if (option == "--seconds" && hasValue) {
            plan.stretch = std::chrono::seconds(std::atoi(arguments[++i]));
        } else if (option == "--only" && hasValue) {
            plan.only = arguments[++i];
        } else if (option == "--json" && hasValue) {
            plan.jsonFile = arguments[++i];
        } else {
            return std::nullopt;
        }
    }
    return plan;
}

bool isPlanned(const Subject& subject, const Plan& plan) {
    return isInstalled(subject) && (plan.bus || !subject.onBus) &&
           (plan.only.empty() || plan.only.find(subject.name) != std::string::npos);
}

/// Measures every planned player in every round. False when our own player didn't show or play.
bool measureAll(support::Display& display, support::PulseServer& sound, const std::string& file,
                const Plan& plan, Report& report, Libraries& libraries) {
    for (int round = 1; round <= plan.rounds; ++round) {
        for (const Subject& subject : subjects()) {
            if (!isPlanned(subject, plan)) {
                continue;
            }
            const std::string name(subject.name);
            std::fprintf(stderr, "round %d of %d: %s\n", round, plan.rounds, name.c_str());
            if (!measure(subject, display, sound, file, plan, report, libraries)) {
                std::fprintf(stderr, "%s doesn't show or doesn't play\n", name.c_str());
                if (subject.name == OURS) {
                    return false;
                }
            }
        }
    }
    return true;
}

/// Returns the names of the other players with a window that were measured.
std::vector<std::string_view> othersWithWindow(const Libraries& libraries) {
    std::vector<std::string_view> names;
    for (const Subject& subject : subjects()) {
        if (libraries.of.contains(subject.name) && subject.hasWindow && !subject.ours) {
            names.push_back(subject.name);
        }
    }
    return names;
}

} // namespace

int main(int count, char** arguments) {
    const std::optional<Plan> plan =
        planFrom(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    if (!plan) {
        return usage();
    }

    const support::TemporaryFolder folder;
    const std::string file = folder.file("song.mp3");
    support::Display display;
    support::PulseServer sound(support::PulseServer::Sink(), plan->server);
    if (!display.ok() || !sound.running() ||
        !support::encodeNoise(
            file, plan->fileSeconds,
            {"-b", "128", "--tt", "Tichá noc", "--ta", "Interpret", "--tl", "Album"})) {
        std::fprintf(stderr, "no desktop, sound server or sample: %s\n", display.problem().c_str());
        return 1;
    }

    Report report;
    Libraries libraries;
    if (!measureAll(display, sound, file, *plan, report, libraries)) {
        return 1;
    }
    for (const auto& [name, files] : libraries.of) {
        report.add(name, "own_libraries", libraries.own(name));
    }

    std::printf("%s\n\nMedians of %d; processor time over %.1f s, scaled to a minute.\n\n%s",
                machine().c_str(), plan->rounds,
                std::chrono::duration<double>(plan->stretch).count(), report.table().c_str());
    printTargets(report, othersWithWindow(libraries));
    printThreads(report);
    if (!plan->jsonFile.empty()) {
        support::writeFile(plan->jsonFile, report.json(machine()));
    }
    return 0;
}
