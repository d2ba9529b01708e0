// What the X11 implementations of this folder share.
#pragma once

#include <QObject>
#include <QPoint>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

namespace zvonivec::x11 {

/// A reply that xcb has allocated and that std::free releases.
template<class Reply>
using XcbReply = std::unique_ptr<Reply, decltype(&std::free)>;

/// Returns the toolkit's connection to the X server, or null under another display back-end.
xcb_connection_t* connection();

xcb_window_t root(xcb_connection_t* server);
/// Returns a name's atom. The server is asked once for each name.
xcb_atom_t atom(xcb_connection_t* server, std::string_view name);
/// Returns the 32-bit items of a property, or nothing when there is no such property.
std::vector<std::uint32_t> property(xcb_connection_t* server, xcb_window_t window,
                                    xcb_atom_t property);
/// Sends the window manager a message about a window.
void sendToManager(xcb_connection_t* server, xcb_window_t window, xcb_atom_t type,
                   const std::array<std::uint32_t, 5>& data);

/// Whether a program combines the windows into the screen's picture, with regard to their alpha.
bool hasCompositor(xcb_connection_t* server);

/// The pointer as the server knows it: a place in device pixels and the pressed buttons.
struct Pointer {
    QPoint place;
    bool pressed = false; ///< one of the left, middle and right buttons
};
std::optional<Pointer> pointer(xcb_connection_t* server);

/// A press of a pointer button in one of the program's windows.
struct Press {
    QPoint place; ///< device pixels of the screen
    std::uint32_t button = 0;
    std::uint16_t device = 0;
};

/// Begins to watch the events of the server. Called once or more often, before the first press.
void watchEvents();
/// Returns the press that the toolkit serves, or has served last since then.
std::optional<Press> lastPress();
/// Returns the number of messages about windows' places since then.
unsigned configureEvents();
/// Returns the place of a window on the screen, in device pixels: the one in the last of those
/// messages, or the one that the window was asked to take since. Nothing when there is neither.
std::optional<QPoint> lastPlace(xcb_window_t window);
/// Takes note of a place that a window has been asked to take.
void expectPlace(xcb_window_t window, QPoint place);
/// Calls a function whenever a compositor begins or ends its work.
void onCompositorChange(QObject* receiver, std::function<void()> function);
/// Calls a function with true whenever other windows have come to cover a window wholly, and with
/// false whenever a part of it is free again. A compositor keeps every window's picture, so that
/// none counts as covered.
void onCover(QObject* receiver, xcb_window_t window, std::function<void(bool)> function);
/// Calls a function whenever a window has been mapped.
void onMap(QObject* receiver, xcb_window_t window, std::function<void()> function);

} // namespace zvonivec::x11
