// Where things lie on the body: shared by its drawing, by the window's layout and by the scripts
// that point at them (places.inc).
#pragma once

#include <array>
#include <stdexcept>
#include <string_view>

namespace zvonivec::skin {

/// The place of a control, in layout pixels.
struct Place {
    std::string_view control;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

inline constexpr std::array PLACES = std::to_array<Place>({
#include "skin/places.inc"
});

/// Returns the place of a control. A name that isn't in the table doesn't compile.
consteval Place placeOf(std::string_view control) {
    for (const Place& place : PLACES) {
        if (place.control == control) {
            return place;
        }
    }
    throw std::invalid_argument("no such control");
}

} // namespace zvonivec::skin
