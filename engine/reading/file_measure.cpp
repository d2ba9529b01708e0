#include "engine/reading/file_measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace zvonivec {

namespace {

/// Delay of every layer III decoder, in samples.
constexpr std::int64_t DECODER_DELAY = 529;

/// Bytes that are walked before the walk asks whether it is to stop: the smallest block that is
/// read at once.
constexpr std::uint64_t BYTES_PER_LOOK = 4096;

/// Most entries of the index. A full index drops every second entry.
constexpr std::size_t LONGEST_INDEX = 8192;

std::int64_t wholeKilobits(double bitsPerSecond) {
    return static_cast<std::int64_t>(std::llround(bitsPerSecond / 1000)) * 1000;
}

} // namespace

FileMeasure::FileMeasure(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream)
    : stream_(stream), scanner_(file, stream, std::size_t{256} * 1024),
      position_(stream.begin), parts_{{stream.first}} {
    const std::size_t size = stream.first.size(stream.freeFormatSize);
    info_ = parseInfoFrame(stream.first, scanner_.bytes(stream.begin, size));
    if (info_) {
        position_ += size;
        if (info_->delay) {
            skipped_ = *info_->delay + DECODER_DELAY;
        }
    }
}

void FileMeasure::walk(std::uint64_t bytes) {
    const std::uint64_t target = position_ + bytes;
    while (!done_ && position_ < target) {
        takeStep();
    }
}

void FileMeasure::walkToFrame(std::int64_t frames) {
    while (!done_ && frames_ < frames) {
        takeStep();
    }
}

bool FileMeasure::walkToSample(std::int64_t sample, std::int64_t framesAfter,
                               const std::function<bool()>& stop) {
    std::uint64_t look = position_ + BYTES_PER_LOOK;
    while (!done_ && (frames_ <= framesAfter || firstSample(frames_ - framesAfter) <= sample)) {
        if (position_ >= look) {
            if (stop()) {
                return false;
            }
            look = position_ + BYTES_PER_LOOK;
        }
        takeStep();
    }
    return true;
}

void FileMeasure::takeStep() {
    const FrameScanner::Step step = scanner_.step(position_, parts_.back().format);
    switch (step.result) {
    case FrameScanner::Result::frame:
        if (!step.header.agrees(parts_.back().format)) {
            parts_.push_back({step.header, frames_, firstSample(frames_)});
        }
        if (frames_ % framesPerEntry_ == 0) {
            addToIndex(step.offset);
        }
        ++frames_;
        channels_ = std::max(channels_, step.header.channels);
        frameBytes_ += step.size;
        commonBitRate_ =
            commonBitRate_ == -1 || commonBitRate_ == step.header.bitRate ? step.header.bitRate : 0;
        [[fallthrough]];
    case FrameScanner::Result::searching:
        position_ = step.next;
        break;
    case FrameScanner::Result::failed:
        failed_ = true;
        [[fallthrough]];
    case FrameScanner::Result::end:
        done_ = true;
        break;
    }
}

void FileMeasure::addToIndex(std::uint64_t offset) {
    if (index_.size() == LONGEST_INDEX) {
        for (std::size_t i = 0; i < LONGEST_INDEX / 2; ++i) {
            index_[i] = index_[2 * i];
        }
        index_.resize(LONGEST_INDEX / 2);
        framesPerEntry_ *= 2;
    }
    index_.push_back(offset);
}

std::optional<std::uint64_t> FileMeasure::frameOffset(std::int64_t frame) {
    const auto entry = static_cast<std::size_t>(frame / framesPerEntry_);
    if (entry >= index_.size()) {
        return std::nullopt;
    }
    std::int64_t at = static_cast<std::int64_t>(entry) * framesPerEntry_;
    std::uint64_t offset = index_[entry];
    FrameHeader format = part(at).format;
    for (std::uint64_t from = offset; at <= frame;) {
        const FrameScanner::Step step = scanner_.step(from, format);
        switch (step.result) {
        case FrameScanner::Result::frame:
            if (!step.header.agrees(format)) {
                format = step.header;
            }
            offset = step.offset;
            ++at;
            break;
        case FrameScanner::Result::searching:
            break;
        case FrameScanner::Result::failed:
        case FrameScanner::Result::end:
            return std::nullopt;
        }
        from = step.next;
    }
    return offset;
}

const StreamPart& FileMeasure::part(std::int64_t frame) const {
    const auto next = std::upper_bound(
        parts_.begin() + 1, parts_.end(), frame,
        [](std::int64_t number, const StreamPart& part) { return number < part.firstFrame; });
    return *(next - 1);
}

std::int64_t FileMeasure::firstSample(std::int64_t frame) const {
    const StreamPart& part = this->part(frame);
    return part.firstSample + (frame - part.firstFrame) * part.format.samples *
                                  stream_.first.sampleRate / part.format.sampleRate;
}

std::int64_t FileMeasure::frameOfSample(std::int64_t sample) const {
    std::int64_t begin = 0;
    std::int64_t end = frames_;
    while (begin + 1 < end) {
        const std::int64_t middle = begin + (end - begin) / 2;
        (firstSample(middle) <= sample ? begin : end) = middle;
    }
    return begin;
}

std::int64_t FileMeasure::samples() const {
    const std::int64_t decoded = firstSample(frames_);
    std::int64_t end = decoded;
    if (info_ && info_->padding && info_->frames == frames_) {
        // With another number of frames the padding was cut off, or another file was appended.
        end = std::min(decoded, decoded - *info_->padding + DECODER_DELAY);
    }
    return std::max<std::int64_t>(0, end - skipped_);
}

Measurement FileMeasure::measurement() const {
    if (!done_) {
        return estimate();
    }
    Measurement result;
    result.seconds = static_cast<double>(samples()) / stream_.first.sampleRate;
    if (commonBitRate_ > 0) {
        result.bitRate = commonBitRate_;
    } else if (frames_ > 0) {
        const double seconds = static_cast<double>(firstSample(frames_)) / stream_.first.sampleRate;
        result.bitRate = wholeKilobits(8.0 * static_cast<double>(frameBytes_) / seconds);
    }
    return result;
}

Measurement FileMeasure::estimate() const {
    const auto bytes = static_cast<double>(stream_.end - stream_.begin);
    const double frameSeconds =
        static_cast<double>(stream_.first.samples) / stream_.first.sampleRate;
    const bool fits = info_ && info_->frames && *info_->frames > 0 &&
                      (!info_->bytes || std::abs(*info_->bytes - bytes) <= bytes / 50);
    if (fits) {
        const double seconds = *info_->frames * frameSeconds;
        return {seconds, wholeKilobits(8 * bytes / seconds)};
    }
    const auto frameBytes = static_cast<double>(stream_.first.size(stream_.freeFormatSize));
    const double seconds = bytes / frameBytes * frameSeconds;
    return {seconds, wholeKilobits(8 * frameBytes / frameSeconds)};
}

} // namespace zvonivec
