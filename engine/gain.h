// The volume law.
#pragma once

#include <cstdint>

namespace zvonivec {

/// The factor for samples at a volume of 0 to 100; values beyond go to the bound. 0 is silence and
/// 100 leaves samples as they are. Between them it is the cube of the percentage, the law that
/// desktop mixers use: 50 is -18 dB, and each step of 10 is heard as a step of similar size, where
/// a straight line would do nearly everything in its lowest tenth.
float gainOfVolume(std::int32_t percent);

} // namespace zvonivec
