// Measures length and bit rate of an MP3 file by walking its frame headers, and indexes its frames
// for seeking.
#pragma once

#include "engine/reading/file_kind.h"
#include "engine/reading/file_reader.h"
#include "engine/reading/frame_scanner.h"
#include "engine/reading/info_frame.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zvonivec {

struct Measurement {
    double seconds = 0;
    /// Bits per second: the nominal rate of a constant bit rate, else the average in whole
    /// kilobits.
    std::int64_t bitRate = 0;
};

/// A part of the stream with one format. Joined files may have several.
struct StreamPart {
    FrameHeader format;
    std::int64_t firstFrame = 0;
    std::int64_t firstSample = 0; ///< number of its first decoded sample, at the stream's rate
};

/// Samples are counted at the rate of the stream's first frame, whatever rates its parts have.
///
/// For use by one thread, which walks in slices and does other work in between.
class FileMeasure {
public:
    /// Frames between entries of the index. libmpg123's filter bank returns to the same state after
    /// eight frames, so decoding from a multiple gives the same bits as decoding from the start.
    static constexpr std::int64_t INDEX_STEP = 16;

    FileMeasure(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream);

    /// Walks on over about this many bytes.
    void walk(std::uint64_t bytes);
    /// Walks on until this many frames are known, or to the end.
    void walkToFrame(std::int64_t frames);
    /// Walks on until the frame of a decoded sample and so many frames after it are known, or to
    /// the end. Gives up when stop, which is asked now and then, is True. Returns whether they are
    /// known.
    bool walkToSample(std::int64_t sample, std::int64_t framesAfter,
                      const std::function<bool()>& stop);

    /// Bytes from the start of the stream to where the walk is.
    [[nodiscard]] std::uint64_t walked() const { return position_ - stream_.begin; }

    /// Whether the walk is over; all results below are exact then. An error of the disk ends the
    /// walk too.
    [[nodiscard]] bool done() const { return done_; }

    /// Whether an error of the disk, not the end of the stream, ended the walk.
    [[nodiscard]] bool failed() const { return failed_; }

    /// Frames of audio known so far. A frame that only describes the file isn't counted.
    [[nodiscard]] std::int64_t frames() const { return frames_; }

    /// 2 when any frame known so far is stereo, else 1. A frame that only describes the file
    /// doesn't count.
    [[nodiscard]] int channels() const { return channels_; }

    /// Returns the part of a frame; for higher numbers than the last frame's, the last part.
    [[nodiscard]] const StreamPart& part(std::int64_t frame) const;
    /// Number of the first decoded sample of a frame.
    [[nodiscard]] std::int64_t firstSample(std::int64_t frame) const;
    /// Number of the frame of a decoded sample that has been walked to.
    [[nodiscard]] std::int64_t frameOfSample(std::int64_t sample) const;

    /// Returns the offset of a frame; nothing when the walk hasn't reached the frame, or it can't
    /// be read again.
    [[nodiscard]] std::optional<std::uint64_t> frameOffset(std::int64_t frame);

    /// Decoded samples (per channel) before the track's first sample. They are the delays of
    /// encoder and decoder when the file states the encoder's, else 0.
    [[nodiscard]] std::int64_t skippedSamples() const { return skipped_; }

    /// Length of the track in samples (per channel), as far as the walk has got.
    [[nodiscard]] std::int64_t samples() const;

    /// Exact once done. Before that the claim of an info frame that fits the file's size, else an
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
    int channels_ = 1;
    std::uint64_t frameBytes_ = 0;
    int commonBitRate_ = -1; ///< of all frames so far; 0 when they differ or are in free format
    bool done_ = false;
    bool failed_ = false;
    /// Offsets of every framesPerEntry_-th frame. In long files the index is thinned out, so that
    /// it has a bounded size; frames in between are walked to from the entry before.
    std::vector<std::uint64_t> index_;
    std::int64_t framesPerEntry_ = INDEX_STEP;
    std::vector<StreamPart> parts_; ///< in order, never empty
};

} // namespace zvonivec
