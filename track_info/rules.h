// Rules for the track's texts that don't depend on a window.
#pragma once

#include <string>
#include <string_view>

namespace zvonivec {

/// Returns a bit rate, given in bits per second, as "128 kb/s" when it ends in three zeros, else as
/// "44100 b/s". Any other text, the empty one too, gets " b/s" appended.
[[nodiscard]] std::string rateText(std::string_view bitrate);

/// Returns the text with every ampersand doubled, so that a caption shows it literally.
[[nodiscard]] std::string doubledAmpersands(std::string_view text);

} // namespace zvonivec
