#include "platform/end_requests.h"

#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

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

} // namespace

struct EndRequests::Watch {
    std::array<int, 2> pipe{-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
};

EndRequests::EndRequests(std::function<void()> end) : watch_(std::make_unique<Watch>()) {
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
