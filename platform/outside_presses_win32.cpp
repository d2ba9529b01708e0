// Windows gives the menu the activation when it is shown, and takes it away with a press elsewhere.

#include "platform/outside_presses.h"

namespace zvonivec {

struct OutsidePresses::Watch {};

OutsidePresses::OutsidePresses(std::uintptr_t /*window*/, std::function<void()> /*pressed*/) {}

OutsidePresses::~OutsidePresses() = default;

} // namespace zvonivec
