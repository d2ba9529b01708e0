// Steps through the frames of an MPEG audio layer III file, header by header, and skips damage and
// foreign bytes between them. Measuring and decoding both use it, so that they see the same frames.
#pragma once

#include "engine/reading/file_kind.h"
#include "engine/reading/file_reader.h"
#include "engine/reading/frame_header.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zvonivec {

/// For use by one thread. Joined files may change their format on the way: where frames of the
/// current format end, a run of frames of another format counts.
class FrameScanner {
public:
    FrameScanner(std::shared_ptr<const FileReader> file, const Mp3Stream& stream,
                 std::size_t blockSize);

    enum class Result {
        frame,     ///< a whole frame was found
        searching, ///< no frame yet; continue at next
        end,       ///< no further frame exists
        failed,    ///< the disk failed
    };

    struct Step {
        Result result = Result::end;
        std::uint64_t offset = 0; ///< of the frame
        std::size_t size = 0;     ///< of the frame, in bytes
        FrameHeader header;       ///< of the frame
        std::uint64_t next = 0;   ///< offset for the next step
    };

    /// Returns the first frame at or after an offset. Gives up after searching one block. format is
    /// the header of the frame before. The result depends on nothing but both and the file.
    Step step(std::uint64_t offset, const FrameHeader& format);

    /// Returns bytes of the file, like ReadBuffer::bytes.
    std::span<const std::uint8_t> bytes(std::uint64_t offset, std::size_t wanted) {
        return buffer_.bytes(offset, wanted);
    }

    /// Whether the disk failed in the last call.
    [[nodiscard]] bool failed() const { return buffer_.failed(); }

private:
    Step search(std::uint64_t offset, const FrameHeader& format);
    [[nodiscard]] bool begins(std::uint64_t offset, const FrameHeader& first);
    [[nodiscard]] Step found(std::uint64_t offset, const FrameHeader& header) const;

    const Mp3Stream stream_;
    ReadBuffer buffer_;
};

} // namespace zvonivec
