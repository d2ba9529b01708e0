#include "settings/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace zvonivec {

namespace {

/// Whether a number with these digits is below 1. The digits are those of a number that is beyond
/// its type's range, either too large or too close to 0.
bool isBelowOne(std::string_view digits) {
    const std::size_t mantissaEnd = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, mantissaEnd);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    // The power of ten of the first digit that isn't 0.
    const std::int64_t power = first < point ? point - first - 1 : point - first;

    std::string_view exponent = digits.substr(std::min(mantissaEnd + 1, digits.size()));
    if (exponent.starts_with('+')) {
        exponent.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto [end, error] =
        std::from_chars(exponent.data(), exponent.data() + exponent.size(), value);
    if (error == std::errc::result_out_of_range) {
        return exponent.starts_with('-'); // no mantissa is as long as that
    }
    return value < -power;
}

/// Returns the whole text as a number. "inf" and "nan" aren't numbers. A number too close to 0 for
/// the type is 0.
template<class Number>
std::optional<Number> parsed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    std::string digits(text.substr(first, text.find_last_not_of(blanks) - first + 1));
    std::ranges::replace(digits, ',', '.');
    std::string_view rest = digits;
    if (rest.starts_with('+') && !rest.starts_with("+-")) {
        rest.remove_prefix(1);
    }
    Number number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (end != rest.data() + rest.size()) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range && isBelowOne(rest)) {
        return Number{0};
    }
    if (error != std::errc() || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

template<class Integer>
std::optional<Integer> rounded(std::string_view text) {
    const auto number = parsed<double>(text);
    if (!number) {
        return std::nullopt;
    }
    const double whole = std::nearbyint(*number); // halves to even
    if (whole < std::numeric_limits<Integer>::min() ||
        whole > std::numeric_limits<Integer>::max()) {
        return std::nullopt;
    }
    return static_cast<Integer>(whole);
}

} // namespace

std::optional<float> toSingle(std::string_view text) {
    return parsed<float>(text);
}

std::optional<std::int16_t> toInteger(std::string_view text) {
    return rounded<std::int16_t>(text);
}

std::optional<std::int32_t> toLong(std::string_view text) {
    return rounded<std::int32_t>(text);
}

std::string numberText(float number, char decimalSeparator) {
    std::array<char, 64> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::fixed);
    std::string text(buffer.data(), error == std::errc() ? end : buffer.data());
    std::ranges::replace(text, '.', decimalSeparator);
    return text;
}

std::string numberText(std::int32_t number) {
    return std::to_string(number);
}

} // namespace zvonivec
