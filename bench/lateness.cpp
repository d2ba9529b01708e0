// Measures how long the user-interface thread keeps events waiting while the player plays, seeks
// and opens files: the lateness of a timer of 5 ms, and the time of each command.

#include "bench/files.h"
#include "bench/player_at_work.h"
#include "bench/report.h"
#include "tests/support/mp3_samples.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point moment) {
    return std::chrono::duration<double, std::milli>(Clock::now() - moment).count();
}

/// Times in milliseconds, and how many lie below each bound.
class Histogram {
public:
    void add(double milliseconds) { times_.push_back(milliseconds); }

    void print(const char* what) const {
        constexpr std::array bounds{0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 50.0};
        std::printf("| %s | %zu |", what, times_.size());
        double from = 0;
        for (const double bound : bounds) {
            std::printf(" %td |", std::count_if(times_.begin(), times_.end(), [&](double time) {
                            return time >= from && time < bound;
                        }));
            from = bound;
        }
        const double worst = times_.empty() ? 0 : *std::max_element(times_.begin(), times_.end());
        std::printf(" %td | %.2f |\n",
                    std::count_if(times_.begin(), times_.end(),
                                  [from](double time) { return time >= from; }),
                    worst);
    }

private:
    std::vector<double> times_;
};

/// Measures the lateness of a timer on this thread as long as the object lives.
class Watch {
public:
    Watch() {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(INTERVAL);
        QObject::connect(&timer_, &QTimer::timeout, &context_, [this] {
            lateness.add(std::max(0.0, millisecondsSince(ticked_) - INTERVAL));
            ticked_ = Clock::now();
        });
        timer_.start();
    }

    Histogram lateness;

private:
    static constexpr int INTERVAL = 5;
    QObject context_;
    QTimer timer_;
    Clock::time_point ticked_ = Clock::now();
};

/// Serves events for a number of steps, and acts at each step.
void phase(const char* name, int steps, int stepMilliseconds,
           const std::function<void(int step)>& act) {
    Watch watch;
    Histogram own;
    QEventLoop loop;
    QTimer timer;
    int step = 0;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (step == steps) {
            loop.quit();
            return;
        }
        const auto begin = Clock::now();
        act(step++);
        own.add(millisecondsSince(begin));
    });
    timer.start(stepMilliseconds);
    loop.exec();
    watch.lateness.print((std::string(name) + ": timer is late").c_str());
    own.print((std::string(name) + ": the command itself").c_str());
}

} // namespace

int main(int count, char** arguments) {
    const bool quick = count > 1 && std::string(arguments[1]) == "--quick";
    const support::TemporaryFolder folder;
    const std::string song = folder.file("song.mp3");
    constexpr double seconds = 240;
    std::vector<std::string> files;
    for (const std::uint64_t megabytes : {1U, 10U, 100U}) {
        files.push_back(folder.file(std::to_string(megabytes) + ".mp3"));
        bench::writeFrames(files.back(), quick ? 1 : megabytes, megabytes == 10);
    }
    bench::PlayerAtWork work;
    if (!work.ok() || !support::encodeNoise(song, quick ? 20 : seconds, {"-b", "128"})) {
        std::fputs("no display, sound server or sample\n", stderr);
        return 1;
    }
    std::printf("%s\n\n| ms | count | <0.1 | <0.2 | <0.5 | <1 | <2 | <5 | <10 | <50 | more | worst "
                "|\n|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n",
                bench::machine().c_str());
    const int steps = quick ? 3 : 100;
    phase("idle", steps, 100, [](int) {});
    work.open(song);
    phase("playing", steps, 100, [](int) {});
    phase("seeking", steps, 100, [&](int step) {
        work.player().WMP->controls().setCurrentPosition((step * 37 % 200) * (quick ? 0.1 : 1.0));
    });
    phase("opening", steps / 3 + 1, 300,
          [&](int step) { work.open(files[static_cast<std::size_t>(step) % files.size()]); });
    return 0;
}
