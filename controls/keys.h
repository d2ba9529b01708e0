// Keys, by the numbers that Windows gives them. A letter's number is its capital's.
#pragma once

#include <cstdint>
#include <string>

namespace zvonivec {

inline constexpr std::int16_t vbKeyTab = 9;
inline constexpr std::int16_t vbKeyReturn = 13; ///< both keys
inline constexpr std::int16_t vbKeyEscape = 27;
inline constexpr std::int16_t vbKeySpace = 32;
inline constexpr std::int16_t vbKeyPageUp = 33;
inline constexpr std::int16_t vbKeyPageDown = 34;
inline constexpr std::int16_t vbKeyEnd = 35;
inline constexpr std::int16_t vbKeyHome = 36;
inline constexpr std::int16_t vbKeyLeft = 37;
inline constexpr std::int16_t vbKeyUp = 38;
inline constexpr std::int16_t vbKeyRight = 39;
inline constexpr std::int16_t vbKeyDown = 40;
inline constexpr std::int16_t vbKeyMenu = 93; ///< the key that opens the menu
inline constexpr std::int16_t vbKeyF1 = 112;
inline constexpr std::int16_t vbKeyF10 = 121;

inline constexpr std::int16_t SHIFT_KEY = 1;
inline constexpr std::int16_t CONTROL_KEY = 2;
inline constexpr std::int16_t ALT_KEY = 4;

/// A pressed key.
struct KeyArgs {
    std::int16_t KeyCode = 0; ///< 0 for a key without a number here
    std::int16_t Shift = 0;   ///< sum of the constants above
    bool Repeated = false;    ///< the key is held down, and this is one of its repetitions
    std::string Letter;       ///< firstLetter of what the key types
};

/// Returns the first letter or digit of a text, small and without accents: "z" for " Žánr". Returns
/// an empty text when there is none.
[[nodiscard]] std::string firstLetter(const std::string& text);

} // namespace zvonivec
