#include "engine/output/pulse_output.h"

#include "version.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <pulse/pulseaudio.h>
#include <span>
#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// A server that doesn't answer by then is left to SDL.
constexpr auto CONNECT_LIMIT = 200ms;
/// Opening a sound card that slept takes a while.
constexpr auto STREAM_LIMIT = 2000ms;

/// Time of sound in the server, and how much of it is asked for at once. A sink mixes half of what
/// lies beyond two requests at a time; with nothing beyond them it would ask far more often.
constexpr auto HELD = 3000ms;
constexpr auto PIECE = 1000ms;

/// How far ahead of what is heard a change is written: what a device has already taken, and the
/// way to the server. The way takes about half as long as the answer about the server's clock just
/// before. The double of that answer's time leaves room for a busy machine.
constexpr auto TAKEN_BY_DEVICE = 10ms;
constexpr std::chrono::microseconds SHORTEST_WAY = 2ms;
constexpr std::chrono::microseconds LONGEST_WAY = 30ms;
/// Time of sound of the first write of a change. It is sent before the rest is prepared.
constexpr auto FIRST_OF_CHANGE = 30ms;
/// The same ahead of what a server has mixed, where it takes back nothing: one cycle of its graph.
constexpr auto AHEAD_OF_MIXED = 24ms;

/// PipeWire plays whole cycles, and leaves lying what doesn't fill one. Silence of a cycle makes
/// sure that the last sample is heard.
constexpr auto PAD = 50ms;

/// How long a server that asks for nothing may be silent before it is asked for its clock. Longer
/// than the time between two requests.
constexpr auto LONGEST_SILENCE = PIECE + 200ms;

/// The server is asked for its clock this long after each change of its state, then after double
/// the time and so on, up to the last; from then on together with some requests of its own.
constexpr std::chrono::microseconds FIRST_LOOK = 10ms;
constexpr std::chrono::microseconds LAST_LOOK = 640ms;
constexpr int REQUESTS_PER_LOOK = 3;

/// How often a sink is asked in vain to begin: what it has mixed is a few seconds at most.
constexpr int MOST_NUDGES = 8;

/// How long a stream must be silent before it is corked: the fade must have been heard.
constexpr auto CORK_DELAY = 150ms;

constexpr int NO_TIMEOUT = -1;

std::uint64_t framesIn(std::chrono::microseconds time, int sampleRate) {
    return static_cast<std::uint64_t>(time.count()) * static_cast<std::uint64_t>(sampleRate) /
           1000000;
}

void drop(pa_operation* operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

} // namespace

PulseOutput::PulseOutput(SampleFeed& feed, std::function<void()> callForMore)
    : feed_(feed), callForMore_(std::move(callForMore)), loop_(pa_mainloop_new()) {}

PulseOutput::~PulseOutput() {
    close();
    if (loop_ != nullptr) {
        pa_mainloop_free(loop_);
    }
}

std::optional<Failure> PulseOutput::open(const AudioFormat& format,
                                         const std::function<bool()>& stop) {
    assert(stream_ == nullptr && format.sampleRate > 0);
    if (connect(stop) && createStream(format, stop)) {
        return std::nullopt;
    }
    const Failure reason = failure();
    close();
    return reason;
}

bool PulseOutput::connect(const std::function<bool()>& stop) {
    if (loop_ == nullptr) {
        return false;
    }
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Zvonivec MP3 Player " ZVONIVEC_VERSION);
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "zvonivec");
    context_ = pa_context_new_with_proplist(pa_mainloop_get_api(loop_), nullptr, properties);
    pa_proplist_free(properties);
    // A server that has to be started first is left to SDL, which waits for it.
    if (context_ == nullptr ||
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        return false;
    }
    const auto isReady = [this] { return pa_context_get_state(context_) == PA_CONTEXT_READY; };
    if (!iterateUntil(isReady, stop, CONNECT_LIMIT)) {
        return false;
    }
    rewinds_ = true;
    drop(pa_context_get_server_info(
        context_,
        [](pa_context*, const pa_server_info* info, void* self) {
            // PipeWire takes back nothing that it has mixed, and mixes little.
            if (info != nullptr && info->server_name != nullptr &&
                std::strstr(info->server_name, "PipeWire") != nullptr) {
                static_cast<PulseOutput*>(self)->rewinds_ = false;
            }
        },
        this));
    return true;
}

bool PulseOutput::createStream(const AudioFormat& format, const std::function<bool()>& stop) {
    format_ = format;
    frameBytes_ = static_cast<std::size_t>(format.channels) * sizeof(std::int16_t);
    pa_sample_spec samples = {};
    samples.format = PA_SAMPLE_S16NE;
    samples.rate = static_cast<std::uint32_t>(format.sampleRate);
    samples.channels = static_cast<std::uint8_t>(format.channels);
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "music");
    {
        const std::lock_guard lock(titleMutex_);
        pa_proplist_sets(properties, PA_PROP_MEDIA_NAME, title_.c_str());
        pa_proplist_sets(properties, PA_PROP_MEDIA_TITLE, title_.c_str());
        titleChanged_ = false;
        stream_ =
            pa_stream_new_with_proplist(context_, title_.c_str(), &samples, nullptr, properties);
    }
    pa_proplist_free(properties);
    if (stream_ == nullptr) {
        return false;
    }
    pa_stream_set_write_callback(
        stream_,
        [](pa_stream*, std::size_t, void* self) {
            auto& output = *static_cast<PulseOutput*>(self);
            output.serverLives();
            if (++output.requests_ % REQUESTS_PER_LOOK == 0) {
                output.lookAtClock();
            }
            output.follow();
        },
        this);
    pa_stream_set_latency_update_callback(
        stream_, [](pa_stream*, void* self) { static_cast<PulseOutput*>(self)->takeTiming(); },
        this);
    const auto watch = [](pa_stream*, void* self) {
        static_cast<PulseOutput*>(self)->watchClock();
    };
    for (const auto set : {pa_stream_set_started_callback, pa_stream_set_moved_callback,
                           pa_stream_set_suspended_callback}) {
        set(stream_, watch, this);
    }
    const auto bytesIn = [&](std::chrono::microseconds time) {
        return static_cast<std::uint32_t>(framesIn(time, format.sampleRate) * frameBytes_);
    };
    constexpr auto byServer = static_cast<std::uint32_t>(-1);
    pa_buffer_attr buffer = {};
    buffer.maxlength = byServer;
    buffer.tlength = bytesIn(HELD);
    // It begins with whatever is there. Where it runs dry it waits, so that nothing is lost.
    buffer.prebuf = static_cast<std::uint32_t>(frameBytes_);
    buffer.minreq = bytesIn(PIECE);
    buffer.fragsize = byServer;
    corked_ = false;
    timingAsked_ = false;
    sendsFirst_ = false;
    roundTrip_ = {};
    padBegin_ = padEnd_ = 0;
    nudges_ = MOST_NUDGES;
    const auto isReady = [this] { return pa_stream_get_state(stream_) == PA_STREAM_READY; };
    if (pa_stream_connect_playback(stream_, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY, nullptr,
                                   nullptr) < 0 ||
        !iterateUntil(isReady, stop, STREAM_LIMIT)) {
        return false;
    }
    watchClock();
    return true;
}

/// Lets the library work until done. Returns False when it fails, is to stop, or takes too long.
bool PulseOutput::iterateUntil(const std::function<bool()>& done, const std::function<bool()>& stop,
                               std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
            end - std::chrono::steady_clock::now());
        if (stop() || left.count() <= 0 || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)) ||
            (stream_ != nullptr && !PA_STREAM_IS_GOOD(pa_stream_get_state(stream_)))) {
            return false;
        }
        if (pa_mainloop_prepare(loop_, static_cast<int>(left.count())) < 0 ||
            pa_mainloop_poll(loop_) < 0 || pa_mainloop_dispatch(loop_) < 0) {
            return false;
        }
    }
    return true;
}

void PulseOutput::serve(const std::function<bool()>& stop) {
    while (!stop() && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)) &&
           PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) {
        if (!std::exchange(sendsFirst_, false)) {
            follow();
        }
        if (pa_mainloop_prepare(loop_, NO_TIMEOUT) < 0 || pa_mainloop_poll(loop_) < 0 ||
            pa_mainloop_dispatch(loop_) < 0) {
            return;
        }
    }
}

void PulseOutput::close() {
    for (Timer* const timer : {&corkTimer_, &clockTimer_, &lookTimer_}) {
        if (timer->event != nullptr) {
            pa_mainloop_get_api(loop_)->time_free(std::exchange(timer->event, nullptr));
        }
    }
    if (stream_ != nullptr) {
        pa_stream_set_write_callback(stream_, nullptr, nullptr);
        for (const auto set :
             {pa_stream_set_latency_update_callback, pa_stream_set_started_callback,
              pa_stream_set_moved_callback, pa_stream_set_suspended_callback}) {
            set(stream_, nullptr, nullptr);
        }
        pa_stream_disconnect(stream_);
        pa_stream_unref(stream_);
        stream_ = nullptr;
    }
    if (context_ != nullptr) {
        pa_context_disconnect(context_); // which ends all operations
        pa_context_unref(context_);
        context_ = nullptr;
    }
}

void PulseOutput::wake() {
    if (loop_ != nullptr) {
        pa_mainloop_wakeup(loop_);
    }
}

void PulseOutput::setTitle(const std::string& title) {
    {
        const std::lock_guard lock(titleMutex_);
        titleChanged_ = titleChanged_ || title != title_;
        title_ = title;
    }
    wake();
}

void PulseOutput::applyTitle() {
    const std::lock_guard lock(titleMutex_);
    if (titleChanged_) {
        titleChanged_ = false;
        pa_proplist* const properties = pa_proplist_new();
        pa_proplist_sets(properties, PA_PROP_MEDIA_NAME, title_.c_str());
        pa_proplist_sets(properties, PA_PROP_MEDIA_TITLE, title_.c_str());
        drop(pa_stream_proplist_update(stream_, PA_UPDATE_REPLACE, properties, nullptr, nullptr));
        pa_proplist_free(properties);
    }
}

Failure PulseOutput::failure() const {
    const int error = context_ != nullptr ? pa_context_errno(context_) : PA_ERR_INTERNAL;
    return {Failure::Cause::noDevice,
            error == PA_OK ? "The sound server doesn't answer" : pa_strerror(error)};
}

/// Looks at what has changed since the last time.
void PulseOutput::follow() {
    if (pa_stream_get_state(stream_) != PA_STREAM_READY) {
        return;
    }
    applyTitle();
    if (feed_.hasChanged() || (isPadded() && feed_.hasSamples())) {
        askForTiming();
    } else {
        supply(feed_.deviceFrame());
    }
}

/// Where the server plays must be known before something is written over. The answer comes within
/// a millisecond, from a server that isn't busy.
void PulseOutput::askForTiming() {
    if (timingAsked_) {
        return;
    }
    timingAsked_ = true;
    askedAt_ = SampleFeed::Clock::now();
    drop(pa_stream_update_timing_info(
        stream_,
        [](pa_stream*, int, void* self) {
            auto& output = *static_cast<PulseOutput*>(self);
            output.timingAsked_ = false;
            output.noteRoundTrip();
            output.rewrite();
        },
        this));
}

/// Asks for the clock, closely at first.
void PulseOutput::watchClock() {
    nextLook_ = FIRST_LOOK;
    lookAtClockAgain();
}

/// Asks now, and again and again after ever longer times.
void PulseOutput::lookAtClockAgain() {
    lookAtClock();
    if (nextLook_ <= LAST_LOOK) {
        restartTimer(lookTimer_, nextLook_);
        nextLook_ *= 2;
    }
}

void PulseOutput::lookAtClock() {
    drop(pa_stream_update_timing_info(stream_, nullptr, nullptr)); // which calls takeTiming
}

/// A single slow answer counts for some changes more: others may follow that are as slow.
void PulseOutput::noteRoundTrip() {
    roundTrip_ = std::max<SampleFeed::Clock::duration>(SampleFeed::Clock::now() - askedAt_,
                                                       roundTrip_ * 3 / 4);
}

/// Frames between what is heard and the first that a change can reach.
std::uint64_t PulseOutput::lead() const {
    const auto way = std::chrono::duration_cast<std::chrono::microseconds>(2 * roundTrip_);
    return framesIn(TAKEN_BY_DEVICE + std::clamp(way, SHORTEST_WAY, LONGEST_WAY),
                    format_.sampleRate);
}

/// A server that hangs says nothing, and its clock must not run on.
void PulseOutput::serverLives() {
    feed_.extendClock(SampleFeed::Clock::now());
    restartTimer(clockTimer_, LONGEST_SILENCE);
}

/// Tells the feed what is heard now.
void PulseOutput::takeTiming() {
    serverLives();
    const pa_timing_info* const timing = pa_stream_get_timing_info(stream_);
    if (timing == nullptr || timing->read_index_corrupt != 0) {
        return;
    }
    const auto frames = [&](std::int64_t bytes) {
        return static_cast<std::uint64_t>(std::max<std::int64_t>(0, bytes)) / frameBytes_;
    };
    const std::uint64_t mixed = frames(timing->read_index);
    std::uint64_t inDevice = 0;
    if (!corked_) {
        inDevice = framesIn(std::chrono::microseconds(timing->sink_usec), format_.sampleRate);
        if (timing->playing == 0) { // the last of it is silence
            inDevice -= std::min(inDevice, frames(timing->since_underrun));
        }
    }
    feed_.setClock(mixed - std::min(mixed, inDevice),
                   SampleFeed::Clock::now() - std::chrono::microseconds(timing->transport_usec),
                   !corked_);
    const bool waits =
        timing->playing == 0 && !corked_ && feed_.deviceFrame() > mixed &&
        timing->sink_usec > static_cast<pa_usec_t>(
                                std::chrono::microseconds(TAKEN_BY_DEVICE + SHORTEST_WAY).count());
    if (waits && rewinds_ && nudges_ > 0) {
        --nudges_;
        nudge();
    }
}

/// A sink may have mixed more silence than it takes back at once. Each write makes it take back
/// some, until it begins to play: so the last frame is written again.
void PulseOutput::nudge() {
    const std::uint64_t written = feed_.deviceFrame();
    feed_.takeBack(written - 1);
    supply(written);
    askForTiming();
}

/// Writes anew what is no longer true, as soon as it can still be heard.
void PulseOutput::rewrite() {
    const pa_timing_info* const timing = pa_stream_get_timing_info(stream_);
    const std::uint64_t written = feed_.deviceFrame();
    if (timing != nullptr) {
        std::uint64_t from = feed_.heardDeviceFrame() + lead();
        if (!rewinds_) {
            const auto mixed =
                static_cast<std::uint64_t>(std::max<std::int64_t>(0, timing->read_index)) /
                frameBytes_;
            from = corked_ ? mixed
                           : std::max(from, mixed + framesIn(AHEAD_OF_MIXED, format_.sampleRate));
        }
        if (feed_.hasChanged()) {
            feed_.takeBack(from);
        } else if (isPadded()) {
            feed_.takeBack(std::max(from, padBegin_));
        }
    }
    supply(written);
}

/// Gives the server what it wants and the feed has. writtenBefore: where the last write ended,
/// which is behind the feed's place when something is written over.
void PulseOutput::supply(std::uint64_t writtenBefore) {
    const std::uint64_t begin = feed_.deviceFrame();
    const bool satisfied = write(writtenBefore);
    if (sendsFirst_) {
        return; // the rest follows
    }
    if (satisfied) {
        feed_.setSatisfied();
    } else if (!rewinds_ && !isPadded() && begin != 0 && feed_.isAtEnd()) {
        pad();
    }
    if (!satisfied || feed_.deviceFrame() != begin) {
        callForMore_();
    }
}

/// Returns whether the server has all that it wants. Of a change only the first part is written,
/// and sendsFirst_ set: a slow machine takes longer to prepare the rest than the server waits.
bool PulseOutput::write(std::uint64_t writtenBefore) {
    auto back = static_cast<std::int64_t>((writtenBefore - feed_.deviceFrame()) * frameBytes_);
    const bool isChange = back != 0;
    const std::uint64_t stop = feed_.deviceFrame() + framesIn(FIRST_OF_CHANGE, format_.sampleRate);
    for (;;) {
        if (isChange && feed_.deviceFrame() >= stop) {
            sendsFirst_ = true;
            return false;
        }
        const std::size_t wanted = pa_stream_writable_size(stream_);
        if (wanted == static_cast<std::size_t>(-1)) {
            return true; // it has failed, as its state says
        }
        std::size_t room = wanted + static_cast<std::size_t>(back);
        if (isChange) {
            const std::uint64_t left = stop - feed_.deviceFrame();
            room = std::min(room, static_cast<std::size_t>(left) * frameBytes_);
        }
        if (room < frameBytes_) {
            return true;
        }
        void* data = nullptr;
        std::size_t bytes = room;
        if (pa_stream_begin_write(stream_, &data, &bytes) < 0 || data == nullptr) {
            return true;
        }
        bytes = std::min(bytes, room) / frameBytes_ * frameBytes_;
        // The library's blocks are aligned for every sample type.
        const std::span<std::int16_t> target(static_cast<std::int16_t*>(data),
                                             bytes / sizeof(std::int16_t));
        const bool wasSilent = feed_.isSilent();
        std::size_t samples = feed_.take(target);
        if (samples == 0 && back != 0) {
            // Silence cuts off what was written before.
            samples = static_cast<std::size_t>(format_.channels);
            feed_.fill(target.first(samples));
        }
        if (samples == 0) {
            pa_stream_cancel_write(stream_);
            return false;
        }
        pa_stream_write(stream_, data, samples * sizeof(std::int16_t), nullptr, -back,
                        PA_SEEK_RELATIVE);
        back = 0;
        if (feed_.isSilent()) {
            restartTimer(corkTimer_, CORK_DELAY);
        } else if (wasSilent && corked_) {
            nudges_ = MOST_NUDGES;
            cork(false);
        }
    }
}

void PulseOutput::pad() {
    void* data = nullptr;
    const std::size_t wanted = framesIn(PAD, format_.sampleRate) * frameBytes_;
    std::size_t bytes = wanted;
    if (pa_stream_begin_write(stream_, &data, &bytes) < 0 || data == nullptr) {
        return;
    }
    bytes = std::min(bytes, wanted) / frameBytes_ * frameBytes_;
    padBegin_ = feed_.deviceFrame();
    feed_.fill({static_cast<std::int16_t*>(data), bytes / sizeof(std::int16_t)});
    padEnd_ = feed_.deviceFrame();
    pa_stream_write(stream_, data, bytes, nullptr, 0, PA_SEEK_RELATIVE);
}

/// Whether the last that was written is silence that waits for something better.
bool PulseOutput::isPadded() const {
    return padEnd_ != padBegin_ && padEnd_ == feed_.deviceFrame();
}

/// Calls a function after a time from now, instead of the time set before.
void PulseOutput::restartTimer(Timer& timer, std::chrono::microseconds time) {
    const pa_usec_t when = pa_rtclock_now() + static_cast<pa_usec_t>(time.count());
    if (timer.event != nullptr) {
        pa_context_rttime_restart(context_, timer.event, when);
        return;
    }
    timer.event = pa_context_rttime_new(
        context_, when,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* passed) {
            const Timer& ended = *static_cast<Timer*>(passed);
            (ended.output->*ended.function)();
        },
        &timer);
}

void PulseOutput::corkIfSilent() {
    if (feed_.isSilent() && !corked_) {
        cork(true);
    }
}

/// Holds the stream, or lets it go on.
void PulseOutput::cork(bool on) {
    corked_ = on;
    drop(pa_stream_cork(stream_, on ? 1 : 0, nullptr, nullptr));
    watchClock();
}

void PulseOutput::askSilentServer() {
    if (!corked_) {
        askForTiming();
    }
}

} // namespace zvonivec
