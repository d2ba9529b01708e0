#include "engine/reading/info_frame.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace zvonivec {

namespace {

using Bytes = std::span<const std::uint8_t>;

bool startsWith(Bytes bytes, std::string_view text) {
    return bytes.size() >= text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin(),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

std::uint32_t bigEndian32(Bytes bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
}

std::optional<InfoFrame> parseXing(Bytes bytes) {
    if (!startsWith(bytes, "Xing") && !startsWith(bytes, "Info")) {
        return std::nullopt;
    }
    InfoFrame info;
    if (bytes.size() < 8) {
        return info;
    }
    const std::uint32_t flags = bigEndian32(bytes.subspan(4));
    std::size_t at = 8;
    const auto take = [&](std::uint32_t flag, std::size_t size) -> Bytes {
        if ((flags & flag) == 0 || bytes.size() < at + size) {
            return {};
        }
        at += size;
        return bytes.subspan(at - size, size);
    };
    if (const Bytes field = take(1, 4); !field.empty()) {
        info.frames = bigEndian32(field);
    }
    if (const Bytes field = take(2, 4); !field.empty()) {
        info.bytes = bigEndian32(field);
    }
    take(4, 100); // table of contents
    take(8, 4);   // quality

    // LAME's fields begin with the encoder's name. Without a name, zeros or audio follow.
    constexpr std::size_t delayOffset = 21;
    if (bytes.size() >= at + delayOffset + 3) {
        const Bytes lame = bytes.subspan(at);
        const bool named = std::all_of(lame.begin(), lame.begin() + 4, [](std::uint8_t byte) {
            return byte > 0x20 && byte < 0x7F;
        });
        if (named) {
            const Bytes field = lame.subspan(delayOffset);
            info.delay = field[0] << 4 | field[1] >> 4;
            info.padding = (field[1] & 0x0F) << 8 | field[2];
        }
    }
    return info;
}

std::optional<InfoFrame> parseVbri(Bytes bytes) {
    if (!startsWith(bytes, "VBRI")) {
        return std::nullopt;
    }
    InfoFrame info;
    if (bytes.size() >= 18) {
        info.bytes = bigEndian32(bytes.subspan(10));
        info.frames = bigEndian32(bytes.subspan(14));
    }
    return info;
}

} // namespace

std::optional<InfoFrame> parseInfoFrame(const FrameHeader& header,
                                        std::span<const std::uint8_t> frame) {
    // Some writers count the checksum before the side information, others don't.
    for (const std::size_t offset : {header.mainDataOffset(), 4 + header.sideInfoSize()}) {
        if (frame.size() > offset) {
            if (const auto info = parseXing(frame.subspan(offset))) {
                return info;
            }
        }
    }
    constexpr std::size_t vbriOffset = 4 + 32;
    return frame.size() > vbriOffset ? parseVbri(frame.subspan(vbriOffset)) : std::nullopt;
}

} // namespace zvonivec
