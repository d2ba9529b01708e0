#include "platform/end_requests.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <utility>
#include <windows.h>

namespace zvonivec {

/// Watches for the message that ends the session. The process may be killed as soon as its windows
/// have answered it. The toolkit agrees to the earlier question whether the session may end:
/// another program may still refuse. A request to close a single window goes to the form.
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
