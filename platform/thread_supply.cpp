#include "platform/thread_supply.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace zvonivec {

bool canHaveThreads(int count) {
    // Not a std::latch: on Windows it may lose a wake-up, and the wait then never ends.
    std::mutex untilAllHaveBegun;
    std::unique_lock begin(untilAllHaveBegun);
    std::vector<std::thread> threads;
    bool given = true;
    try {
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&] { const std::lock_guard wait(untilAllHaveBegun); });
        }
    } catch (const std::system_error&) {
        given = false;
    }
    begin.unlock();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return given;
}

} // namespace zvonivec
