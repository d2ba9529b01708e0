// Memory that a closed window leaves behind.
#pragma once

namespace zvonivec {

/// Gives back, at its own end, what windows that have closed leave behind: the toolkit's pictures
/// of parts of them, of which it would keep 10 MB, and freed memory that the process still holds.
/// Rules
///  * It is made before such a window. User-interface thread.
class MemoryReturn {
public:
    MemoryReturn() = default;
    MemoryReturn(const MemoryReturn&) = delete;
    MemoryReturn& operator=(const MemoryReturn&) = delete;
    ~MemoryReturn();
};

} // namespace zvonivec
