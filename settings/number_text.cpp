#include "settings/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace zvonivec {

namespace {

/// Returns the whole text as a number. "inf" and "nan" aren't numbers.
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
    if (error != std::errc() || end != rest.data() + rest.size() || !std::isfinite(number)) {
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
