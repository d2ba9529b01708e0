// Decodes an MP3 file to 16-bit samples with libmpg123, from any sample on.
#pragma once

#include "engine/decoding/resampler.h"
#include "engine/failure.h"
#include "engine/reading/file_kind.h"
#include "engine/reading/file_measure.h"
#include "engine/reading/file_reader.h"
#include "engine/reading/frame_scanner.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct mpg123_handle_struct;

namespace zvonivec {

/// For use by the thread that owns the FileMeasure. libmpg123 gets only the frames that the measure
/// has found, one at a time, so that every sample has a number: lengths, seeks and trimming are
/// exact whatever the file's headers claim and however it is damaged. Parts with another sampling
/// rate than the first are converted to it, and mono frames to stereo where others are stereo.
class Mp3Decoder {
public:
    /// Walks the measure on until the channels of the stream are known: stereo frames may follow
    /// mono frames, and the first 16 MiB are searched for them. Gives up when stop, which is asked
    /// now and then, is True. Returns whether the search is over.
    static bool findChannels(FileMeasure& measure, const std::function<bool()>& stop);

    /// The decoder walks the measure on as far as it needs. The measure must outlive it.
    Mp3Decoder(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream,
               FileMeasure& measure);
    Mp3Decoder(const Mp3Decoder&) = delete;
    Mp3Decoder& operator=(const Mp3Decoder&) = delete;
    ~Mp3Decoder();

    [[nodiscard]] int sampleRate() const { return stream_.first.sampleRate; }
    /// 2 for a stream that has stereo frames anywhere, else 1.
    [[nodiscard]] int channels() const { return channels_; }

    /// Walks the measure on to where a seek to a sample of the track finds its place known. Gives
    /// up when stop, which is asked now and then, is True. Returns whether it is there.
    bool approach(std::int64_t sample, const std::function<bool()>& stop);

    /// Makes read continue at a sample of the track (per channel). Below 0 is 0; past the end the
    /// next read reports the end. Returns why libmpg123 can't be set up, nothing on success. Must
    /// be called before the first read.
    [[nodiscard]] std::optional<Failure> seek(std::int64_t sample);

    enum class Result {
        samples, ///< some samples were decoded
        end,     ///< the track is over
        failed,  ///< nothing more can be decoded; failure() says why
    };

    struct Block {
        Result result = Result::end;
        std::span<const std::int16_t> samples; ///< channels alternate; valid until the next call
    };

    /// Decodes the next samples, at most 1152 per channel. A frame that can't be decoded is silent.
    Block read();

    /// Why the last read failed.
    [[nodiscard]] const Failure& failure() const { return failure_; }

    /// Frames that libmpg123 refused since the last seek, replaced by silence.
    [[nodiscard]] std::int64_t silentFrames() const { return silentFrames_; }

private:
    [[nodiscard]] std::int64_t decodedSample(std::int64_t sample) const;
    std::optional<Failure> enterPart();
    [[nodiscard]] std::string lastError() const;
    bool fail(Failure::Cause cause);
    std::span<const std::int16_t> takeDecoded(std::int64_t end);
    bool decodeNext();
    bool loadFrame();
    std::span<const std::int16_t> decodeFrame();

    const Mp3Stream stream_;
    FileMeasure& measure_;
    FrameScanner scanner_;
    int channels_ = 1;
    mpg123_handle_struct* handle_ = nullptr;

    std::int64_t nextFrame_ = 0;   ///< number of the next frame to decode
    std::uint64_t nextOffset_ = 0; ///< where the scanner continues
    std::span<const std::uint8_t> frame_;
    std::int64_t target_ = 0; ///< number of the sample that read returns next, skipped ones counted

    StreamPart part_;                       ///< the part that handle_ is set up for
    std::optional<Resampler> resampler_;    ///< for a part whose rate isn't that of the track
    std::span<const std::int16_t> decoded_; ///< decoded and not yet read
    std::int64_t firstDecoded_ = 0;         ///< number of the first sample in decoded_
    std::vector<std::int16_t> silence_;     ///< a silent frame

    Failure failure_;
    std::int64_t silentFrames_ = 0;
};

} // namespace zvonivec
