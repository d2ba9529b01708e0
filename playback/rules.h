// Rules of playback that need no window.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

/// Whether an engine's "Filetype" is MP3, in any case of letters.
[[nodiscard]] bool isMp3(std::string_view fileType);

/// The time under the pointer, as mm:ss of the nearest whole second, halves to the even one; three
/// digits for minutes from 100 on. X and width are twips, the bar's maximum is seconds. Nothing
/// when the numbers give no time.
[[nodiscard]] std::optional<std::string> timeUnderPointer(float X, float width, float maximum);

/// Where a release on the bar seeks to, in seconds; it may lie outside the track. Nothing when the
/// numbers give no time.
[[nodiscard]] std::optional<double> seekTarget(float X, float width, float maximum);

} // namespace zvonivec
