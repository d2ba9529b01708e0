#include "platform/memory_return.h"

#include <QPixmapCache>

namespace zvonivec {

// The system takes freed memory back by itself.
MemoryReturn::~MemoryReturn() {
    QPixmapCache::clear();
}

} // namespace zvonivec
