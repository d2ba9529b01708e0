// Steps through the frames of a file of MPEG audio layer III, header by header, over damage and
// foreign bytes between them. Measuring and decoding both use it, so that they see the same frames.
#pragma once

#include "engine/file_kind.h"
#include "engine/file_reader.h"
#include "engine/frame_header.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zvonivec {

/// For one thread. Files that were joined may change their format on the way: a run of frames of
/// another one counts where those of the present format end.
class FrameScanner {
public:
    FrameScanner(std::shared_ptr<const FileReader> file, const Mp3Stream& stream,
                 std::size_t blockSize);

    enum class Result {
        frame,     ///< a whole frame was found
        searching, ///< none yet: go on at next
        end,       ///< there is none any more
        failed,    ///< the file can't be read
    };

    struct Step {
        Result result = Result::end;
        std::uint64_t offset = 0; ///< of the frame
        std::size_t size = 0;     ///< of the frame, in bytes
        FrameHeader header;       ///< of the frame
        std::uint64_t next = 0;   ///< where to go on
    };

    /// Looks for the first frame at or behind an offset, and gives up, searching, after one block.
    /// format is the header of the frame before. The answer depends on both and the file alone.
    Step step(std::uint64_t offset, const FrameHeader& format);

    /// Bytes of the file, as ReadBuffer::bytes.
    std::span<const std::uint8_t> bytes(std::uint64_t offset, std::size_t wanted) {
        return buffer_.bytes(offset, wanted);
    }

private:
    Step search(std::uint64_t offset, const FrameHeader& format);
    [[nodiscard]] bool begins(std::span<const std::uint8_t> bytes, std::uint64_t offset) const;
    [[nodiscard]] Step found(std::uint64_t offset, const FrameHeader& header) const;

    const Mp3Stream stream_;
    ReadBuffer buffer_;
};

} // namespace zvonivec
