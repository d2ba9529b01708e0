// Files to measure with.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

/// Writes a silent file of this size whose frames have several bit rates. Described: it begins with
/// a Xing frame.
void writeFrames(const std::string& path, std::uint64_t megabytes, bool described);

/// Drops a file from the system's cache where the system allows it.
void makeCold(const std::string& path);

} // namespace bench
