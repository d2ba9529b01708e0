// Rules of playback that don't depend on a window.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

/// Returns whether an engine's "Filetype" is MP3, ignoring case.
[[nodiscard]] bool isMp3(std::string_view fileType);

/// Returns the time under the pointer as mm:ss, rounded to whole seconds with halves to even, and
/// with three digits for 100 minutes and more. X and width are in twips, the bar's maximum is in
/// seconds. Returns nothing when the result isn't a finite time.
[[nodiscard]] std::optional<std::string> timeUnderPointer(float X, float width, float maximum);

/// Returns the position in seconds that a release on the bar seeks to. The position may lie outside
/// the track. Returns nothing when it isn't finite.
[[nodiscard]] std::optional<double> seekTarget(float X, float width, float maximum);

/// Returns the X of a release on the bar that seeks to a position: the opposite of seekTarget.
[[nodiscard]] float placeOfPosition(double seconds, float width, float maximum);

} // namespace zvonivec
