// The compression of PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zvonivec::skin {

/// The data as a deflate stream, without any wrapping.
std::string deflated(const std::vector<std::uint8_t>& data);

} // namespace zvonivec::skin
