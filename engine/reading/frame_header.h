// Parses the four-byte header of MPEG audio frames, and the side information that follows it in
// layer III. Pure functions of bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zvonivec {

struct FrameHeader {
    int version = 0;     ///< 1: MPEG-1, 2: MPEG-2, 25: MPEG-2.5
    int layer = 0;       ///< 1 to 3
    int bitRate = 0;     ///< bits per second; 0: free format
    int sampleRate = 0;  ///< samples per second and channel
    int channels = 0;    ///< 1 or 2
    int samples = 0;     ///< samples per frame and channel
    bool padded = false; ///< one slot longer (4 bytes in layer I, else 1)
    bool hasCrc = false; ///< two bytes of checksum follow the header
    std::uint32_t bits = 0;

    [[nodiscard]] bool freeFormat() const { return bitRate == 0; }

    /// Bytes of the frame, header and padding included. A free-format frame doesn't state its
    /// length, so the caller gives its length without padding; other formats ignore unpaddedSize.
    [[nodiscard]] std::size_t size(std::size_t unpaddedSize = 0) const;

    /// Bytes of side information of a layer III frame.
    [[nodiscard]] std::size_t sideInfoSize() const;

    /// Offset of the main data, from the start of a layer III frame.
    [[nodiscard]] std::size_t mainDataOffset() const {
        return 4U + (hasCrc ? 2U : 0U) + sideInfoSize();
    }

    /// Whether both can be frames of one stream: version, layer and sampling rate are equal, and
    /// both or neither are in free format. Bit rate, padding and channel mode may differ.
    [[nodiscard]] bool agrees(const FrameHeader& other) const;
};

/// Parses a header at the start of bytes; nothing when they are too few or no valid header.
std::optional<FrameHeader> parseFrameHeader(std::span<const std::uint8_t> bytes);

/// Whether the side information of a layer III frame has no value that is impossible. frame begins
/// with the header; False when it is too short to decide. frameSize as returned by size().
bool sideInfoPlausible(const FrameHeader& header, std::span<const std::uint8_t> frame,
                       std::size_t frameSize);

} // namespace zvonivec
