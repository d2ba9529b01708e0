#include "engine/decoding/mp3_decoder.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <mpg123.h>
#include <utility>

namespace zvonivec {

namespace {

/// Frames that are decoded and thrown away before a wanted frame. They fill the bit reservoir (at
/// most 511 bytes of earlier frames) and the memory of the filters.
constexpr std::int64_t LEAD_FRAMES = 2 * FileMeasure::INDEX_STEP;

/// Frames by which measuring is ahead of decoding. Padding, of 4095 samples at most, must be known
/// before it is decoded.
constexpr std::int64_t KNOWN_AHEAD = 16;

/// Bytes that are searched for a stereo frame before a mono file is decoded, and how many of them
/// before the search asks whether it is to stop.
constexpr std::uint64_t MOST_WALKED = std::uint64_t{16} << 20U;
constexpr std::uint64_t SLICE = 4096;

/// For walks that nothing interrupts.
bool never() {
    return false;
}

/// Most samples of a block, per channel.
constexpr std::int64_t LONGEST_BLOCK = 1152;

mpg123_handle* newHandle() {
    // Needed by libmpg123 before 1.27, deprecated since.
    static const bool ready = mpg123_init() == MPG123_OK;
    return ready ? mpg123_new(nullptr, nullptr) : nullptr;
}

} // namespace

bool Mp3Decoder::findChannels(FileMeasure& measure, const std::function<bool()>& stop) {
    measure.walkToFrame(1);
    while (measure.channels() == 1 && !measure.done() && measure.walked() < MOST_WALKED) {
        if (stop()) {
            return false;
        }
        measure.walk(SLICE);
    }
    return true;
}

Mp3Decoder::Mp3Decoder(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream,
                       FileMeasure& measure)
    : stream_(stream), measure_(measure), scanner_(file, stream, std::size_t{64} * 1024) {
    findChannels(measure_, never);
    channels_ = measure_.channels();
}

Mp3Decoder::~Mp3Decoder() {
    mpg123_delete(handle_);
}

/// Number of a sample of the track among all decoded ones.
std::int64_t Mp3Decoder::decodedSample(std::int64_t sample) const {
    return std::max<std::int64_t>(0, sample) + measure_.skippedSamples();
}

bool Mp3Decoder::approach(std::int64_t sample, const std::function<bool()>& stop) {
    return measure_.walkToSample(decodedSample(sample), KNOWN_AHEAD, stop);
}

std::optional<Failure> Mp3Decoder::seek(std::int64_t sample) {
    approach(sample, never);
    silentFrames_ = 0;
    target_ = decodedSample(sample);
    const std::int64_t wanted = measure_.frameOfSample(target_);
    const std::int64_t lead = std::max<std::int64_t>(0, wanted - LEAD_FRAMES);
    nextFrame_ = lead - lead % FileMeasure::INDEX_STEP;
    nextOffset_ = measure_.frames() > 0 ? measure_.frameOffset(nextFrame_).value_or(stream_.end)
                                        : stream_.end;
    return enterPart();
}

std::string Mp3Decoder::lastError() const {
    return handle_ != nullptr ? mpg123_strerror(handle_) : "out of memory";
}

/// Sets libmpg123 and the resampler up for the part of the next frame.
std::optional<Failure> Mp3Decoder::enterPart() {
    part_ = measure_.part(nextFrame_);
    const FrameHeader& format = part_.format;
    const std::int64_t partFrame = nextFrame_ - part_.firstFrame;
    resampler_.reset();
    if (format.sampleRate != sampleRate()) {
        resampler_.emplace(format.sampleRate, sampleRate(), channels(), partFrame * format.samples);
    }
    decoded_ = {};
    silence_.assign(static_cast<std::size_t>(format.samples) * static_cast<std::size_t>(channels()),
                    0);

    mpg123_delete(handle_);
    handle_ = newHandle();
    if (handle_ == nullptr) {
        return Failure{Failure::Cause::decoderSetUp, lastError()};
    }
    constexpr long flags = MPG123_QUIET | MPG123_IGNORE_INFOFRAME | MPG123_NO_READAHEAD;
    const int channelMode = channels() == 1 ? MPG123_MONO : MPG123_STEREO;
    // Delay and padding are cut off by this class, not by libmpg123.
    bool good = mpg123_param(handle_, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0) == MPG123_OK;
    good = good && mpg123_param(handle_, MPG123_ADD_FLAGS, flags, 0) == MPG123_OK;
    if (format.freeFormat()) {
        const long size = static_cast<long>(stream_.freeFormatSize) - 4; // without the header
        good = good && mpg123_param(handle_, MPG123_FREEFORMAT_SIZE, size, 0) == MPG123_OK;
    }
    good = good && mpg123_format_none(handle_) == MPG123_OK;
    good = good && mpg123_format(handle_, format.sampleRate, channelMode, MPG123_ENC_SIGNED_16) ==
                       MPG123_OK;
    if (!good || mpg123_open_feed(handle_) != MPG123_OK) {
        return Failure{Failure::Cause::decoderSetUp, lastError()};
    }
    return std::nullopt;
}

/// Keeps the cause for failure(); returns False.
bool Mp3Decoder::fail(Failure::Cause cause) {
    failure_ = {cause, {}};
    return false;
}

Mp3Decoder::Block Mp3Decoder::read() {
    assert(handle_ != nullptr); // seek has been called
    for (;;) {
        measure_.walkToFrame(nextFrame_ + KNOWN_AHEAD);
        const std::int64_t end = measure_.skippedSamples() + measure_.samples();
        if (const auto samples = takeDecoded(measure_.done() ? end : target_ + LONGEST_BLOCK);
            !samples.empty()) {
            return {Result::samples, samples};
        }
        if (measure_.done() && target_ >= end) {
            if (!measure_.failed()) {
                return {Result::end, {}};
            }
            fail(Failure::Cause::unreadable);
            return {Result::failed, {}};
        }
        if (!decodeNext()) {
            return {Result::failed, {}};
        }
    }
}

/// Returns decoded samples that the caller wants, at most one block, up to the end of the track.
std::span<const std::int16_t> Mp3Decoder::takeDecoded(std::int64_t end) {
    const auto size = static_cast<std::int64_t>(decoded_.size()) / channels();
    const std::int64_t begin = std::clamp(target_ - firstDecoded_, std::int64_t{0}, size);
    const std::int64_t stop =
        std::clamp(std::min(end - firstDecoded_, begin + LONGEST_BLOCK), begin, size);
    const auto at = [this](std::int64_t sample) {
        return static_cast<std::size_t>(sample * channels());
    };
    const auto samples = decoded_.subspan(at(begin), at(stop - begin));
    decoded_ = decoded_.subspan(at(stop));
    firstDecoded_ += stop;
    if (!samples.empty()) {
        target_ = firstDecoded_;
    }
    return samples;
}

/// Decodes the next frame, or the remaining samples that the resampler holds of the part before it.
/// False when it can't; failure_ says why.
bool Mp3Decoder::decodeNext() {
    const bool over = measure_.done() && nextFrame_ >= measure_.frames();
    const bool changes = measure_.part(nextFrame_).firstFrame != part_.firstFrame;
    if (over || changes) {
        const std::int64_t end = measure_.firstSample(nextFrame_) - part_.firstSample;
        if (resampler_ && resampler_->nextOutput() < end) {
            firstDecoded_ = part_.firstSample + resampler_->nextOutput();
            decoded_ = resampler_->finish(end);
            return true;
        }
        if (!changes) {
            return fail(Failure::Cause::truncated);
        }
        if (auto failure = enterPart()) {
            failure_ = std::move(*failure);
            return false;
        }
        return true;
    }
    if (!loadFrame()) {
        return false;
    }
    decoded_ = decodeFrame();
    firstDecoded_ = measure_.firstSample(nextFrame_);
    if (resampler_) {
        firstDecoded_ = part_.firstSample + resampler_->nextOutput();
        decoded_ = resampler_->convert(decoded_);
    }
    ++nextFrame_;
    return true;
}

bool Mp3Decoder::loadFrame() {
    for (;;) {
        const FrameScanner::Step step = scanner_.step(nextOffset_, part_.format);
        nextOffset_ = step.next;
        if (step.result == FrameScanner::Result::frame) {
            frame_ = scanner_.bytes(step.offset, step.size);
            return frame_.size() == step.size ||
                   fail(scanner_.failed() ? Failure::Cause::unreadable : Failure::Cause::truncated);
        }
        if (step.result == FrameScanner::Result::failed) {
            return fail(Failure::Cause::unreadable);
        }
        if (step.result == FrameScanner::Result::end) {
            return fail(Failure::Cause::truncated);
        }
    }
}

std::span<const std::int16_t> Mp3Decoder::decodeFrame() {
    if (mpg123_feed(handle_, frame_.data(), frame_.size()) == MPG123_OK) {
        for (;;) {
            off_t number = 0;
            unsigned char* audio = nullptr;
            std::size_t bytes = 0;
            const int result = mpg123_decode_frame(handle_, &number, &audio, &bytes);
            if (result == MPG123_NEW_FORMAT) {
                continue; // reports the format that was set
            }
            if (result == MPG123_OK && audio != nullptr &&
                bytes == silence_.size() * sizeof(std::int16_t)) {
                // libmpg123 aligns its output buffer for every sample type.
                return {reinterpret_cast<const std::int16_t*>(audio), silence_.size()};
            }
            break;
        }
    }
    ++silentFrames_;
    return silence_;
}

} // namespace zvonivec
