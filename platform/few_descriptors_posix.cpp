#include "platform/few_descriptors.h"

#include <cstdlib>
#include <sys/resource.h>

namespace zvonivec {

void spareDescriptors() {
    constexpr rlim_t few = 64; // the player needs some 20
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < few) {
        setenv("QT_XCB_NO_MITSHM", "1", 1); // read by the toolkit
    }
}

} // namespace zvonivec
