// The outline of the main window, shared by the window's shape and by the drawing of its body.
#pragma once

#include <array>
#include <cstdint>

namespace zvonivec::skin {

struct OutlineVertex {
    std::int32_t x; ///< pixels from the left edge of the window
    std::int32_t y; ///< pixels from its top edge
};

/// A simple polygon, closed from the last vertex to the first. The small steps and the missing
/// symmetry are intended: the body picture is drawn to exactly these edges. Left and top edges
/// belong to the window, right and bottom edges don't.
inline constexpr std::array<OutlineVertex, 47> WINDOW_OUTLINE{{
    {0, 314},   {0, 14},    {2, 11},    {11, 2},    {12, 2},    {13, 1},    {14, 0},    {29, 0},
    {37, 8},    {38, 8},    {40, 9},    {297, 9},   {299, 7},   {300, 7},   {303, 4},   {303, 3},
    {306, 0},   {320, 0},   {321, 1},   {322, 1},   {332, 12},  {334, 15},  {335, 19},  {336, 19},
    {336, 20},  {337, 22},  {337, 311}, {336, 311}, {335, 313}, {335, 316}, {334, 316}, {334, 317},
    {332, 319}, {332, 320}, {329, 323}, {329, 324}, {328, 325}, {328, 326}, {325, 329}, {325, 330},
    {319, 336}, {18, 336},  {17, 336},  {8, 327},   {8, 326},   {5, 323},   {0, 313},
}};

} // namespace zvonivec::skin
