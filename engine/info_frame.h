// The frame that an encoder may put in front of the audio to describe it: Xing, Info (both with
// LAME's part or without) or VBRI. It holds no sound.
#pragma once

#include "engine/frame_header.h"

#include <cstdint>
#include <optional>
#include <span>

namespace zvonivec {

struct InfoFrame {
    std::optional<std::uint32_t> frames; ///< of audio, this one not counted
    std::optional<std::uint32_t> bytes;  ///< of the stream, this one counted
    std::optional<int> delay;            ///< samples that the encoder put in front, when it says so
    std::optional<int> padding; ///< samples that it put behind; there exactly when delay is
};

/// Reads a layer III frame's description; nothing when the frame is an ordinary one.
std::optional<InfoFrame> parseInfoFrame(const FrameHeader& header,
                                        std::span<const std::uint8_t> frame);

} // namespace zvonivec
