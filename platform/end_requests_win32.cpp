#include "platform/end_requests.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <utility>
#include <windows.h>

namespace zvonivec {

/// The session tells every window of its end; the process may be killed as soon as they have
/// answered. The question before, whether the session may end, is left to the toolkit, which
/// agrees: another program may still say no. A request to close one window comes to the form.
struct EndRequests::Watch : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray& /*type*/, void* message,
                           qintptr* /*result*/) override {
        const auto& received = *static_cast<const MSG*>(message);
        if (received.message == WM_ENDSESSION && received.wParam != FALSE && end) {
            std::exchange(end, nullptr)();
        }
        return false;
    }

    std::function<void()> end;
};

EndRequests::EndRequests(std::function<void()> end) : watch_(std::make_unique<Watch>()) {
    watch_->end = std::move(end);
    QCoreApplication::instance()->installNativeEventFilter(watch_.get());
}

EndRequests::~EndRequests() {
    QCoreApplication::instance()->removeNativeEventFilter(watch_.get());
}

} // namespace zvonivec
