// Length and bit rate of an MP3 file, found by walking its frame headers, and the places of its
// frames for seeking.
#pragma once

#include "engine/file_kind.h"
#include "engine/file_reader.h"
#include "engine/frame_scanner.h"
#include "engine/info_frame.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace zvonivec {

struct Measurement {
    double seconds = 0;
    std::int64_t bitRate =
        0; ///< bits per second: the nominal rate, or the average in whole kilobits
};

/// A stretch of frames of one format. Files that were joined may have several.
struct StreamPart {
    FrameHeader format;
    std::int64_t firstFrame = 0;
    std::int64_t firstSample = 0; ///< decoded samples before it, at the rate of the whole stream
};

/// Samples are counted at the rate of the stream's first frame, whatever rates its parts have.
///
/// For one thread. The walk is made in slices, so that its thread can do other things meanwhile.
class FileMeasure {
public:
    /// libmpg123's filter bank returns to the same state after every eight frames, so that decoding
    /// from a multiple of this gives the same bits as decoding from the start.
    static constexpr std::int64_t INDEX_STEP = 16;

    FileMeasure(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream);

    /// Walks on over about this many bytes.
    void walk(std::uint64_t bytes);
    /// Walks on until so many frames are known, or the end.
    void walkToFrame(std::int64_t frames);
    /// Walks on until the frame of a decoded sample is known, or the end.
    void walkToSample(std::int64_t sample);

    /// Whether the end was reached: everything below is exact from then on. Also True after a read
    /// error, which ends what can be played.
    [[nodiscard]] bool done() const { return done_; }

    /// Whether a read error, not the end of the stream, ended the walk.
    [[nodiscard]] bool failed() const { return failed_; }

    /// Frames of audio known so far; one that only describes the file isn't counted.
    [[nodiscard]] std::int64_t frames() const { return frames_; }

    /// The part of a frame; that of the last one for numbers behind it.
    [[nodiscard]] const StreamPart& part(std::int64_t frame) const;
    /// Number of the first decoded sample of a frame.
    [[nodiscard]] std::int64_t firstSample(std::int64_t frame) const;
    /// Number of the frame of a decoded sample that has been walked to.
    [[nodiscard]] std::int64_t frameOfSample(std::int64_t sample) const;

    /// The offset of a frame. Nothing when it isn't known, or can't be read there any more.
    [[nodiscard]] std::optional<std::uint64_t> frameOffset(std::int64_t frame);

    /// Decoded samples (per channel) that come before the track's first: the encoder's delay and
    /// the decoder's own, where the file states the former, else 0.
    [[nodiscard]] std::int64_t skippedSamples() const { return skipped_; }

    /// Length of the track in samples (per channel), as far as it is known.
    [[nodiscard]] std::int64_t samples() const;

    /// Exact once done; before, what headers claim where that fits the file's size, else an
    /// estimate from the bit rate of the first frame.
    [[nodiscard]] Measurement measurement() const;

private:
    void takeStep();
    void addToIndex(std::uint64_t offset);
    [[nodiscard]] Measurement estimate() const;

    const Mp3Stream stream_;
    FrameScanner scanner_;
    std::optional<InfoFrame> info_;
    std::int64_t skipped_ = 0;
    std::uint64_t position_ = 0;
    std::int64_t frames_ = 0;
    std::uint64_t frameBytes_ = 0;
    int commonBitRate_ = -1; ///< of all frames so far; 0 when they differ or are in free format
    bool done_ = false;
    bool failed_ = false;
    /// Offset of every so many frames. The index of a long file is thinned out: it never takes more
    /// memory than that of an hour, and a place in between is walked to from the one before it.
    std::vector<std::uint64_t> index_;
    std::int64_t framesPerEntry_ = INDEX_STEP;
    std::vector<StreamPart> parts_; ///< in order, never empty
};

} // namespace zvonivec
