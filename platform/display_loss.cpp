#include "platform/display_loss.h"

#include <cstdlib>
#include <utility>

namespace zvonivec {

namespace {

std::function<void()> deed; // user-interface thread, which is also the one that exits

void doDeed() {
    if (deed) {
        std::exchange(deed, nullptr)();
    }
}

} // namespace

DisplayLoss::DisplayLoss(std::function<void()> lastDeed) {
    [[maybe_unused]] static const int registered = std::atexit(doDeed);
    deed = std::move(lastDeed);
}

DisplayLoss::~DisplayLoss() {
    deed = nullptr;
}

} // namespace zvonivec
