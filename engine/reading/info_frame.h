// Parses the first frame of files whose encoder describes the audio there: Xing, Info (both with or
// without LAME's extension) or VBRI. Such a frame holds no sound.
#pragma once

#include "engine/reading/frame_header.h"

#include <cstdint>
#include <optional>
#include <span>

namespace zvonivec {

struct InfoFrame {
    std::optional<std::uint32_t> frames; ///< frames of audio, without this frame
    std::optional<std::uint32_t> bytes;  ///< bytes of the stream, with this frame
    std::optional<int> delay;            ///< samples that the encoder added at the start
    std::optional<int> padding;          ///< samples added at the end; set exactly when delay is
};

/// Parses the description in a layer III frame; nothing when the frame is an ordinary one.
std::optional<InfoFrame> parseInfoFrame(const FrameHeader& header,
                                        std::span<const std::uint8_t> frame);

} // namespace zvonivec
