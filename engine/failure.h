// Why a file can't be played. Users see one message for all causes; engine_probe and tests see
// them.
#pragma once

#include <string>
#include <string_view>

namespace zvonivec {

struct Failure {
    enum class Cause {
        notOpened,    ///< the file is missing, no regular file, or may not be read
        notMp3,       ///< its content is something else
        unreadable,   ///< the disk failed within the file
        truncated,    ///< the file has lost frames that it had when it was measured
        decoderSetUp, ///< libmpg123 refused to begin
        noDevice,     ///< no sound device could be opened
        deviceLost,   ///< the sound device went away
        noThread,     ///< the system gave no thread
    };
    Cause cause = Cause::notOpened;
    std::string text = {}; ///< the library's own words; empty when no library was involved
};

/// Name of a cause, as in the enumeration.
std::string_view causeName(Failure::Cause cause);

} // namespace zvonivec
