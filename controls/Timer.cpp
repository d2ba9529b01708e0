#include "controls/Timer.h"

#include <QThread>
#include <QTimer>
#include <utility>

namespace zvonivec {

Timer::Timer(int interval) : timer_(std::make_unique<QTimer>()) {
    timer_->setTimerType(Qt::PreciseTimer);
    timer_->setInterval(interval);
    QObject::connect(timer_.get(), &QTimer::timeout, [this] { tick(); });
}

void Timer::tick() {
    // The toolkit keeps a timer back until the handler of its last event has returned, even in the
    // event loop of a box that has opened in the handler's message pass. Started again, it counts
    // as a new timer.
    timer_->start();
    // A message pass of the tick's own handler has the same number of loops around it.
    const int loops = QThread::currentThread()->loopLevel() + 1;
    if (!Tick || tickingIn_ >= loops) {
        return;
    }
    const int outer = std::exchange(tickingIn_, loops);
    Tick();
    tickingIn_ = outer;
}

Timer::~Timer() = default;

bool Timer::Enabled() const {
    return timer_->isActive();
}

int Timer::Interval() const {
    return timer_->interval();
}

void Timer::setInterval(int milliseconds) {
    if (milliseconds > 0 && milliseconds != Interval()) {
        timer_->setInterval(milliseconds);
    }
}

void Timer::setEnabled(bool on) {
    if (on && !timer_->isActive()) {
        timer_->start();
    } else if (!on) {
        timer_->stop();
    }
}

} // namespace zvonivec
