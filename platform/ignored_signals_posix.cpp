#include "platform/ignored_signals.h"

#include <csignal>
#include <initializer_list>

namespace zvonivec {

void ignoreSignalsOfFailedWrites() {
    for (const int number : {SIGPIPE, SIGXFSZ}) {
        signal(number, SIG_IGN);
    }
}

} // namespace zvonivec
