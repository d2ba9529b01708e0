// Runs of consistent frames. Four bytes of a header turn up by chance; several frames that agree,
// each beginning where the one before it ends, don't.
#pragma once

#include "engine/reading/file_reader.h"
#include "engine/reading/frame_header.h"

#include <cstddef>
#include <cstdint>

namespace zvonivec {

/// Bytes of the longest frame. Free format has the longest frames: encoders write it up to 640
/// kb/s, which gives 576 samples at 8 kHz 5760 bytes, and one more for padding. With a bit rate of
/// the tables no frame exceeds 1729 bytes (layer II, 384 kb/s, 32 kHz).
inline constexpr std::size_t LONGEST_FRAME = 576 / 8 * 640'000 / 8'000 + 1;

/// Frames in a row that prove a stream. Random bytes look like one more frame of a run about once
/// in 100,000 times.
inline constexpr int PROVING_RUN = 4;

struct FrameRun {
    enum class Ending {
        more,    ///< as many frames as were asked for: others may follow
        stream,  ///< the stream ends where the last frame does
        cut,     ///< the stream ends within a frame
        foreign, ///< something else follows
    };
    int frames = 0;
    Ending ending = Ending::foreign;
};

/// Counts the whole frames from an offset on that agree with the first of them and are plausible.
/// Stops at a number of them, and at the end of the stream. Reads only before that end, and no
/// further than most * LONGEST_FRAME bytes. freeFormatSize as for FrameHeader::size.
FrameRun frameRunAt(ReadBuffer& buffer, std::uint64_t offset, std::uint64_t end,
                    std::size_t freeFormatSize, int most = PROVING_RUN);

} // namespace zvonivec
