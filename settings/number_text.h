// Numbers as the settings file has them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

// A text is a number when it is one as a whole, blanks around it aside: sign, digits with one comma
// or point as the decimal separator, exponent after "e". Both separators are read, whatever the
// user's country, so that a file survives a change of it. Whole numbers are rounded, halves to the
// even one. There is no value for any other text, nor for a number beyond the type's range.
[[nodiscard]] std::optional<float> toSingle(std::string_view text);
[[nodiscard]] std::optional<std::int16_t> toInteger(std::string_view text);
[[nodiscard]] std::optional<std::int32_t> toLong(std::string_view text);

/// As few digits as give the same number again, never with an exponent, no thousands separators.
[[nodiscard]] std::string numberText(float number, char decimalSeparator);
[[nodiscard]] std::string numberText(std::int32_t number);

} // namespace zvonivec
