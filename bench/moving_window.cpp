// The least that a program can do that moves something ten times a second: it waits, and writes 20
// bytes to the display server. No toolkit, no sound.

#include <cstdint>
#include <string_view>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

constexpr std::uint16_t SIZE = 336;
constexpr useconds_t STEP = 100'000;

xcb_window_t newWindow(xcb_connection_t* server, xcb_window_t parent, std::int16_t left,
                       std::uint16_t width, std::uint32_t colour) {
    const xcb_window_t window = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, parent, left, 0, width, SIZE, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                      &colour);
    return window;
}

} // namespace

int main() {
    xcb_connection_t* server = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(server) != 0) {
        return 1;
    }
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const xcb_window_t window = newWindow(server, screen.root, 0, SIZE, screen.white_pixel);
    // Stripes, by which the comparison recognises that it has been painted.
    constexpr std::int16_t stripes = 6;
    constexpr std::int16_t width = SIZE / stripes;
    xcb_window_t stripe = XCB_WINDOW_NONE;
    for (std::int16_t i = 0; i < stripes; ++i) {
        const auto left = static_cast<std::int16_t>(i * width);
        stripe = newWindow(server, window, left, width, 0x1e140aU * static_cast<unsigned>(i + 1));
    }
    constexpr std::string_view name("bench_moving_window\0bench_moving_window\0", 40);
    const auto setText = [&](xcb_atom_t property, std::string_view text) {
        xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    setText(XCB_ATOM_WM_CLASS, name);
    setText(XCB_ATOM_WM_NAME, name.substr(0, name.find('\0')));
    xcb_map_subwindows(server, window);
    xcb_map_window(server, window);
    xcb_flush(server);

    for (std::uint32_t place = 0; xcb_connection_has_error(server) == 0;
         place = (place + 2) % SIZE) {
        usleep(STEP);
        xcb_configure_window(server, stripe, XCB_CONFIG_WINDOW_X, &place);
        xcb_flush(server);
    }
    xcb_disconnect(server);
    return 0;
}
