// The operating system's operations that the program uses, by the names that Windows gives them.
// No result is of interest: what the system can't do, it leaves. Texts and paths are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zvonivec::modDeklarace {

inline constexpr int WINDING = 2;

/// Places in a stack of windows: above all that aren't topmost, or with all others again.
inline constexpr int INSERT_TOPMOST = -1;
inline constexpr int INSERT_NOT_TOPMOST = -2;
/// SetWindowPos leaves size and place alone.
inline constexpr unsigned NO_SIZE_NO_MOVE = 3;

/// The system's move command, as a press on a title bar gives it.
inline constexpr unsigned SYSTEM_COMMAND = 274;
inline constexpr unsigned MOVE_BY_POINTER = 61458;

/// A place in pixels: on the screen or in a window, from the upper left corner.
struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct RegionData;
/// A set of a window's pixels; null where the system could not make it.
using Region = std::shared_ptr<const RegionData>;

/// The pixels inside a polygon: those on its left and top edges are in, those on its right and
/// bottom edges out. Vertices are in the window's pixels.
[[nodiscard]] Region CreatePolygonRgn(std::span<const Point> vertices, int fillMode);

/// Makes a region all of a window that is seen and takes the pointer; without a region it is the
/// whole rectangle.
void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw);

/// Where the pointer is now, in pixels from the screen's upper left corner.
[[nodiscard]] Point GetCursorPos();

/// Puts a window above all that are not topmost, or among those again, whether it is shown yet or
/// not. The window is neither hidden nor moved by it, so the last arguments are 0, 0, 0, 0 and
/// NO_SIZE_NO_MOVE.
void SetWindowPos(std::uintptr_t window, int insertAfter, int x, int y, int width, int height,
                  unsigned flags);

/// Ends the pointer capture that a press gave to a window, where the move command needs that.
void ReleaseCapture();

/// Carries out a command, of which only the move is known: SYSTEM_COMMAND and MOVE_BY_POINTER,
/// given in the handler of a press. The window then goes with the pointer until all buttons are up;
/// their releases reach the control that got the press.
void SendMessageA(std::uintptr_t window, unsigned message, std::uintptr_t command);

/// Of a message box's style: the icon for what is only told. Without it the icon is that of an
/// error.
inline constexpr int ICON_INFORMATION = 64;

/// Shows a plain text with an OK button before its owner, which takes no pointer meanwhile; events
/// go on. Returns when the user has closed the box, or the program its owner.
void MessageBoxA(std::uintptr_t owner, const std::string& text, const std::string& title,
                 int style);

/// Marks, for as long as the process lives, that a program of this name runs. Any number of
/// programs may use the same name.
void CreateMutexA(const std::string& name);

/// The value of a key in a section of a settings file, or the default text where there is none or
/// the file can't be read; cut to size - 1 bytes.
[[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section,
                                                   const std::string& key,
                                                   const std::string& defaultText, std::size_t size,
                                                   const std::string& path);

/// Sets a key in a section of a settings file, which is created if it isn't there. What else is in
/// the file stays; what can't be written leaves the file as it was.
void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                const std::string& value, const std::string& path);

/// What stands between the names in a path.
[[nodiscard]] std::string folderSeparator();

} // namespace zvonivec::modDeklarace
