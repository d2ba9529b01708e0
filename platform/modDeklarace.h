// The operating system's operations that the program uses, by the names that Windows gives them.
// No result is of interest: what the system can't do, it leaves.
#pragma once

#include "main_window/window_outline.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zvonivec::modDeklarace {

inline constexpr int WINDING = 2;

struct RegionData;
/// A set of a window's pixels; null where the system could not make it.
using Region = std::shared_ptr<const RegionData>;

/// The pixels inside a polygon: those on its left and top edges are in, those on its right and
/// bottom edges out. Vertices are in the window's pixels.
[[nodiscard]] Region CreatePolygonRgn(std::span<const OutlineVertex> vertices, int fillMode);

/// Makes a region all of a window that is seen and takes the pointer; without a region it is the
/// whole rectangle.
void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw);

/// Marks, for as long as the process lives, that a program of this name runs. Any number of
/// programs may use the same name.
void CreateMutexA(const std::string& name);

} // namespace zvonivec::modDeklarace
