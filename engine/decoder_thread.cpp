#include "engine/decoder_thread.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Most decoded frames that wait for the device: 0.7 s at 44.1 kHz.
constexpr std::size_t FEED_CAPACITY = 32768;
/// Interval at which a full feed is topped up and the device checked.
constexpr auto PLAYING_RHYTHM = 250ms;
/// The same interval while the feed is low.
constexpr auto HURRY = 4ms;
constexpr std::uint64_t FEED_LOW = FEED_CAPACITY / 4;
/// How long an idle device stays open for the next command.
constexpr auto DEVICE_LINGER = 1500ms;
/// Time for the user-interface thread to answer the end of a track with play.
constexpr auto END_REACTION = 25ms;
/// Shortest time from a restart to the next end. A track of no samples would otherwise repeat as
/// fast as the processor can.
constexpr auto SHORTEST_REPEAT = 50ms;
/// How long end waits for the thread. Closing a device takes a tenth of a second.
constexpr auto END_PATIENCE = 500ms;
/// Bytes of a file that are measured before the thread looks for commands and fills the feed.
constexpr std::uint64_t STUDY_SLICE = std::uint64_t{1} << 20U;

std::int64_t frameAt(double seconds, int sampleRate) {
    constexpr double most = 1e15; // any larger number might not fit the type
    return static_cast<std::int64_t>(std::llround(std::min(seconds * sampleRate, most)));
}

} // namespace

DecoderThread::DecoderThread(Events events)
    : events_(std::move(events)), feed_(FEED_CAPACITY), output_(feed_) {}

std::shared_ptr<DecoderThread> DecoderThread::create(Events events) {
    std::shared_ptr<DecoderThread> created(new DecoderThread(std::move(events)));
    created->thread_ = std::thread([created] { created->work(); });
    return created;
}

void DecoderThread::end() {
    {
        const std::lock_guard lock(eventMutex_);
        events_ = {};
    }
    send({.kind = Command::Kind::quit});
    std::unique_lock lock(commandMutex_);
    const bool finished = finishedCame_.wait_for(lock, END_PATIENCE, [this] { return finished_; });
    lock.unlock();
    if (finished) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

void DecoderThread::load(std::shared_ptr<LoadedFile> file) {
    send({.kind = Command::Kind::load, .file = std::move(file)});
}

void DecoderThread::start(std::uint64_t run, std::uint64_t stream, double seconds) {
    assert(run != 0 && stream != 0 && seconds >= 0);
    send({.kind = Command::Kind::start, .run = run, .stream = stream, .seconds = seconds});
}

void DecoderThread::restart(std::uint64_t run) {
    send({.kind = Command::Kind::restart, .run = run});
}

void DecoderThread::pause() {
    send({.kind = Command::Kind::pause});
}

void DecoderThread::resume() {
    send({.kind = Command::Kind::resume});
}

void DecoderThread::stop() {
    send({.kind = Command::Kind::stop});
}

void DecoderThread::send(Command command) {
    const std::lock_guard lock(commandMutex_);
    commands_.push_back(std::move(command));
    commandsWait_.store(true);
    commandCame_.notify_one();
}

std::optional<double> DecoderThread::position(std::uint64_t run) const {
    Segment segment;
    {
        const std::lock_guard lock(segmentMutex_);
        segment = segment_;
    }
    if (segment.run != run) {
        return std::nullopt;
    }
    // The frames that the device took last are heard after those that it held before.
    const SampleFeed::Taken taken = feed_.taken();
    const double elapsed = std::chrono::duration<double>(Clock::now() - taken.when).count();
    const double sinceTaken =
        elapsed * segment.sampleRate - static_cast<double>(taken.count) - latencyFrames_.load();
    const double takenOfRun =
        static_cast<double>(taken.end) - static_cast<double>(segment.feedFrame);
    const double heard = std::max(0.0, takenOfRun + std::min(0.0, sinceTaken));
    return (static_cast<double>(segment.trackFrame) + heard) / segment.sampleRate;
}

void DecoderThread::work() {
    std::vector<Command> commands;
    for (;;) {
        {
            std::unique_lock lock(commandMutex_);
            const auto came = [this] { return !commands_.empty(); };
            if (const auto wake = nextWake()) {
                commandCame_.wait_until(lock, *wake, came);
            } else {
                commandCame_.wait(lock, came);
            }
            commands.swap(commands_);
            commandsWait_.store(false);
        }
        for (Command& command : commands) {
            if (command.kind == Command::Kind::quit) {
                dropOutput();
                const std::lock_guard lock(commandMutex_);
                finished_ = true;
                finishedCame_.notify_one();
                return;
            }
            obey(command);
        }
        commands.clear();
        play();
        studyFile();
        restIfIdle();
    }
}

std::optional<DecoderThread::Clock::time_point> DecoderThread::nextWake() const {
    if (!studied_) {
        return Clock::now();
    }
    if (playing_) {
        if (!decodedAll_) {
            return Clock::now() + (waiting() < FEED_LOW ? HURRY : PLAYING_RHYTHM);
        }
        const double left = static_cast<double>(waiting()) - static_cast<double>(endLead());
        const std::chrono::duration<double> time(std::max(0.0, left) / sampleRate_);
        return std::max(endNotBefore_,
                        Clock::now() + std::clamp<Clock::duration>(
                                           std::chrono::duration_cast<Clock::duration>(time), HURRY,
                                           PLAYING_RHYTHM));
    }
    if (output_.isOpen()) {
        return idleSince_ + DEVICE_LINGER;
    }
    return std::nullopt;
}

void DecoderThread::obey(Command& command) {
    if (!playing_ && output_.lost()) {
        dropOutput(); // nothing was playing, so this is no failure; play opens a new device
    }
    switch (command.kind) {
    case Command::Kind::load:
        playing_ = false;
        decoder_.reset();
        file_ = std::move(command.file);
        tags_.reset();
        studied_ = !file_ || file_->measure() == nullptr;
        break;
    case Command::Kind::start:
    case Command::Kind::restart:
        begin(command);
        break;
    case Command::Kind::pause:
    case Command::Kind::stop:
        playing_ = false;
        break;
    case Command::Kind::resume:
        playing_ = decoder_ != nullptr;
        break;
    case Command::Kind::quit:
        break;
    }
    idleSince_ = Clock::now();
}

void DecoderThread::begin(const Command& command) {
    run_ = command.run;
    if (!decoder_ && file_ && file_->measure() != nullptr) {
        decoder_ =
            std::make_unique<Mp3Decoder>(file_->reader(), *file_->kind().stream, *file_->measure());
    }
    const std::int64_t frame = decoder_ ? frameAt(command.seconds, decoder_->sampleRate()) : 0;
    if (!decoder_) {
        fail(file_ ? file_->failure() : Failure{Failure::Cause::notOpened, {}});
        return;
    }
    if (const auto failure = decoder_->seek(frame)) {
        fail(*failure);
        return;
    }
    if (decoder_->sampleRate() != sampleRate_ || decoder_->channels() != channels_) {
        output_.close();
        sampleRate_ = decoder_->sampleRate();
        channels_ = decoder_->channels();
        feed_.setFormat(channels_, sampleRate_);
    }
    if (command.kind == Command::Kind::start) {
        feed_.beginStream(command.stream);
        streamStart_ = feed_.writeIndex();
        if (!output_.isOpen()) {
            feed_.dropOld();
        }
    }
    {
        const std::lock_guard lock(segmentMutex_);
        segment_ = {run_, feed_.writeIndex(), frame, sampleRate_};
    }
    endNotBefore_ =
        Clock::now() +
        (command.kind == Command::Kind::restart ? Clock::duration(SHORTEST_REPEAT) : 0ms);
    decodedAll_ = false;
    failure_.reset();
    playing_ = true;
}

void DecoderThread::studyFile() {
    if (studied_ || commandsWait_.load()) {
        return;
    }
    FileMeasure& measure = *file_->measure();
    if (!tags_) {
        tags_ = readTags(file_->reader());
    } else if (!measure.done()) {
        measure.walk(STUDY_SLICE);
    }
    if (measure.done()) {
        studied_ = true;
        file_->setFacts({true, measure.measurement(), *tags_});
    }
}

void DecoderThread::play() {
    if (!playing_) {
        return;
    }
    idleSince_ = Clock::now();
    if (output_.lost()) {
        fail({Failure::Cause::deviceLost, {}});
        return;
    }
    fillFeed();
    if (!output_.isOpen() && waiting() != 0) {
        if (const auto failure = output_.open(sampleRate_, channels_)) {
            fail(*failure);
            return;
        }
        latencyFrames_.store(output_.heldFrames());
        fillFeed(); // enough to last until the next wake-up
    }
    // The end is reported while the device still has some tens of milliseconds to play, so that a
    // track that is repeated follows without a gap.
    if (decodedAll_ && waiting() <= endLead() && Clock::now() >= endNotBefore_) {
        if (failure_) {
            fail(*failure_);
        } else {
            playing_ = false;
            reportEnd();
        }
    }
}

/// Frames that the device hasn't taken yet when the end of the track is reported.
std::uint64_t DecoderThread::endLead() const {
    const auto reaction = std::chrono::duration<double>(END_REACTION).count() * sampleRate_;
    return static_cast<std::uint64_t>(output_.periodFrames()) +
           static_cast<std::uint64_t>(reaction);
}

/// Frames of the current stream that the device hasn't taken yet.
std::uint64_t DecoderThread::waiting() const {
    return feed_.writeIndex() - std::max(feed_.readIndex(), streamStart_);
}

void DecoderThread::fillFeed() {
    constexpr std::size_t mostFrames = 1152; // in one block of the decoder
    // Opening the device shouldn't wait for a full feed.
    const std::uint64_t enough = output_.isOpen() ? FEED_CAPACITY : FEED_LOW;
    while (!decodedAll_ && feed_.space() >= mostFrames && waiting() < enough &&
           !commandsWait_.load()) {
        const Mp3Decoder::Block block = decoder_->read();
        if (block.result == Mp3Decoder::Result::samples) {
            feed_.write(block.samples);
        } else {
            decodedAll_ = true;
            if (block.result == Mp3Decoder::Result::failed) {
                failure_ = decoder_->failure();
            }
        }
    }
}

void DecoderThread::fail(const Failure& failure) {
    playing_ = false;
    const std::lock_guard lock(eventMutex_);
    if (events_.failed) {
        events_.failed(run_, failure);
    }
}

void DecoderThread::reportEnd() {
    const std::lock_guard lock(eventMutex_);
    if (events_.ended) {
        events_.ended(run_);
    }
}

void DecoderThread::dropOutput() {
    output_.close();
    output_.reset();
}

void DecoderThread::restIfIdle() {
    if (playing_ || !output_.isOpen()) {
        return;
    }
    if (output_.lost() || Clock::now() - idleSince_ >= DEVICE_LINGER) {
        dropOutput();
    }
}

} // namespace zvonivec
