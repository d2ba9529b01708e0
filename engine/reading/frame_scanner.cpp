#include "engine/reading/frame_scanner.h"

#include "engine/reading/frame_run.h"
#include "engine/reading/tag_places.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace zvonivec {

namespace {

/// Bytes that one search looks at.
constexpr std::size_t SEARCH_BLOCK = std::size_t{64} * 1024;
/// Bytes after them that decide about a frame at their end: a run of frames with a bit rate of the
/// tables, of 1441 bytes each at most, or one frame of any length and the header after it.
constexpr std::size_t SEARCH_MARGIN = LONGEST_FRAME + 64;

} // namespace

FrameScanner::FrameScanner(std::shared_ptr<const FileReader> file, const Mp3Stream& stream,
                           std::size_t blockSize)
    : stream_(stream), buffer_(std::move(file), blockSize) {
    buffer_.adaptToTheDisk();
}

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
        return step.next <= stream_.end ? step : Step{}; // a frame that is cut off doesn't count
    }
    if (const std::uint64_t tag = leadingTagSize(bytes); tag != 0 && offset + tag < stream_.end) {
        return {Result::searching, offset, 0, {}, offset + tag}; // a joined file's
    }
    return search(offset, format);
}

/// Whether frames of another format begin at an offset. Free format is left out: its frame length
/// is known of the first format only.
bool FrameScanner::begins(std::uint64_t offset, const FrameHeader& first) {
    if (first.layer != 3 || first.freeFormat()) {
        return false;
    }
    const FrameRun run = frameRunAt(buffer_, offset, stream_.end, 0);
    return run.ending == FrameRun::Ending::more ||
           (run.ending != FrameRun::Ending::foreign && run.frames >= 2);
}

FrameScanner::Step FrameScanner::search(std::uint64_t offset, const FrameHeader& format) {
    const std::uint64_t left = stream_.end - offset;
    // Runs are looked for in the same bytes, so the block stays valid.
    const auto block = buffer_.bytes(offset, static_cast<std::size_t>(std::min<std::uint64_t>(
                                                 left, SEARCH_BLOCK + SEARCH_MARGIN)));
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
            if (begins(offset + at, *header)) {
                return found(offset + at, *header);
            }
            continue;
        }
        // Foreign bytes may contain a sync word, so another header must follow after the frame.
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
