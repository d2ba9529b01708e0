// Uses two X windows. The outer window covers the pane and clips. The inner window is as large as
// the picture, which is its background. Neither selects events, so pointer events go to the
// program's window behind them, and a move of the inner window causes no answer.

#include "platform/sliding_picture.h"

#include <QColor>
#include <QGuiApplication>
#include <QImage>
#include <QPoint>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <xcb/xcb.h>

namespace zvonivec {

namespace {

class SlidingPictureX11 : public SlidingPicture {
public:
    SlidingPictureX11(xcb_connection_t* server, xcb_window_t window, std::uint8_t depth,
                      const QRect& pane)
        : server_(server), depth_(depth), pane_(newWindow(window, pane)),
          picture_(newWindow(pane_, QRect(0, 0, 1, 1))) {}

    ~SlidingPictureX11() override {
        // When the parent window has gone, these have gone too. The errors are dropped.
        xcb_discard_reply(server_, xcb_destroy_window_checked(server_, pane_).sequence);
        xcb_flush(server_);
    }

    bool setPicture(const QImage& picture, const QColor& ground) override;
    void moveTo(const QPoint& place) override {
        configure(XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                  {static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y())});
        xcb_flush(server_);
    }

private:
    [[nodiscard]] xcb_window_t newWindow(xcb_window_t parent, const QRect& place) const {
        const xcb_window_t window = xcb_generate_id(server_);
        xcb_create_window(
            server_, XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(place.x()),
            static_cast<std::int16_t>(place.y()), static_cast<std::uint16_t>(place.width()),
            static_cast<std::uint16_t>(place.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    void configure(std::uint16_t what, std::initializer_list<std::uint32_t> values) const {
        xcb_configure_window(server_, picture_, what, values.begin());
    }

    xcb_connection_t* server_;
    std::uint8_t depth_;
    xcb_window_t pane_;
    xcb_window_t picture_;
};

bool SlidingPictureX11::setPicture(const QImage& picture, const QColor& ground) {
    constexpr int largest = 32767; // coordinates in X have 16 bits
    xcb_unmap_window(server_, pane_);
    if (picture.isNull() || picture.width() > largest || picture.height() > largest) {
        xcb_flush(server_);
        return false;
    }
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    const auto width = static_cast<std::uint16_t>(pixels.width());
    const auto height = static_cast<std::uint16_t>(pixels.height());
    const xcb_pixmap_t pixmap = xcb_generate_id(server_);
    xcb_create_pixmap(server_, depth_, pixmap, picture_, width, height);
    const xcb_gcontext_t context = xcb_generate_id(server_);
    xcb_create_gc(server_, context, pixmap, 0, nullptr);
    for (int line = 0; line < pixels.height(); ++line) { // any line fits into a request
        xcb_put_image(server_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, 1, 0,
                      static_cast<std::int16_t>(line), 0, depth_,
                      static_cast<std::uint32_t>(width) * 4, pixels.constScanLine(line));
    }
    xcb_change_window_attributes(server_, picture_, XCB_CW_BACK_PIXMAP, &pixmap);
    const std::uint32_t colour = ground.rgba(); // opaque, also on a screen with an alpha channel
    xcb_change_window_attributes(server_, pane_, XCB_CW_BACK_PIXEL, &colour);
    configure(XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, {width, height});
    // The server keeps the pixmap for as long as the window needs it.
    xcb_free_gc(server_, context);
    xcb_free_pixmap(server_, pixmap);
    xcb_map_window(server_, picture_);
    xcb_map_window(server_, pane_);
    xcb_clear_area(server_, 0, picture_, 0, 0, 0, 0);
    xcb_flush(server_);
    return true;
}

/// Returns the depth of a window whose pixels have the same 32-bit layout as the program's images,
/// or 0 for any other window.
std::uint8_t usableDepth(xcb_connection_t* server, xcb_window_t window) {
    const xcb_setup_t* setup = xcb_get_setup(server);
    xcb_get_geometry_reply_t* geometry =
        xcb_get_geometry_reply(server, xcb_get_geometry(server, window), nullptr);
    const std::uint8_t depth = geometry != nullptr ? geometry->depth : std::uint8_t{0};
    std::free(geometry);
    const bool ourOrder =
        setup->image_byte_order ==
        (Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST);
    if (!ourOrder || (depth != 24 && depth != 32)) {
        return 0;
    }
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0;
         xcb_format_next(&format)) {
        if (format.data->depth == depth) {
            return format.data->bits_per_pixel == 32 ? depth : std::uint8_t{0};
        }
    }
    return 0;
}

} // namespace

std::unique_ptr<SlidingPicture> SlidingPicture::in(QWidget& pane) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const QWidget& top = *pane.window();
    if (x11 == nullptr || x11->connection() == nullptr || top.internalWinId() == 0) {
        return nullptr;
    }
    const auto window = static_cast<xcb_window_t>(top.internalWinId());
    const std::uint8_t depth = usableDepth(x11->connection(), window);
    if (depth == 0) {
        return nullptr;
    }
    const double ratio = top.devicePixelRatioF();
    const QPointF corner = QPointF(pane.mapTo(&top, QPoint())) * ratio;
    const QSizeF size = QSizeF(pane.size()) * ratio;
    return std::make_unique<SlidingPictureX11>(
        x11->connection(), window, depth,
        QRect(corner.toPoint(), QSize(std::max(1, static_cast<int>(std::lround(size.width()))),
                                      std::max(1, static_cast<int>(std::lround(size.height()))))));
}

} // namespace zvonivec
