#include "bench/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <thread>

namespace bench {

namespace {

constexpr double MEGABYTE = 1.0 / (1 << 20);

constexpr std::array ALL{
    Column{"playing", "Playing, s/min", 1, 2},
    Column{"minimised", "Minimised, s/min", 1, 2},
    Column{"idle", "Idle, s/min", 1, 3},
    Column{"playing_display", "Display server, playing, s/min", 1, 2},
    Column{"memory", "Memory (PSS), MB", MEGABYTE, 1},
    Column{"own_memory", "Private dirty, MB", MEGABYTE, 1},
    Column{"window", "Window, ms", 1000, 0},
    Column{"sound", "Sound, ms", 1000, 0},
    Column{"play", "Play to sound, ms", 1000, 0},
    Column{"stop", "Stop to silence, ms", 1000, 0},
    Column{"playing_wake_ups", "Wake-ups/s, playing", 1, 1},
    Column{"minimised_wake_ups", "Wake-ups/s, minimised", 1, 1},
    Column{"idle_wake_ups", "Wake-ups/s, idle", 1, 1},
    Column{"playing_energy", "Processor's energy, playing, J/min", 1, 0},
    Column{"program", "Program, MB", MEGABYTE, 1},
    Column{"own_libraries", "Libraries of its own, MB", MEGABYTE, 1},
};

std::string number(double value, int digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, value);
    return text.data();
}

std::string lineOf(const std::string& file, std::string_view name, std::size_t from) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(name)) {
            std::string rest = line.substr(line.find_first_of(":=") + 1 + from);
            std::erase(rest, '"');
            return rest;
        }
    }
    return "unknown";
}

} // namespace

std::optional<double> median(std::vector<double> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::span<const Column> columns() {
    return ALL;
}

void Report::add(std::string_view subject, std::string_view key, double value) {
    if (values_.find(subject) == values_.end()) {
        order_.emplace_back(subject);
    }
    values_[std::string(subject)][std::string(key)].push_back(value);
}

void Report::add(std::string_view subject, std::string_view key, std::optional<double> value) {
    if (value) {
        add(subject, key, *value);
    }
}

std::vector<std::string> Report::keys(std::string_view subject) const {
    std::vector<std::string> keys;
    if (const auto player = values_.find(subject); player != values_.end()) {
        for (const auto& [key, values] : player->second) {
            keys.push_back(key);
        }
    }
    return keys;
}

std::optional<double> Report::of(std::string_view subject, std::string_view key) const {
    const auto player = values_.find(subject);
    if (player == values_.end()) {
        return std::nullopt;
    }
    const auto found = player->second.find(key);
    return found == player->second.end() ? std::nullopt : median(found->second);
}

std::optional<double> Report::smallest(std::span<const std::string_view> subjects,
                                       std::string_view key) const {
    std::optional<double> least;
    for (const std::string_view subject : subjects) {
        if (const auto value = of(subject, key)) {
            least = std::min(*value, least.value_or(*value));
        }
    }
    return least;
}

std::string Report::table() const {
    // Each figure has a row, because so many columns would be too wide for a page.
    std::string text = "| |";
    std::string rule = "\n|---|";
    for (const std::string& subject : order_) {
        text += " " + subject + " |";
        rule += "---:|";
    }
    text += rule + "\n";
    for (const Column& column : ALL) {
        text += "| " + std::string(column.title) + " |";
        for (const std::string& subject : order_) {
            const auto value = of(subject, column.key);
            text += " " + (value ? number(*value * column.scale, column.digits) : "–") + " |";
        }
        text += "\n";
    }
    return text;
}

std::string Report::json(const std::string& machine) const {
    std::string text = "{\n  \"machine\": \"" + machine + "\",\n  \"players\": {";
    const char* betweenPlayers = "\n";
    for (const std::string& subject : order_) {
        text += betweenPlayers;
        text += "    \"" + subject + "\": {";
        betweenPlayers = ",\n";
        const char* betweenFigures = "\n";
        for (const auto& [key, values] : values_.at(subject)) {
            text += betweenFigures;
            text += "      \"" + key + R"(": {"median": )";
            text += number(median(values).value_or(0), 6) + ", \"all\": [";
            betweenFigures = ",\n";
            const char* between = "";
            for (const double value : values) {
                text += between;
                text += number(value, 6);
                between = ", ";
            }
            text += "]}";
        }
        text += "\n    }";
    }
    return text + "\n  }\n}\n";
}

std::string machine() {
    constexpr double kilobytesInGigabyte = 1 << 20;
    return lineOf("/proc/cpuinfo", "model name", 1) + ", " +
           std::to_string(std::thread::hardware_concurrency()) + " cores, " +
           number(std::strtod(lineOf("/proc/meminfo", "MemTotal", 0).c_str(), nullptr) /
                      kilobytesInGigabyte,
                  0) +
           " GB, " + lineOf("/etc/os-release", "PRETTY_NAME", 0);
}

} // namespace bench
