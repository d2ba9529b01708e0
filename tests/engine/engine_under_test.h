// The real engine, with the test's thread as the user-interface thread.
#pragma once

#include "engine/mp3_engine.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace zvonivec {

/// Runs functions that other threads post, like a toolkit's event loop.
class UserInterfaceQueue {
public:
    [[nodiscard]] PostToUserInterface poster() {
        return [this](std::function<void()> function) {
            const std::lock_guard lock(mutex_);
            functions_.push_back(std::move(function));
            came_.notify_one();
        };
    }

    /// Runs posted functions until a condition holds; checks it every few milliseconds. False when
    /// the time has run out.
    bool runUntil(const std::function<bool()>& condition,
                  std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        const auto end = std::chrono::steady_clock::now() + limit;
        for (;;) {
            runWaiting();
            if (condition()) {
                return true;
            }
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::unique_lock lock(mutex_);
            came_.wait_for(lock, std::chrono::milliseconds(3),
                           [this] { return !functions_.empty(); });
        }
    }

    /// Runs posted functions for a time.
    void runFor(std::chrono::milliseconds time) {
        runUntil([] { return false; }, time);
    }

    void runWaiting() {
        for (;;) {
            std::function<void()> function;
            {
                const std::lock_guard lock(mutex_);
                if (functions_.empty()) {
                    return;
                }
                function = std::move(functions_.front());
                functions_.pop_front();
            }
            function();
        }
    }

    [[nodiscard]] bool empty() {
        const std::lock_guard lock(mutex_);
        return functions_.empty();
    }

private:
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<std::function<void()>> functions_;
};

/// An engine that counts its events.
struct EngineUnderTest {
    explicit EngineUnderTest(const OpenFile& open = &FileReader::open)
        : engine(createMp3Engine(queue.poster(), open)) {
        engine->settings().setAutoStart(false);
        engine->PlayStateChange = [this](PlayState state) {
            states.push_back(state);
            if (onState) {
                onState(state);
            }
        };
        engine->MediaChange = [this] { ++changes; };
        engine->MediaError = [this] { ++errors; };
    }

    PlayerEngine::Controls& controls() { return engine->controls(); }
    PlayerEngine::Media& media() { return engine->currentMedia(); }

    /// Loads a file and waits until it has been measured.
    void open(const std::string& path) {
        engine->setURL(path);
        queue.runUntil([this] { return media().isReadOnlyItem("Title"); });
    }

    /// Loads a file and waits as the program does. Returns the milliseconds that this took.
    double openAsTheProgramDoes(const std::string& path) {
        const auto begin = std::chrono::steady_clock::now();
        engine->setURL(path);
        while (!media().isReadOnlyItem("Bitrate")) {
        }
        const auto took = std::chrono::steady_clock::now() - begin;
        return std::chrono::duration<double, std::milli>(took).count();
    }

    [[nodiscard]] int stops() const {
        int count = 0;
        for (const PlayState state : states) {
            count += state == PlayState::stopped ? 1 : 0;
        }
        return count;
    }

    bool runUntilStopped() {
        const int before = stops();
        return queue.runUntil([&] { return stops() > before; });
    }

    UserInterfaceQueue queue;
    std::unique_ptr<PlayerEngine> engine;
    std::vector<PlayState> states;
    std::function<void(PlayState)> onState;
    int changes = 0;
    int errors = 0;
};

} // namespace zvonivec
