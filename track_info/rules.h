// Rules of the track's texts that need no window.
#pragma once

#include <string>
#include <string_view>

namespace zvonivec {

/// A bit rate in bits per second, as "128 kb/s" where it ends in three zeros, else as "44100 b/s".
/// A shorter text, also an empty one, gets " b/s" as it stands.
[[nodiscard]] std::string rateText(std::string_view bitrate);

/// A text for a caption that is to show its ampersands.
[[nodiscard]] std::string doubledAmpersands(std::string_view text);

} // namespace zvonivec
