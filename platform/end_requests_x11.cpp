#include "platform/end_requests.h"

#include "platform/x11.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QDialog>
#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace zvonivec {

namespace {

constexpr std::array END_SIGNALS{SIGTERM, SIGINT, SIGHUP};

/// The end of a pipe that the signal handler writes to. A handler may write to a pipe, and an event
/// loop can wait for it.
std::atomic<int> signalPipe{-1};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void noteSignal(int /*number*/) {
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signalPipe, &byte, 1);
    errno = savedError;
}

/// Requests to close the main window while a box is open. The toolkit drops such requests.
class BlockedCloseRequests : public QAbstractNativeEventFilter {
public:
    explicit BlockedCloseRequests(std::function<void()> end) : end_(std::move(end)) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray& /*type*/, void* message,
                           qintptr* /*result*/) override {
        const auto* event = static_cast<const xcb_client_message_event_t*>(message);
        xcb_connection_t* server = x11::connection();
        if (server == nullptr || (event->response_type & 0x7FU) != XCB_CLIENT_MESSAGE ||
            event->type != x11::atom(server, "WM_PROTOCOLS") ||
            event->data.data32[0] != x11::atom(server, "WM_DELETE_WINDOW")) {
            return false;
        }
        const QWidget* asked = QWidget::find(event->window);
        const QWidget* box = QApplication::activeModalWidget();
        if (asked == nullptr || box == nullptr || asked == box ||
            qobject_cast<const QDialog*>(asked) != nullptr) {
            return false;
        }
        end_();
        return true;
    }

private:
    std::function<void()> end_;
};

} // namespace

struct EndRequests::Watch {
    std::array<int, 2> pipe{-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
    std::unique_ptr<BlockedCloseRequests> closeRequests;
};

EndRequests::EndRequests(std::function<void()> end) : watch_(std::make_unique<Watch>()) {
    watch_->closeRequests = std::make_unique<BlockedCloseRequests>(end);
    if (pipe2(watch_->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    signalPipe = watch_->pipe[1];
    watch_->notifier = std::make_unique<QSocketNotifier>(watch_->pipe[0], QSocketNotifier::Read);
    QObject::connect(watch_->notifier.get(), &QSocketNotifier::activated,
                     [watch = watch_.get(), end = std::move(end)] {
                         char byte = 0;
                         while (read(watch->pipe[0], &byte, 1) == 1) {
                         }
                         end();
                     });
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : END_SIGNALS) {
        sigaction(number, &action, nullptr);
    }
}

EndRequests::~EndRequests() {
    if (!watch_->notifier) {
        return;
    }
    // A second request must not kill the program while it is ending.
    for (const int number : END_SIGNALS) {
        signal(number, SIG_IGN);
    }
    signalPipe = -1;
    close(watch_->pipe[0]);
    close(watch_->pipe[1]);
}

} // namespace zvonivec
