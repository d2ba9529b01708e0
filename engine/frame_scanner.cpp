#include "engine/frame_scanner.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace zvonivec {

namespace {

/// Bytes that one search looks at.
constexpr std::size_t SEARCH_BLOCK = std::size_t{64} * 1024;
/// What it needs of the bytes behind them: no frame is longer.
constexpr std::size_t LONGEST_FRAME = 6144;
/// Frames in a row that prove another format. As long as can be, they are no longer than
/// longestFrame together: these aren't in free format.
constexpr int PROVING_RUN = 4;

} // namespace

FrameScanner::FrameScanner(std::shared_ptr<const FileReader> file, const Mp3Stream& stream,
                           std::size_t blockSize)
    : stream_(stream), buffer_(std::move(file), blockSize) {}

FrameScanner::Step FrameScanner::found(std::uint64_t offset, const FrameHeader& header) const {
    const std::size_t size = header.size(stream_.freeFormatSize);
    return {Result::frame, offset, size, header, offset + size};
}

FrameScanner::Step FrameScanner::step(std::uint64_t offset, const FrameHeader& format) {
    if (offset + 4 > stream_.end) {
        return {};
    }
    const auto bytes = buffer_.bytes(offset, 32);
    if (buffer_.failed()) {
        return {Result::failed, offset, 0, {}, offset};
    }
    if (const std::optional<FrameHeader> header = parseFrameHeader(bytes);
        header && header->agrees(format)) {
        const Step step = found(offset, *header);
        return step.next <= stream_.end ? step : Step{}; // cut off: nothing of it is heard
    }
    if (const std::uint64_t tag = leadingTagSize(bytes); tag != 0 && offset + tag < stream_.end) {
        return {Result::searching, offset, 0, {}, offset + tag}; // files put together
    }
    return search(offset, format);
}

/// Whether a run of frames that agree begins at an offset, with these bytes.
bool FrameScanner::begins(std::span<const std::uint8_t> bytes, std::uint64_t offset) const {
    const std::optional<FrameHeader> first = parseFrameHeader(bytes);
    if (!first || first->layer != 3 || first->freeFormat()) {
        return false;
    }
    std::size_t at = 0;
    for (int count = 0; count < PROVING_RUN; ++count) {
        if (offset + at == stream_.end) {
            return count >= 2;
        }
        if (at >= bytes.size()) {
            return false;
        }
        const auto frame = bytes.subspan(at);
        const std::optional<FrameHeader> header = parseFrameHeader(frame);
        if (!header || !header->agrees(*first)) {
            return false;
        }
        const std::size_t size = header->size();
        if (offset + at + size > stream_.end) {
            return count >= 2; // cut off in the middle of a frame
        }
        if (!sideInfoPlausible(*header, frame, size)) {
            return false;
        }
        at += size;
    }
    return true;
}

FrameScanner::Step FrameScanner::search(std::uint64_t offset, const FrameHeader& format) {
    const std::uint64_t left = stream_.end - offset;
    const auto block = buffer_.bytes(offset, static_cast<std::size_t>(std::min<std::uint64_t>(
                                                 left, SEARCH_BLOCK + LONGEST_FRAME)));
    if (buffer_.failed()) {
        return {Result::failed, offset, 0, {}, offset};
    }
    const std::size_t searched = std::min(block.size(), SEARCH_BLOCK);
    for (std::size_t at = 0; at + 4 <= block.size() && at < searched; ++at) {
        const void* const byte = std::memchr(block.data() + at, 0xFF, searched - at);
        if (byte == nullptr) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(byte) - block.data());
        const auto header = parseFrameHeader(block.subspan(at));
        if (!header) {
            continue;
        }
        if (!header->agrees(format)) {
            if (begins(block.subspan(at), offset + at)) {
                return found(offset + at, *header);
            }
            continue;
        }
        // A sync word within other bytes is no frame: another must follow where the first ends.
        const Step candidate = found(offset + at, *header);
        if (candidate.next == stream_.end) {
            return candidate;
        }
        const std::size_t following = at + candidate.size;
        if (following + 4 <= block.size()) {
            const auto next = parseFrameHeader(block.subspan(following));
            if (next && next->agrees(format)) {
                return candidate;
            }
        }
    }
    if (block.size() < left && searched == SEARCH_BLOCK) {
        return {Result::searching, offset, 0, {}, offset + searched};
    }
    return {};
}

} // namespace zvonivec
