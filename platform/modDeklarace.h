// Operations of the operating system that the program uses, under the names that Windows gives
// them. They report no errors: an operation that the system can't carry out has no effect. Texts
// and paths are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zvonivec::modDeklarace {

inline constexpr int WINDING = 2;

/// Places in the stack of windows: above all windows that aren't topmost, or among the ordinary
/// windows again.
inline constexpr int INSERT_TOPMOST = -1;
inline constexpr int INSERT_NOT_TOPMOST = -2;
/// SetWindowPos keeps the window's size and place.
inline constexpr unsigned NO_SIZE_NO_MOVE = 3;

/// The system's move command, which a press on a title bar sends.
inline constexpr unsigned SYSTEM_COMMAND = 274;
inline constexpr unsigned MOVE_BY_POINTER = 61458;

/// A place in pixels from the upper left corner of a window.
struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct RegionData;
/// A set of a window's pixels. Null when the system could not create it.
using Region = std::shared_ptr<const RegionData>;

/// Returns the pixels inside a polygon. They include those on its left and top edges but not those
/// on its right and bottom edges. Vertices are in the window's pixels.
[[nodiscard]] Region CreatePolygonRgn(std::span<const Point> vertices, int fillMode);

/// Limits a window to a region: the window is seen, and takes the pointer, within the region only.
/// A null region restores the whole rectangle.
void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw);

/// A place on the screen, in pixels from the screen's upper left corner. On a screen with several
/// device pixels to a pixel it may lie between two pixels.
struct ScreenPlace {
    double x = 0;
    double y = 0;
};

/// Returns the pointer's place.
[[nodiscard]] ScreenPlace GetCursorPos();

/// Puts a window above all windows that aren't topmost, or among the ordinary windows again. The
/// window may still be hidden. The call neither hides nor moves the window, so the last arguments
/// are 0, 0, 0, 0 and NO_SIZE_NO_MOVE.
void SetWindowPos(std::uintptr_t window, int insertAfter, int x, int y, int width, int height,
                  unsigned flags);

/// Releases the pointer capture that a press gave to a window, on systems whose move command needs
/// that.
void ReleaseCapture();

/// Sends a command to a window. Only the move command is supported: SYSTEM_COMMAND with
/// MOVE_BY_POINTER, sent in the handler of a press. The window then follows the pointer until all
/// buttons are released. The releases reach the control that got the press.
void SendMessageA(std::uintptr_t window, unsigned message, std::uintptr_t command);

/// Style of a message box with the information icon. Without this flag a box has the error icon.
inline constexpr int ICON_INFORMATION = 64;

/// Shows a plain text with an OK button in front of its owner. Events go on, but the owner takes no
/// pointer events. Returns when the user has closed the box or the program has closed the owner.
void MessageBoxA(std::uintptr_t owner, const std::string& text, const std::string& title,
                 int style);

/// Marks the process as a running program of this name until the process ends. Any number of
/// processes may use the same name.
void CreateMutexA(const std::string& name);

/// Returns the value of a key in a section of a settings file, cut to size - 1 bytes. Returns the
/// default text when there is no such key or the file can't be read.
[[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section,
                                                   const std::string& key,
                                                   const std::string& defaultText, std::size_t size,
                                                   const std::string& path);

/// Sets a key in a section of a settings file and keeps everything else in the file. Creates the
/// file if it doesn't exist. When writing fails, the file stays as it was.
void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                const std::string& value, const std::string& path);

/// Returns the separator between the names in a path.
[[nodiscard]] std::string folderSeparator();

} // namespace zvonivec::modDeklarace
