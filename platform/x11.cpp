#include "platform/x11.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>
#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <xcb/xinput.h>

namespace zvonivec::x11 {

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp != nullptr
                          ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>()
                          : nullptr;
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t root(xcb_connection_t* server) {
    return xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
}

xcb_atom_t atom(xcb_connection_t* server, std::string_view name) {
    // User-interface thread, and one server. Its atoms last as long as it does.
    static std::map<std::string, xcb_atom_t, std::less<>> known;
    const auto found = known.find(name);
    if (found != known.end()) {
        return found->second;
    }
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(
            server,
            xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr),
        &std::free);
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    return known.emplace(name, reply->atom).first->second;
}

std::vector<std::uint32_t> property(xcb_connection_t* server, xcb_window_t window,
                                    xcb_atom_t property) {
    constexpr std::uint32_t most = 64;
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(
            server, xcb_get_property(server, 0, window, property, XCB_ATOM_ANY, 0, most), nullptr),
        &std::free);
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

void sendToManager(xcb_connection_t* server, xcb_window_t window, xcb_atom_t type,
                   const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), std::begin(message.data.data32));
    xcb_send_event(server, 0, root(server),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(server);
}

bool hasCompositor(xcb_connection_t* server) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(
            server, xcb_get_selection_owner(server, atom(server, "_NET_WM_CM_S0")), nullptr),
        &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

std::optional<Pointer> pointer(xcb_connection_t* server) {
    const XcbReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(server, xcb_query_pointer(server, root(server)), nullptr),
        &std::free);
    if (!reply) {
        return std::nullopt;
    }
    constexpr unsigned buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return Pointer{.place = {reply->root_x, reply->root_y},
                   .pressed = (reply->mask & buttons) != 0};
}

namespace {

/// The event of the extension XFIXES about a selection's owner. The toolkit asks for those about
/// the compositor's selection.
struct SelectionEvent {
    std::uint8_t type;
    std::uint8_t kind;
    std::uint16_t sequence;
    std::uint32_t window;
    std::uint32_t owner;
    std::uint32_t selection;
};

/// A function that is called for an event, as long as its receiver exists.
struct Listener {
    QPointer<QObject> receiver;
    xcb_window_t window = XCB_WINDOW_NONE;
    std::function<void(const xcb_generic_event_t&)> function;
};

void call(std::vector<Listener>& listeners, xcb_window_t window, const xcb_generic_event_t& event) {
    std::erase_if(listeners, [](const Listener& listener) { return listener.receiver.isNull(); });
    const std::vector<Listener> all = listeners; // a function may add one
    for (const Listener& listener : all) {
        if (listener.window == window) {
            listener.function(event);
        }
    }
}

/// The events of the X server, before the toolkit gets them. One object for the whole process, as
/// there is one connection.
class Events : public QObject, public QAbstractNativeEventFilter {
public:
    explicit Events(xcb_connection_t* server)
        : QObject(qGuiApp), root_(root(server)),
          input_(extension(server, "XInputExtension").opcode),
          selectionEvent_(extension(server, "XFIXES").firstEvent),
          compositor_(atom(server, "_NET_WM_CM_S0")) {
        qGuiApp->installNativeEventFilter(this);
        qGuiApp->installEventFilter(this);
    }

    /// Several presses may have come before the toolkit serves the first.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress && watched->isWindowType()) {
            const auto time =
                static_cast<xcb_timestamp_t>(static_cast<const QMouseEvent*>(event)->timestamp());
            const auto served = std::ranges::find(presses_, time, &TimedPress::time);
            press.reset();
            if (served != presses_.end()) {
                press = served->press;
                presses_.erase(presses_.begin(), std::next(served));
            }
        }
        return false;
    }

    bool nativeEventFilter(const QByteArray& /*type*/, void* message,
                           qintptr* /*result*/) override {
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        const auto type = static_cast<std::uint8_t>(event->response_type & 0x7FU);
        if (type == XCB_GE_GENERIC) {
            takeInput(*static_cast<const xcb_ge_generic_event_t*>(message));
        } else if (type == XCB_CONFIGURE_NOTIFY) {
            ++configureEvents;
            takePlace(*static_cast<const xcb_configure_notify_event_t*>(message),
                      (event->response_type & 0x80U) != 0);
        } else if (type == XCB_REPARENT_NOTIFY) {
            const auto* reparented = static_cast<const xcb_reparent_notify_event_t*>(message);
            hasFrame_[reparented->window] = reparented->parent != root_;
        } else if (type == XCB_DESTROY_NOTIFY) {
            const auto* destroyed = static_cast<const xcb_destroy_notify_event_t*>(message);
            hasFrame_.erase(destroyed->window);
            places.erase(destroyed->window);
        } else if (type == XCB_MAP_NOTIFY) {
            call(onMap, static_cast<const xcb_map_notify_event_t*>(message)->window, *event);
        } else if (type == XCB_VISIBILITY_NOTIFY) {
            call(onVisibility, static_cast<const xcb_visibility_notify_event_t*>(message)->window,
                 *event);
        } else if (selectionEvent_ != 0 && type == selectionEvent_ &&
                   static_cast<const SelectionEvent*>(message)->selection == compositor_) {
            call(onCompositor, XCB_WINDOW_NONE, *event);
        }
        return false;
    }

    std::optional<Press> press; ///< the one that the toolkit serves or has served last
    unsigned configureEvents = 0;
    std::map<xcb_window_t, QPoint> places; ///< on the screen: last reported or asked for
    std::vector<Listener> onMap;
    std::vector<Listener> onVisibility;
    std::vector<Listener> onCompositor;

private:
    struct TimedPress {
        xcb_timestamp_t time;
        Press press;
    };

    struct Extension {
        std::uint8_t opcode = 0;
        std::uint8_t firstEvent = 0;
    };

    static Extension extension(xcb_connection_t* server, std::string_view name) {
        const XcbReply<xcb_query_extension_reply_t> reply(
            xcb_query_extension_reply(
                server,
                xcb_query_extension(server, static_cast<std::uint16_t>(name.size()), name.data()),
                nullptr),
            &std::free);
        return reply && reply->present != 0
                   ? Extension{.opcode = reply->major_opcode, .firstEvent = reply->first_event}
                   : Extension{};
    }

    void takeInput(const xcb_ge_generic_event_t& event) {
        if (event.extension != input_ || event.event_type != XCB_INPUT_BUTTON_PRESS) {
            return;
        }
        const auto& input = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
        const auto whole = [](xcb_input_fp1616_t fixed) { return fixed >> 16; };
        constexpr std::size_t most = 32;
        if (presses_.size() == most) {
            presses_.pop_front();
        }
        presses_.push_back({.time = input.time,
                            .press = {.place = {whole(input.root_x), whole(input.root_y)},
                                      .button = input.detail,
                                      .device = input.deviceid}});
    }

    /// A window manager's message tells the place on the screen. The server tells the place in the
    /// frame, if there is one.
    void takePlace(const xcb_configure_notify_event_t& event, bool fromManager) {
        if (fromManager || !hasFrame_[event.window]) {
            places[event.window] = {event.x, event.y};
        }
    }

    std::deque<TimedPress> presses_; ///< those that haven't been served
    std::map<xcb_window_t, bool> hasFrame_;
    xcb_window_t root_;
    std::uint8_t input_;
    std::uint8_t selectionEvent_;
    xcb_atom_t compositor_;
};

QPointer<Events> events;

} // namespace

void watchEvents() {
    xcb_connection_t* server = connection();
    if (server != nullptr && events == nullptr) {
        events = new Events(server);
    }
}

std::optional<Press> lastPress() {
    return events != nullptr ? events->press : std::nullopt;
}

unsigned configureEvents() {
    return events != nullptr ? events->configureEvents : 0;
}

std::optional<QPoint> lastPlace(xcb_window_t window) {
    if (events == nullptr || !events->places.contains(window)) {
        return std::nullopt;
    }
    return events->places[window];
}

void expectPlace(xcb_window_t window, QPoint place) {
    if (events != nullptr) {
        events->places[window] = place;
    }
}

namespace {

void listen(std::vector<Listener> Events::*listeners, QObject* receiver, xcb_window_t window,
            std::function<void()> function) {
    watchEvents();
    if (events != nullptr) {
        std::vector<Listener>& all = (*events).*listeners;
        all.push_back(
            {receiver, window, [function = std::move(function)](const auto&) { function(); }});
    }
}

} // namespace

void onCompositorChange(QObject* receiver, std::function<void()> function) {
    listen(&Events::onCompositor, receiver, XCB_WINDOW_NONE, std::move(function));
}

void onMap(QObject* receiver, xcb_window_t window, std::function<void()> function) {
    listen(&Events::onMap, receiver, window, std::move(function));
}

void onCover(QObject* receiver, xcb_window_t window, std::function<void(bool)> function) {
    watchEvents();
    if (events == nullptr) {
        return;
    }
    xcb_connection_t* server = connection();
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, window), nullptr),
        &std::free);
    if (!attributes) {
        return;
    }
    const std::uint32_t wanted = attributes->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(server, window, XCB_CW_EVENT_MASK, &wanted);
    events->onVisibility.push_back(
        {receiver, window, [function = std::move(function)](const xcb_generic_event_t& event) {
             const auto& seen = reinterpret_cast<const xcb_visibility_notify_event_t&>(event);
             function(seen.state == XCB_VISIBILITY_FULLY_OBSCURED);
         }});
}

} // namespace zvonivec::x11
