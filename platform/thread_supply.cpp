#include "platform/thread_supply.h"

#include <latch>
#include <system_error>
#include <thread>
#include <vector>

namespace zvonivec {

bool canHaveThreads(int count) {
    std::latch allHaveBegun(1);
    std::vector<std::thread> threads;
    bool given = true;
    try {
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&] { allHaveBegun.wait(); });
        }
    } catch (const std::system_error&) {
        given = false;
    }
    allHaveBegun.count_down();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return given;
}

} // namespace zvonivec
