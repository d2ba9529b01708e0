// Decodes an MP3 file to 16-bit samples with libmpg123, from any sample on.
#pragma once

#include "engine/file_kind.h"
#include "engine/file_measure.h"
#include "engine/file_reader.h"
#include "engine/frame_scanner.h"
#include "engine/resampler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct mpg123_handle_struct;

namespace zvonivec {

/// For one thread, which also owns the FileMeasure. libmpg123 is fed the frames that the measuring
/// found and nothing else, one at a time, so that every sample has its number: lengths, seeks and
/// trimming are exact whatever the file's headers claim and however it is damaged.
/// Parts of another format than the first are converted to it.
class Mp3Decoder {
public:
    /// The measure is walked on as far as decoding needs; it must outlive the decoder.
    Mp3Decoder(const std::shared_ptr<const FileReader>& file, const Mp3Stream& stream,
               FileMeasure& measure);
    Mp3Decoder(const Mp3Decoder&) = delete;
    Mp3Decoder& operator=(const Mp3Decoder&) = delete;
    ~Mp3Decoder();

    [[nodiscard]] int sampleRate() const { return stream_.first.sampleRate; }
    [[nodiscard]] int channels() const { return stream_.first.channels; }

    /// Makes read continue at a sample of the track (per channel); below 0 is 0, and past the end
    /// the next read tells the end. False when libmpg123 can't be set up. Must be called first.
    bool seek(std::int64_t sample);

    enum class Result {
        samples, ///< some were decoded
        end,     ///< the track is over
        failed,  ///< the file can't be read on, or has lost what it had
    };

    struct Block {
        Result result = Result::end;
        std::span<const std::int16_t> samples; ///< channels alternate; valid until the next call
    };

    /// Decodes the next samples, at most 1152 per channel. A frame that can't be decoded is silent.
    Block read();

private:
    bool enterPart();
    std::span<const std::int16_t> takeDecoded(std::int64_t end);
    bool decodeNext();
    Result loadFrame();
    std::span<const std::int16_t> decodeFrame();

    const Mp3Stream stream_;
    FileMeasure& measure_;
    FrameScanner scanner_;
    mpg123_handle_struct* handle_ = nullptr;

    std::int64_t nextFrame_ = 0;   ///< number of the next frame to decode
    std::uint64_t nextOffset_ = 0; ///< where it is looked for
    std::span<const std::uint8_t> frame_;
    std::int64_t target_ = 0; ///< number of the next wanted sample, skipped ones counted

    StreamPart part_;                       ///< the part that handle_ is ready for
    std::optional<Resampler> resampler_;    ///< where its rate isn't that of the track
    std::span<const std::int16_t> decoded_; ///< decoded and not yet read
    std::int64_t firstDecoded_ = 0;         ///< number of the first of them
    std::vector<std::int16_t> silence_;     ///< a frame of it
};

} // namespace zvonivec
