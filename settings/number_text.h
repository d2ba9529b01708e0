// Numbers in the writing of the settings file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

// A number is a sign, digits with one comma or point as the decimal separator, and an exponent
// after "e"; blanks may surround it. Both separators are read in every locale, so that a file
// survives a change of locale. Conversions to whole numbers round halves to even. A number that is
// too close to 0 for the type is 0. Any other text, and a number beyond the type's range, gives no
// value.
[[nodiscard]] std::optional<float> toSingle(std::string_view text);
[[nodiscard]] std::optional<std::int16_t> toInteger(std::string_view text);
[[nodiscard]] std::optional<std::int32_t> toLong(std::string_view text);

/// Returns the shortest digits that read back as the same number, without an exponent and without
/// thousands separators.
[[nodiscard]] std::string numberText(float number, char decimalSeparator);
[[nodiscard]] std::string numberText(std::int32_t number);

} // namespace zvonivec
