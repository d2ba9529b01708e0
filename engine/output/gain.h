// The volume law.
#pragma once

#include <cstdint>

namespace zvonivec {

/// Factor for samples at a volume of 0 to 100; values outside go to the bound. 0 is silence, 100
/// leaves samples unchanged. The factor is the cube of the percentage, the law of desktop mixers:
/// 50 is -18 dB, and steps of 10 sound equally large. On a straight line nearly all of the change
/// would be heard in the lowest tenth.
float gainOfVolume(std::int32_t percent);

} // namespace zvonivec
