#include "engine/output/gain.h"

#include <algorithm>

namespace zvonivec {

float gainOfVolume(std::int32_t percent) {
    const float part = static_cast<float>(std::clamp(percent, 0, 100)) / 100.0F;
    return part * part * part;
}

} // namespace zvonivec
