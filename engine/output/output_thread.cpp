#include "engine/output/output_thread.h"

#include "engine/output/sdl_output.h"
#include "engine/threads.h"
#ifdef ZVONIVEC_PULSE
#include "engine/output/pulse_output.h"
#endif

#include <cassert>
#include <utility>

namespace zvonivec {

std::shared_ptr<OutputThread> OutputThread::create(std::size_t capacity,
                                                   std::function<void()> changed) {
    return std::shared_ptr<OutputThread>(new OutputThread(capacity, std::move(changed)));
}

void OutputThread::allow(std::uint64_t stream) {
    feed_.allow(stream);
    wakeOutput();
}

void OutputThread::setGain(float gain) {
    feed_.setGain(gain);
    wakeOutput();
}

void OutputThread::supply() {
    wakeOutput();
}

void OutputThread::wakeOutput() const {
    const std::lock_guard lock(mutex_);
    if (output_ != nullptr) {
        output_->wake();
    }
}

void OutputThread::setTitle(const std::string& title) {
    const std::lock_guard lock(mutex_);
    title_ = title;
    if (output_ != nullptr) {
        output_->setTitle(title);
    }
}

void OutputThread::quit() {
    const std::lock_guard lock(mutex_);
    quit_ = true;
    came_.notify_all();
    if (output_ != nullptr) {
        output_->wake();
    }
}

void OutputThread::end(std::chrono::steady_clock::time_point deadline) {
    quit();
    std::unique_lock lock(mutex_);
    if (!thread_.joinable()) {
        return;
    }
    const bool finished = came_.wait_until(lock, deadline, [this] { return finished_; });
    lock.unlock();
    if (finished) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

void OutputThread::open(const AudioFormat& format) {
    {
        const std::lock_guard lock(mutex_);
        assert(state_ == State::closed);
        if (quit_) {
            return;
        }
        wanted_ = format;
        stop_ = false;
        state_ = State::opening;
        came_.notify_all();
        if (thread_.joinable()) {
            return;
        }
        const auto failure = startThread(thread_, [self = shared_from_this()] { self->work(); });
        if (!failure) {
            return;
        }
        wanted_.reset();
        state_ = State::failed;
        failure_ = *failure;
    }
    changed_();
}

void OutputThread::close() {
    const std::lock_guard lock(mutex_);
    if (state_ == State::failed || state_ == State::lost) {
        state_ = State::closed;
    } else if (state_ != State::closed) {
        state_ = State::closing;
        stop_ = true;
        if (output_ != nullptr) {
            output_->wake();
        }
    }
}

OutputThread::State OutputThread::state() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

Failure OutputThread::failure() const {
    const std::lock_guard lock(mutex_);
    return failure_;
}

bool OutputThread::callsForMore() const {
    const std::lock_guard lock(mutex_);
    return output_ != nullptr && output_->callsForMore();
}

bool OutputThread::mustStop() const {
    const std::lock_guard lock(mutex_);
    return stop_ || quit_;
}

void OutputThread::work() {
    for (;;) {
        AudioFormat format;
        {
            std::unique_lock lock(mutex_);
            came_.wait(lock, [this] { return wanted_.has_value() || quit_; });
            if (quit_) {
                finished_ = true;
                came_.notify_all();
                return;
            }
            format = *wanted_;
            wanted_.reset();
        }
        run(format);
        changed_();
    }
}

/// Opens the first device that there is and serves it until it is closed or lost.
void OutputThread::run(const AudioFormat& format) {
#ifdef ZVONIVEC_PULSE
    {
        PulseOutput pulse(feed_, changed_);
        if (tryOutput(pulse, format)) {
            return;
        }
    }
#endif
    SdlOutput sdl(feed_);
    if (tryOutput(sdl, format)) {
        return;
    }
    const std::lock_guard lock(mutex_);
    state_ = stop_ ? State::closed : State::failed;
}

/// Returns False when there is no device this way; it is closed otherwise, and the state set.
bool OutputThread::tryOutput(AudioOutput& output, const AudioFormat& format) {
    {
        const std::lock_guard lock(mutex_);
        if (stop_ || quit_) {
            state_ = State::closed;
            return true;
        }
        output_ = &output;
        output.setTitle(title_);
    }
    const auto stop = [this] { return mustStop(); };
    auto failure = output.open(format, stop);
    if (!failure) {
        {
            const std::lock_guard lock(mutex_);
            if (!stop_) {
                state_ = State::open;
            }
        }
        changed_();
        output.serve(stop);
    }
    {
        const std::lock_guard lock(mutex_);
        output_ = nullptr; // nobody wakes it any more
    }
    output.close();
    feed_.endDevice();
    const std::lock_guard lock(mutex_);
    if (failure) {
        failure_ = *failure;
        return false;
    }
    state_ = stop_ || quit_ ? State::closed : State::lost;
    return true;
}

} // namespace zvonivec
