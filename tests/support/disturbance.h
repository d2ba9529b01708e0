// Tells what a busy machine does to a test from what the tested program does.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace support {

/// Watches from its construction on whether a thread that wants to run soon may.
class Disturbance {
public:
    Disturbance() : watch_([this] { watch(); }) {}
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;
    ~Disturbance() {
        stop_ = true;
        watch_.join();
    }

    /// Whether a thread had to wait for longer than a sound server can bear.
    [[nodiscard]] bool happened() const { return happened_; }

private:
    void watch() {
        using namespace std::chrono_literals;
        while (!stop_) {
            const auto due = std::chrono::steady_clock::now() + 1ms;
            std::this_thread::sleep_until(due);
            if (std::chrono::steady_clock::now() > due + 2ms) {
                happened_ = true;
            }
        }
    }

    std::atomic<bool> stop_{false};
    std::atomic<bool> happened_{false};
    std::thread watch_; ///< last: uses the others
};

/// Repeats an attempt until it succeeds, which is until it returns an empty text. Returns what the
/// last one returned. Only attempts that the machine disturbed are repeated: without a disturbance
/// the first must succeed.
inline std::string attemptWhileDisturbed(int most, const std::function<std::string()>& attempt) {
    std::string problem;
    for (int i = 0; i < most; ++i) {
        const Disturbance disturbance;
        problem = attempt();
        if (problem.empty() || !disturbance.happened()) {
            break;
        }
    }
    return problem;
}

} // namespace support
