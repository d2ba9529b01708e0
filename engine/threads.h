// The one place where the engine makes threads.
#pragma once

#include "engine/failure.h"

#include <functional>
#include <optional>
#include <thread>

namespace zvonivec {

/// Makes a thread that does some work. Returns a failure, and makes nothing, when the system gives
/// no thread.
std::optional<Failure> startThread(std::thread& thread, std::function<void()> work);

} // namespace zvonivec
