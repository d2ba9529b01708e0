// Files to measure with.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

/// A file of so many megabytes whose frames have several bit rates, with or without a description
/// of itself at its start. Its sound is silence.
void writeFrames(const std::string& path, std::uint64_t megabytes, bool described);

/// Takes a file out of the disk's cache, where the system lets us.
void makeCold(const std::string& path);

} // namespace bench
