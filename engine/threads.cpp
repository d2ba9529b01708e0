#include "engine/threads.h"

#include <system_error>
#include <utility>

namespace zvonivec {

std::optional<Failure> startThread(std::thread& thread, std::function<void()> work) {
    try {
        thread = std::thread(std::move(work));
        return std::nullopt;
    } catch (const std::system_error& error) {
        return Failure{Failure::Cause::noThread, error.what()};
    }
}

} // namespace zvonivec
