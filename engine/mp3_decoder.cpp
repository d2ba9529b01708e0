#include "engine/mp3_decoder.h"

#include <algorithm>
#include <cstddef>
#include <mpg123.h>

namespace zvonivec {

namespace {

/// Frames decoded in front of a wanted one: enough for the bit reservoir (at most 511 bytes of the
/// frames before) and for what the filters remember. A multiple of FileMeasure::indexStep.
constexpr std::int64_t LEAD_FRAMES = 2 * FileMeasure::INDEX_STEP;

/// How far measuring is ahead of decoding. Padding, of 4095 samples at most, must be known to be
/// padding before it is decoded.
constexpr std::int64_t KNOWN_AHEAD = 16;

/// Samples that read gives at most.
constexpr std::int64_t LONGEST_BLOCK = 1152;

mpg123_handle* newHandle() {
    // Deprecated since 1.27 and needed before.
    static const bool ready = mpg123_init() == MPG123_OK;
    return ready ? mpg123_new(nullptr, nullptr) : nullptr;
}

} // namespace

Mp3Decoder::Mp3Decoder(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream,
                       FileMeasure& measure)
    : stream_(stream), measure_(measure), scanner_(file, stream, std::size_t{64} * 1024) {}

Mp3Decoder::~Mp3Decoder() {
    mpg123_delete(handle_);
}

bool Mp3Decoder::seek(std::int64_t sample) {
    target_ = std::max<std::int64_t>(0, sample) + measure_.skippedSamples();
    measure_.walkToSample(target_);
    const std::int64_t wanted = measure_.frameOfSample(target_);
    measure_.walkToFrame(wanted + KNOWN_AHEAD);
    const std::int64_t lead = std::max<std::int64_t>(0, wanted - LEAD_FRAMES);
    nextFrame_ = lead - lead % FileMeasure::INDEX_STEP;
    nextOffset_ = measure_.frames() > 0 ? measure_.frameOffset(nextFrame_).value_or(stream_.end)
                                        : stream_.end;
    return enterPart();
}

/// Makes everything ready for the part of the next frame.
bool Mp3Decoder::enterPart() {
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
        return false;
    }
    constexpr long flags = MPG123_QUIET | MPG123_IGNORE_INFOFRAME | MPG123_NO_READAHEAD;
    const int channelMode = channels() == 1 ? MPG123_MONO : MPG123_STEREO;
    // The description of the stream, delay and padding included, is dealt with here, not there.
    bool good = mpg123_param(handle_, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0) == MPG123_OK;
    good = good && mpg123_param(handle_, MPG123_ADD_FLAGS, flags, 0) == MPG123_OK;
    if (format.freeFormat()) {
        const long size = static_cast<long>(stream_.freeFormatSize) - 4; // without the header
        good = good && mpg123_param(handle_, MPG123_FREEFORMAT_SIZE, size, 0) == MPG123_OK;
    }
    good = good && mpg123_format_none(handle_) == MPG123_OK;
    good = good && mpg123_format(handle_, format.sampleRate, channelMode, MPG123_ENC_SIGNED_16) ==
                       MPG123_OK;
    return good && mpg123_open_feed(handle_) == MPG123_OK;
}

Mp3Decoder::Block Mp3Decoder::read() {
    for (;;) {
        measure_.walkToFrame(nextFrame_ + KNOWN_AHEAD);
        const std::int64_t end = measure_.skippedSamples() + measure_.samples();
        if (const auto samples = takeDecoded(measure_.done() ? end : target_ + LONGEST_BLOCK);
            !samples.empty()) {
            return {Result::samples, samples};
        }
        if (measure_.done() && target_ >= end) {
            return {measure_.failed() ? Result::failed : Result::end, {}};
        }
        if (!decodeNext()) {
            return {Result::failed, {}};
        }
    }
}

/// What is decoded, wanted, and before an end, at most a block of it.
std::span<const std::int16_t> Mp3Decoder::takeDecoded(std::int64_t end) {
    const auto size = static_cast<std::int64_t>(decoded_.size()) / channels();
    const std::int64_t begin = std::clamp(target_ - firstDecoded_, std::int64_t{0}, size);
    const std::int64_t behind =
        std::clamp(std::min(end - firstDecoded_, begin + LONGEST_BLOCK), begin, size);
    const auto at = [this](std::int64_t sample) {
        return static_cast<std::size_t>(sample * channels());
    };
    const auto samples = decoded_.subspan(at(begin), at(behind - begin));
    decoded_ = decoded_.subspan(at(behind));
    firstDecoded_ += behind;
    if (!samples.empty()) {
        target_ = firstDecoded_;
    }
    return samples;
}

/// Decodes the next frame, or lets out what is held back of the part before it.
bool Mp3Decoder::decodeNext() {
    const bool over = measure_.done() && nextFrame_ >= measure_.frames();
    const bool changes = measure_.part(nextFrame_).firstFrame != part_.firstFrame;
    if (over || changes) {
        const std::int64_t behind = measure_.firstSample(nextFrame_) - part_.firstSample;
        if (resampler_ && resampler_->nextOutput() < behind) {
            firstDecoded_ = part_.firstSample + resampler_->nextOutput();
            decoded_ = resampler_->finish(behind);
            return true;
        }
        return changes && enterPart();
    }
    if (loadFrame() != Result::samples) {
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

Mp3Decoder::Result Mp3Decoder::loadFrame() {
    for (;;) {
        const FrameScanner::Step step = scanner_.step(nextOffset_, part_.format);
        nextOffset_ = step.next;
        if (step.result == FrameScanner::Result::frame) {
            frame_ = scanner_.bytes(step.offset, step.size);
            return frame_.size() == step.size ? Result::samples : Result::failed;
        }
        if (step.result != FrameScanner::Result::searching) {
            return Result::failed;
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
                continue; // the one that was asked for
            }
            if (result == MPG123_OK && audio != nullptr &&
                bytes == silence_.size() * sizeof(std::int16_t)) {
                // libmpg123 aligns its output buffer for every sample type.
                return {reinterpret_cast<const std::int16_t*>(audio), silence_.size()};
            }
            break;
        }
    }
    return silence_;
}

} // namespace zvonivec
