// A process that gets no threads.
#pragma once

#include <pthread.h>

namespace support {

/// As long as it lives, threads without a stack size of their own are refused: none has room for
/// the stack that is asked for.
class NoThreads {
public:
    NoThreads() {
        pthread_getattr_default_np(&before_);
        pthread_attr_t huge = before_;
        pthread_attr_setstacksize(&huge, size_t{1} << 46U);
        pthread_setattr_default_np(&huge);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
    ~NoThreads() { pthread_setattr_default_np(&before_); }

private:
    pthread_attr_t before_{};
};

} // namespace support
