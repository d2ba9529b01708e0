// The window managers that suites run under.
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace support {

/// Returns the usual window managers, or those that the variable ZVONIVEC_DESKTOPS names
/// ("kwin,none"), which tests/desktop/matrix sets. An empty name stands for no window manager.
inline std::vector<std::string> desktops(std::vector<std::string> usual) {
    const char* named = std::getenv("ZVONIVEC_DESKTOPS");
    if (named == nullptr) {
        return usual;
    }
    std::vector<std::string> all;
    std::istringstream names(named);
    for (std::string name; std::getline(names, name, ',');) {
        all.push_back(name == "none" ? "" : name);
    }
    return all;
}

/// The same without "none".
inline std::vector<std::string> managedDesktops(std::vector<std::string> usual) {
    std::vector<std::string> all = desktops(std::move(usual));
    std::erase(all, "");
    return all;
}

/// Returns the Wayland sessions that ZVONIVEC_SESSIONS names, usually none: few people have all of
/// the compositors. tests/desktop/matrix sets it.
inline std::vector<std::string> sessions() {
    const char* named = std::getenv("ZVONIVEC_SESSIONS");
    std::istringstream names(named == nullptr ? "" : named);
    std::vector<std::string> all;
    for (std::string name; std::getline(names, name, ',');) {
        all.push_back(name);
    }
    return all;
}

/// Returns the name of a window manager in the name of a test.
inline std::string desktopName(const testing::TestParamInfo<std::string>& tested) {
    return tested.param.empty() ? "none" : tested.param;
}

} // namespace support
