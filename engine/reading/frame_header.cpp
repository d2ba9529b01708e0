#include "engine/reading/frame_header.h"

#include <array>

namespace zvonivec {

namespace {

constexpr std::uint32_t SYNC_MASK = 0xFFE00000;
/// Sync, version, layer and sampling rate.
constexpr std::uint32_t STREAM_MASK = 0xFFFE0C00;

// Kilobits per second by bit rate index; index 15 is invalid.
using BitRates = std::array<int, 15>;
constexpr BitRates MPEG1_LAYER1 = {0,   32,  64,  96,  128, 160, 192, 224,
                                   256, 288, 320, 352, 384, 416, 448};
constexpr BitRates MPEG1_LAYER2 = {0,   32,  48,  56,  64,  80,  96, 112,
                                   128, 160, 192, 224, 256, 320, 384};
constexpr BitRates MPEG1_LAYER3 = {0,   32,  40,  48,  56,  64,  80, 96,
                                   112, 128, 160, 192, 224, 256, 320};
constexpr BitRates MPEG2_LAYER1 = {0,   32,  48,  56,  64,  80,  96, 112,
                                   128, 144, 160, 176, 192, 224, 256};
constexpr BitRates MPEG2_LAYER23 = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

constexpr std::array<int, 3> MPEG1_RATES = {44100, 48000, 32000};

const BitRates& bitRates(int version, int layer) {
    if (version == 1) {
        return layer == 1 ? MPEG1_LAYER1 : layer == 2 ? MPEG1_LAYER2 : MPEG1_LAYER3;
    }
    return layer == 1 ? MPEG2_LAYER1 : MPEG2_LAYER23;
}

class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint32_t take(unsigned count) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i, ++position_) {
            const unsigned byte = bytes_[position_ / 8];
            value = value << 1U | (byte >> (7U - position_ % 8) & 1U);
        }
        return value;
    }
    void skip(unsigned count) { position_ += count; }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
};

} // namespace

std::size_t FrameHeader::size(std::size_t unpaddedSize) const {
    const std::size_t slot = layer == 1 ? 4 : 1;
    if (freeFormat()) {
        return unpaddedSize + (padded ? slot : 0);
    }
    const int slots = samples / 8 * bitRate / sampleRate / static_cast<int>(slot);
    return (static_cast<std::size_t>(slots) + (padded ? 1 : 0)) * slot;
}

std::size_t FrameHeader::sideInfoSize() const {
    if (version == 1) {
        return channels == 1 ? 17 : 32;
    }
    return channels == 1 ? 9 : 17;
}

bool FrameHeader::agrees(const FrameHeader& other) const {
    return ((bits ^ other.bits) & STREAM_MASK) == 0 && freeFormat() == other.freeFormat();
}

std::optional<FrameHeader> parseFrameHeader(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4 || bytes[0] != 0xFF) {
        return std::nullopt;
    }
    const std::uint32_t bits = std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
                               std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
    const std::uint32_t version = bits >> 19U & 3U;
    const std::uint32_t layer = bits >> 17U & 3U;
    const std::uint32_t bitRate = bits >> 12U & 15U;
    const std::uint32_t sampleRate = bits >> 10U & 3U;
    if ((bits & SYNC_MASK) != SYNC_MASK || version == 1 || layer == 0 || bitRate == 15 ||
        sampleRate == 3) {
        return std::nullopt;
    }
    FrameHeader header;
    header.bits = bits;
    header.version = version == 3 ? 1 : version == 2 ? 2 : 25;
    header.layer = 4 - static_cast<int>(layer);
    header.bitRate = bitRates(header.version, header.layer)[bitRate] * 1000;
    header.sampleRate = MPEG1_RATES[sampleRate] / (header.version == 1   ? 1
                                                   : header.version == 2 ? 2
                                                                         : 4);
    header.channels = (bits >> 6U & 3U) == 3 ? 1 : 2;
    header.samples = header.layer == 1                          ? 384
                     : header.layer == 3 && header.version != 1 ? 576
                                                                : 1152;
    header.padded = (bits >> 9U & 1U) != 0;
    header.hasCrc = (bits >> 16U & 1U) == 0;
    return header;
}

bool sideInfoPlausible(const FrameHeader& header, std::span<const std::uint8_t> frame,
                       std::size_t frameSize) {
    const std::size_t begin = header.mainDataOffset() - header.sideInfoSize();
    if (header.layer != 3 || frame.size() < header.mainDataOffset() ||
        frameSize < header.mainDataOffset()) {
        return false;
    }
    const bool mpeg1 = header.version == 1;
    const auto channels = static_cast<unsigned>(header.channels);
    BitReader reader(frame.subspan(begin, header.sideInfoSize()));
    const std::uint32_t reservoir = reader.take(mpeg1 ? 9 : 8);
    reader.skip(mpeg1 ? (channels == 1 ? 5 : 3) + 4 * channels : channels);
    std::uint32_t dataBits = 0;
    for (unsigned part = 0; part < channels * (mpeg1 ? 2 : 1); ++part) {
        dataBits += reader.take(12);
        if (reader.take(9) > 288) {
            return false; // a granule has 576 frequency lines, in pairs
        }
        reader.skip(mpeg1 ? 8 + 4 : 8 + 9);
        const bool windowSwitching = reader.take(1) != 0;
        const std::uint32_t blockType = reader.take(2);
        if (windowSwitching && blockType == 0) {
            return false;
        }
        reader.skip(20 + (mpeg1 ? 3 : 2));
    }
    return dataBits <= 8 * (reservoir + frameSize - header.mainDataOffset());
}

} // namespace zvonivec
