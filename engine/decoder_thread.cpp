#include "engine/decoder_thread.h"

#include "engine/threads.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Frames that have not been heard yet, in the device and before it: 4.2 s at 48 kHz.
constexpr std::size_t FEED_CAPACITY = 200000;
/// Time of decoded frames that wait for the device: what a device asks for at once, and what a
/// disk that stalls may take.
constexpr auto AHEAD = 1000ms;
/// How long decoding goes on before a device that waits is given what there is. A server that is
/// given a little at a time runs dry in between, because it mixes ahead of what is heard.
constexpr auto FIRST_PATIENCE = 10ms;
/// How long after a start a device that isn't full holds up the measuring of the file.
constexpr auto LONGEST_FILLING = 500ms;
/// Shortest sleep while a device that doesn't ask is supplied, or the end comes near.
constexpr auto HURRY = 4ms;
/// How long an idle device stays open for the next command.
constexpr auto DEVICE_LINGER = 1500ms;
/// How long before the last frame is heard the end is reported: time for the user-interface thread
/// to answer with play, and for an output to take the frames that follow.
constexpr auto END_LEAD = 100ms;
/// Shortest time from a restart to the next end. A track of no samples would otherwise repeat as
/// fast as the processor can.
constexpr auto SHORTEST_REPEAT = 50ms;
/// How long a file is measured before the thread looks for commands and fills the feed, unless a
/// single read takes longer; and how many bytes before it looks at the clock.
constexpr auto STUDY_TIME = 5ms;
constexpr std::uint64_t STUDY_SLICE = 4096;

std::int64_t frameAt(double seconds, int sampleRate) {
    constexpr double most = 1e15; // any larger number might not fit the type
    return static_cast<std::int64_t>(std::llround(std::min(seconds * sampleRate, most)));
}

} // namespace

std::shared_ptr<DecoderThread> DecoderThread::create(Events events) {
    std::shared_ptr<DecoderThread> created(new DecoderThread(std::move(events)));
    created->output_ =
        OutputThread::create(FEED_CAPACITY, [weak = std::weak_ptr<DecoderThread>(created)] {
            if (const auto thread = weak.lock()) {
                thread->lookAtOutput();
            }
        });
    return created;
}

/// Makes the thread unless it is there.
std::optional<Failure> DecoderThread::makeThread() {
    return thread_.joinable() ? std::nullopt
                              : startThread(thread_, [self = shared_from_this()] { self->work(); });
}

void DecoderThread::end(std::chrono::milliseconds patience) {
    const auto deadline = Clock::now() + patience;
    {
        const std::lock_guard lock(eventMutex_);
        events_ = {};
    }
    send({.kind = Command::Kind::quit});
    output_->quit();
    if (thread_.joinable()) {
        std::unique_lock lock(commandMutex_);
        const bool finished =
            finishedCame_.wait_until(lock, deadline, [this] { return finished_; });
        lock.unlock();
        if (finished) {
            thread_.join();
        } else {
            thread_.detach();
        }
    }
    output_->end(deadline);
}

bool DecoderThread::load(std::shared_ptr<LoadedFile> file, std::string name) {
    const bool works = thread_.joinable() || (file && !makeThread());
    if (!works) {
        const std::lock_guard lock(commandMutex_);
        commands_.clear(); // nobody carries them out, and this one outdates them
    }
    send({.kind = Command::Kind::load, .file = std::move(file), .name = std::move(name)});
    return works;
}

void DecoderThread::sendToPlay(Command command) {
    if (const auto failure = makeThread()) {
        reportFailure(command.run, *failure);
    } else {
        send(std::move(command));
    }
}

void DecoderThread::start(std::uint64_t run, std::uint64_t stream, double seconds) {
    assert(run != 0 && stream != 0 && seconds >= 0);
    sendToPlay({.kind = Command::Kind::start, .run = run, .stream = stream, .seconds = seconds});
}

void DecoderThread::restart(std::uint64_t run) {
    sendToPlay({.kind = Command::Kind::restart, .run = run});
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

/// Called on the output's thread, and on the decoder thread in OutputThread::open.
void DecoderThread::lookAtOutput() {
    const std::lock_guard lock(commandMutex_);
    outputChanged_ = true;
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
    const std::uint64_t frame = output_->feed().heardFrame(Clock::now());
    const double heard =
        frame > segment.feedFrame ? static_cast<double>(frame - segment.feedFrame) : 0.0;
    return (static_cast<double>(segment.trackFrame) + heard) / segment.sampleRate;
}

void DecoderThread::work() {
    std::vector<Command> commands;
    for (;;) {
        {
            std::unique_lock lock(commandMutex_);
            const auto came = [this] { return !commands_.empty() || outputChanged_; };
            if (const auto wake = nextWake()) {
                commandCame_.wait_until(lock, *wake, came);
            } else {
                commandCame_.wait(lock, came);
            }
            commands.swap(commands_);
            commandsWait_.store(false);
            outputChanged_ = false;
        }
        for (Command& command : commands) {
            if (command.kind == Command::Kind::quit) {
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

/// When to look again if nobody wakes the thread. Nothing: not before.
std::optional<DecoderThread::Clock::time_point> DecoderThread::nextWake() const {
    if (!studied_) {
        return Clock::now() + (deviceComesFirst() ? HURRY : 0ms);
    }
    const OutputThread::State state = output_->state();
    if (!playing_) {
        return state == OutputThread::State::open ? std::optional(idleSince_ + DEVICE_LINGER)
                                                  : std::nullopt;
    }
    if (!sought_) {
        return Clock::now();
    }
    if (!inFeed_ || (state != OutputThread::State::open && !decodedAll_)) {
        return std::nullopt;
    }
    std::uint64_t spare = 0;
    auto earliest = Clock::now() + HURRY;
    if (decodedAll_) {
        spare = framesToHear() - std::min(framesToHear(), framesIn(END_LEAD));
        earliest = std::max(earliest, endNotBefore_);
    } else if (output_->callsForMore()) {
        return std::nullopt;
    } else {
        spare = waiting() - std::min(waiting(), framesIn(AHEAD / 2));
    }
    const std::chrono::duration<double> time(static_cast<double>(spare) / format_.sampleRate);
    return std::max(earliest, Clock::now() + std::chrono::duration_cast<Clock::duration>(time));
}

void DecoderThread::obey(Command& command) {
    if (const auto state = output_->state();
        !playing_ && (state == OutputThread::State::lost || state == OutputThread::State::failed)) {
        output_->close(); // a loss while nothing played is no failure; play opens a new device
    }
    switch (command.kind) {
    case Command::Kind::load:
        playing_ = false;
        begun_ = false;
        decoder_.reset();
        file_ = std::move(command.file);
        output_->setTitle(command.name);
        tags_.reset();
        if (file_) {
            file_->read();
            reportLearnt();
        }
        studied_ = !file_ || file_->measure() == nullptr;
        break;
    case Command::Kind::start:
    case Command::Kind::restart:
        beginRun(command);
        break;
    case Command::Kind::pause:
    case Command::Kind::stop:
        playing_ = false;
        break;
    case Command::Kind::resume:
        playing_ = begun_;
        break;
    case Command::Kind::quit:
        break;
    }
    idleSince_ = Clock::now();
}

void DecoderThread::beginRun(const Command& command) {
    run_ = command.run;
    if (!file_ || file_->measure() == nullptr) {
        fail(file_ ? file_->failure() : Failure{Failure::Cause::notOpened, {}});
        return;
    }
    began_ = command;
    begun_ = true;
    sought_ = false;
    inFeed_ = false;
    endNotBefore_ =
        Clock::now() +
        (command.kind == Command::Kind::restart ? Clock::duration(SHORTEST_REPEAT) : 0ms);
    fillBefore_ = Clock::now() + LONGEST_FILLING;
    decodedAll_ = false;
    failure_.reset();
    playing_ = true;
}

/// Moves the decoder to where it is to begin. Returns False when the way there takes longer than a
/// slice of time, or a command has come: then the rest of the way is gone later.
bool DecoderThread::seek() {
    const auto end = Clock::now() + STUDY_TIME;
    const auto stop = [&] { return commandsWait_.load() || Clock::now() >= end; };
    if (!decoder_) {
        FileMeasure& measure = *file_->measure();
        if (!Mp3Decoder::findChannels(measure, stop)) {
            return false;
        }
        decoder_ = std::make_unique<Mp3Decoder>(file_->reader(), *file_->kind().stream, measure);
    }
    firstFrame_ = frameAt(began_.seconds, decoder_->sampleRate());
    if (!decoder_->approach(firstFrame_, stop)) {
        return false;
    }
    if (const auto failure = decoder_->seek(firstFrame_)) {
        fail(*failure);
        return false;
    }
    return true;
}

/// Makes the feed ready for what was begun. Returns False while a device of another format is being
/// closed.
bool DecoderThread::beginInFeed() {
    SampleFeed& feed = output_->feed();
    const AudioFormat format{decoder_->sampleRate(), decoder_->channels()};
    if (format != format_) {
        output_->close();
        if (output_->state() != OutputThread::State::closed) {
            return false;
        }
        format_ = format;
        feed.setFormat(format.channels, format.sampleRate);
    }
    if (began_.kind == Command::Kind::start) {
        feed.beginStream(began_.stream);
        streamStart_ = feed.writeIndex();
    }
    feed.setComplete(false);
    const std::lock_guard lock(segmentMutex_);
    segment_ = {run_, feed.writeIndex(), firstFrame_, format_.sampleRate};
    return true;
}

/// Whether a device that is new or hungry is to be filled before the file is measured: a single
/// read of a slow disk may take longer than what the device has.
bool DecoderThread::deviceComesFirst() const {
    return playing_ && !decodedAll_ && Clock::now() < fillBefore_ &&
           (output_->state() != OutputThread::State::open || output_->feed().isStarving());
}

void DecoderThread::studyFile() {
    if (studied_ || commandsWait_.load() || deviceComesFirst()) {
        return;
    }
    FileMeasure& measure = *file_->measure();
    const bool tagsAreNew = !tags_;
    if (tagsAreNew) {
        tags_ = readTags(file_->reader());
        if (!tags_->title.empty()) {
            output_->setTitle(tags_->title);
        }
    } else {
        const auto end = Clock::now() + STUDY_TIME;
        while (!measure.done() && !commandsWait_.load() && Clock::now() < end) {
            measure.walk(STUDY_SLICE);
        }
    }
    studied_ = measure.done();
    if (tagsAreNew || studied_) {
        file_->setFacts({studied_, measure.measurement(), *tags_});
        reportLearnt();
    }
}

void DecoderThread::play() {
    if (!playing_) {
        return;
    }
    idleSince_ = Clock::now();
    const auto state = output_->state();
    if (state == OutputThread::State::lost || state == OutputThread::State::failed) {
        const bool lost = state == OutputThread::State::lost;
        fail(lost ? Failure{Failure::Cause::deviceLost, {}} : output_->failure());
        output_->close();
        return;
    }
    sought_ = sought_ || seek();
    if (!sought_) {
        return;
    }
    inFeed_ = inFeed_ || beginInFeed();
    if (!inFeed_) {
        return;
    }
    fillFeed();
    // The device still has some time to play when the end is reported, so that a repeated track
    // can follow without a gap.
    if (decodedAll_ && framesToHear() <= framesIn(END_LEAD) && Clock::now() >= endNotBefore_) {
        if (failure_) {
            fail(*failure_);
        } else {
            playing_ = false;
            reportEnd();
        }
    }
}

/// Frames of the current stream that the device hasn't taken yet.
std::uint64_t DecoderThread::waiting() const {
    const SampleFeed& feed = output_->feed();
    return feed.writeIndex() - std::max(feed.readIndex(), streamStart_);
}

/// Frames of the current stream that haven't been heard yet.
std::uint64_t DecoderThread::framesToHear() const {
    const SampleFeed& feed = output_->feed();
    const std::uint64_t heard = std::max(feed.heardFrame(Clock::now()), streamStart_);
    return feed.writeIndex() - std::min(feed.writeIndex(), heard);
}

std::uint64_t DecoderThread::framesIn(std::chrono::milliseconds time) const {
    return static_cast<std::uint64_t>(time.count()) *
           static_cast<std::uint64_t>(format_.sampleRate) / 1000;
}

/// Decodes ahead. A device that is closed is opened as soon as there is something to play.
void DecoderThread::fillFeed() {
    constexpr std::size_t mostFrames = 1152; // of one block of the decoder
    SampleFeed& feed = output_->feed();
    bool closed = output_->state() == OutputThread::State::closed;
    if (closed) {
        feed.dropOld();
    }
    const auto openWithFirstFrames = [&] {
        if (closed && waiting() != 0) {
            output_->open(format_);
            closed = false;
        }
    };
    openWithFirstFrames();
    auto supplied = Clock::now();
    while (!decodedAll_ && feed.space() >= mostFrames && waiting() < framesIn(AHEAD) &&
           !commandsWait_.load()) {
        const Mp3Decoder::Block block = decoder_->read();
        if (block.result == Mp3Decoder::Result::samples) {
            feed.write(block.samples);
        } else {
            decodedAll_ = true;
            feed.setComplete(true);
            if (block.result == Mp3Decoder::Result::failed) {
                failure_ = decoder_->failure();
            }
        }
        openWithFirstFrames();
        if (feed.isStarving() && Clock::now() - supplied >= FIRST_PATIENCE) {
            output_->supply();
            supplied = Clock::now();
        }
    }
    if (feed.isStarving() && waiting() != 0) {
        output_->supply();
    }
}

void DecoderThread::fail(const Failure& failure) {
    playing_ = false;
    begun_ = false;
    reportFailure(run_, failure);
}

void DecoderThread::reportFailure(std::uint64_t run, const Failure& failure) {
    const std::lock_guard lock(eventMutex_);
    if (events_.failed) {
        events_.failed(run, failure);
    }
}

void DecoderThread::reportLearnt() {
    const std::lock_guard lock(eventMutex_);
    if (events_.learnt) {
        events_.learnt(file_);
    }
}

void DecoderThread::reportEnd() {
    const std::lock_guard lock(eventMutex_);
    if (events_.ended) {
        events_.ended(run_);
    }
}

void DecoderThread::restIfIdle() {
    if (!playing_ && output_->state() == OutputThread::State::open &&
        Clock::now() - idleSince_ >= DEVICE_LINGER) {
        output_->close();
    }
}

} // namespace zvonivec
