// Whether Wine takes the place of Windows.
#pragma once

namespace support {

[[nodiscard]] bool underWine();

} // namespace support
