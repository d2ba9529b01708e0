#include "controls/Timer.h"

#include <QTimer>

namespace zvonivec {

Timer::Timer(int interval) : timer_(std::make_unique<QTimer>()) {
    timer_->setTimerType(Qt::PreciseTimer);
    timer_->setInterval(interval);
    QObject::connect(timer_.get(), &QTimer::timeout, [this] {
        if (Tick) {
            Tick();
        }
    });
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
