#include "platform/memory_return.h"

#include <QPixmapCache>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace zvonivec {

MemoryReturn::~MemoryReturn() {
    QPixmapCache::clear();
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace zvonivec
