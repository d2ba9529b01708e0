#include "engine/reading/frame_run.h"

#include <algorithm>
#include <optional>

namespace zvonivec {

namespace {

/// Bytes of a frame that tell whether it is plausible: header, checksum, side information.
constexpr std::uint64_t FRAME_HEAD = 4 + 2 + 32;

} // namespace

FrameRun frameRunAt(ReadBuffer& buffer, std::uint64_t offset, std::uint64_t end,
                    std::size_t freeFormatSize, int most) {
    std::optional<FrameHeader> first;
    FrameRun run;
    for (; run.frames < most; ++run.frames) {
        if (offset == end) {
            run.ending = FrameRun::Ending::stream;
            return run;
        }
        const auto head = buffer.bytes(
            offset, static_cast<std::size_t>(std::min<std::uint64_t>(FRAME_HEAD, end - offset)));
        const std::optional<FrameHeader> header = parseFrameHeader(head);
        if (!header || (first && !header->agrees(*first)) ||
            (header->freeFormat() && freeFormatSize == 0)) {
            return run;
        }
        const std::size_t size = header->size(freeFormatSize);
        if (offset + size > end) {
            run.ending = FrameRun::Ending::cut;
            return run;
        }
        if (header->layer == 3 && !sideInfoPlausible(*header, head, size)) {
            return run;
        }
        first = first ? first : header;
        offset += size;
    }
    run.ending = FrameRun::Ending::more;
    return run;
}

} // namespace zvonivec
