#include "platform/display_loss.h"

#include <cstdlib>
#include <utility>

namespace zvonivec {

namespace {

std::function<void()> action; // user-interface thread, which also calls exit

void runAction() {
    if (action) {
        std::exchange(action, nullptr)();
    }
}

} // namespace

DisplayLoss::DisplayLoss(std::function<void()> lastAction) {
    [[maybe_unused]] static const int registered = std::atexit(runAction);
    action = std::move(lastAction);
}

DisplayLoss::~DisplayLoss() {
    action = nullptr;
}

} // namespace zvonivec
