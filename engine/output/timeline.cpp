#include "engine/output/timeline.h"

#include <algorithm>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// The longest time between two signs of a device that works, and some more.
constexpr auto LONGEST_SILENCE = 1300ms;

} // namespace

std::uint64_t Timeline::heardFrame(Clock::time_point now) const {
    const State state = read();
    const std::uint64_t device = deviceFrameAt(state, now);
    std::uint64_t frame = state.size != 0 ? state.pieces[0].feedFrame : 0;
    for (std::size_t i = 0; i < state.size; ++i) {
        const Piece& piece = state.pieces[i];
        if (piece.deviceFrame > device) {
            break;
        }
        frame = piece.feedFrame + std::min(piece.count, device - piece.deviceFrame);
    }
    return frame;
}

std::uint64_t Timeline::heardDeviceFrame(Clock::time_point now) const {
    return deviceFrameAt(state_, now);
}

std::uint64_t Timeline::deviceFrameAt(const State& state, Clock::time_point now) {
    const auto until = std::min<Clock::time_point>(now, state.lastSign + LONGEST_SILENCE);
    if (!state.runs || until <= state.when) {
        return state.heard;
    }
    const std::chrono::duration<double> elapsed = until - state.when;
    return state.heard + static_cast<std::uint64_t>(elapsed.count() * state.sampleRate);
}

void Timeline::reset(std::uint64_t feedFrame, int sampleRate) {
    state_ = {};
    state_.pieces[0] = {0, feedFrame, 0};
    state_.size = 1;
    state_.sampleRate = sampleRate;
    publish();
}

void Timeline::append(std::uint64_t deviceFrame, std::uint64_t feedFrame, std::uint64_t count) {
    auto& pieces = state_.pieces;
    if (state_.size != 0) {
        Piece& last = pieces[state_.size - 1];
        if (last.deviceFrame + last.count == deviceFrame &&
            last.feedFrame + last.count == feedFrame) {
            last.count += count;
            publish();
            return;
        }
    }
    if (state_.size == MOST_PIECES) {
        std::move(pieces.begin() + 1, pieces.end(), pieces.begin());
        --state_.size;
    }
    pieces[state_.size++] = {deviceFrame, feedFrame, count};
    publish();
}

std::uint64_t Timeline::cut(std::uint64_t deviceFrame, std::uint64_t otherwise) {
    std::uint64_t next = otherwise;
    while (state_.size != 0) {
        Piece& last = state_.pieces[state_.size - 1];
        if (last.deviceFrame + last.count <= deviceFrame) {
            break;
        }
        if (last.deviceFrame < deviceFrame) {
            last.count = deviceFrame - last.deviceFrame;
            next = last.feedFrame + last.count;
            break;
        }
        next = last.feedFrame;
        --state_.size;
    }
    if (state_.size == 0) {
        state_.pieces[state_.size++] = {deviceFrame, next, 0};
    }
    publish();
    return next;
}

void Timeline::setClock(std::uint64_t deviceFrame, Clock::time_point when, bool runs) {
    state_.heard = deviceFrame;
    state_.when = when;
    state_.lastSign = std::max(state_.lastSign, when);
    state_.runs = runs;
    publish();
}

void Timeline::extendClock(Clock::time_point when) {
    state_.lastSign = std::max(state_.lastSign, when);
    publish();
}

Timeline::State Timeline::read() const {
    for (;;) {
        const std::uint32_t before = version_.load();
        State state;
        std::size_t word = 0;
        const auto next = [&] { return words_[word++].load(std::memory_order_acquire); };
        for (Piece& piece : state.pieces) {
            piece.deviceFrame = next();
            piece.feedFrame = next();
            piece.count = next();
        }
        state.size = static_cast<std::size_t>(next());
        state.heard = next();
        const auto nextTime = [&] {
            return Clock::time_point(Clock::duration(static_cast<Clock::rep>(next())));
        };
        state.when = nextTime();
        state.lastSign = nextTime();
        state.runs = next() != 0;
        state.sampleRate = static_cast<int>(next());
        if (before % 2 == 0 && version_.load() == before) {
            return state;
        }
    }
}

void Timeline::publish() {
    version_.fetch_add(1);
    std::size_t word = 0;
    const auto put = [&](std::uint64_t value) {
        words_[word++].store(value, std::memory_order_release);
    };
    for (const Piece& piece : state_.pieces) {
        put(piece.deviceFrame);
        put(piece.feedFrame);
        put(piece.count);
    }
    put(state_.size);
    put(state_.heard);
    for (const Clock::time_point time : {state_.when, state_.lastSign}) {
        put(static_cast<std::uint64_t>(time.time_since_epoch().count()));
    }
    put(state_.runs ? 1 : 0);
    put(static_cast<std::uint64_t>(state_.sampleRate));
    version_.fetch_add(1);
}

} // namespace zvonivec
