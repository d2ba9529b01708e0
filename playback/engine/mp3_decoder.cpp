#include "playback/engine/mp3_decoder.h"

#include <algorithm>
#include <cstddef>
#include <mpg123.h>

namespace zvonivec {

namespace {

/// Frames decoded in front of a wanted one: enough for the bit reservoir (at most 511 bytes of the
/// frames before) and for what the filters remember. A multiple of FileMeasure::indexStep.
constexpr std::int64_t leadFrames = 2 * FileMeasure::indexStep;

/// How far measuring is ahead of decoding. Padding, of 4095 samples at most, must be known to be
/// padding before it is decoded.
constexpr std::int64_t knownAhead = 16;

mpg123_handle* newHandle() {
    // Deprecated since 1.27 and needed before.
    static const bool ready = mpg123_init() == MPG123_OK;
    return ready ? mpg123_new(nullptr, nullptr) : nullptr;
}

} // namespace

Mp3Decoder::Mp3Decoder(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream,
                       FileMeasure& measure)
    : stream_(stream), measure_(measure), scanner_(file, stream, std::size_t{64} * 1024),
      silence_(static_cast<std::size_t>(stream.first.samples * stream.first.channels)) {}

Mp3Decoder::~Mp3Decoder() {
    mpg123_delete(handle_);
}

bool Mp3Decoder::seek(std::int64_t sample) {
    mpg123_delete(handle_);
    handle_ = newHandle();
    if (handle_ == nullptr) {
        return false;
    }
    constexpr long flags = MPG123_QUIET | MPG123_IGNORE_INFOFRAME | MPG123_NO_READAHEAD;
    const int channels = this->channels() == 1 ? MPG123_MONO : MPG123_STEREO;
    // The description of the stream, delay and padding included, is dealt with here, not there.
    bool good = mpg123_param(handle_, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0) == MPG123_OK;
    good = good && mpg123_param(handle_, MPG123_ADD_FLAGS, flags, 0) == MPG123_OK;
    if (stream_.freeFormatSize != 0) {
        const long size = static_cast<long>(stream_.freeFormatSize) - 4; // without the header
        good = good && mpg123_param(handle_, MPG123_FREEFORMAT_SIZE, size, 0) == MPG123_OK;
    }
    good = good && mpg123_format_none(handle_) == MPG123_OK;
    good =
        good && mpg123_format(handle_, sampleRate(), channels, MPG123_ENC_SIGNED_16) == MPG123_OK;
    good = good && mpg123_open_feed(handle_) == MPG123_OK;
    if (!good) {
        return false;
    }

    target_ = std::max<std::int64_t>(0, sample) + measure_.skippedSamples();
    const std::int64_t wanted = target_ / stream_.first.samples;
    measure_.walkToFrame(wanted + knownAhead);
    const std::int64_t last = std::max<std::int64_t>(0, measure_.frames() - 1);
    const std::int64_t lead = std::max<std::int64_t>(0, std::min(wanted, last) - leadFrames);
    nextFrame_ = lead - lead % FileMeasure::indexStep;
    nextOffset_ = measure_.frames() > 0 ? measure_.frameOffset(nextFrame_) : stream_.end;
    return true;
}

Mp3Decoder::Block Mp3Decoder::read() {
    for (;;) {
        measure_.walkToFrame(nextFrame_ + knownAhead);
        const std::int64_t end = measure_.skippedSamples() + measure_.samples();
        if (measure_.done() && (target_ >= end || nextFrame_ >= measure_.frames())) {
            return {measure_.failed() ? Result::failed : Result::end, {}};
        }
        const Result loaded = loadFrame();
        if (loaded != Result::samples) {
            return {Result::failed, {}};
        }
        const std::int64_t first = nextFrame_ * stream_.first.samples;
        const std::span<const std::int16_t> samples = decodeFrame();
        ++nextFrame_;
        const std::int64_t begin = std::max(first, target_);
        std::int64_t behind = first + stream_.first.samples;
        if (measure_.done()) {
            behind = std::min(behind, end);
        }
        if (begin < behind) {
            target_ = behind;
            const auto at = [&](std::int64_t sample) {
                return static_cast<std::size_t>((sample - first) * channels());
            };
            return {Result::samples, samples.subspan(at(begin), at(behind) - at(begin))};
        }
    }
}

Mp3Decoder::Result Mp3Decoder::loadFrame() {
    for (;;) {
        const FrameScanner::Step step = scanner_.step(nextOffset_);
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
