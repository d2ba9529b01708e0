#include "bench/probe.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace bench {

namespace {

std::string pathOf(pid_t process, const std::string& file) {
    return "/proc/" + std::to_string(process) + "/" + file;
}

/// Returns the number that follows a name at the start of a line, or 0.
double field(const std::string& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name)) {
            return std::strtod(line.c_str() + name.size(), nullptr);
        }
    }
    return 0;
}

} // namespace

Cost costOf(pid_t process) {
    Cost cost;
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(process, &clock) == 0 && clock_gettime(clock, &time) == 0) {
        cost.processor = static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }
    std::error_code gone;
    for (const auto& thread : std::filesystem::directory_iterator(pathOf(process, "task"), gone)) {
        cost.wakeUps += field(thread.path().string() + "/status", "voluntary_ctxt_switches:");
    }
    return cost;
}

std::map<std::string, double> threadsOf(pid_t process) {
    std::map<std::string, double> threads;
    std::error_code gone;
    for (const auto& thread : std::filesystem::directory_iterator(pathOf(process, "task"), gone)) {
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        if (thread.path().filename() == std::to_string(process)) {
            name = "main thread";
        }
        double nanoseconds = 0;
        std::ifstream(thread.path() / "schedstat") >> nanoseconds;
        threads[name] += nanoseconds / 1e9;
    }
    return threads;
}

Memory memoryOf(pid_t process) {
    constexpr double kilobyte = 1024;
    const std::string file = pathOf(process, "smaps_rollup");
    return {.proportional = field(file, "Pss:") * kilobyte,
            .ownWritten = field(file, "Private_Dirty:") * kilobyte};
}

std::optional<double> packageEnergy() {
    constexpr double microjoule = 1e-6;
    std::optional<double> joules;
    std::error_code none;
    for (const auto& zone : std::filesystem::directory_iterator("/sys/class/powercap", none)) {
        std::string name;
        double energy = 0;
        if (std::getline(std::ifstream(zone.path() / "name"), name) &&
            name.starts_with("package") && std::ifstream(zone.path() / "energy_uj") >> energy) {
            joules = joules.value_or(0) + energy * microjoule;
        }
    }
    return joules;
}

std::set<std::string> librariesOf(pid_t process) {
    std::set<std::string> libraries;
    std::ifstream maps(pathOf(process, "maps"));
    for (std::string line; std::getline(maps, line);) {
        const std::size_t path = line.find('/');
        if (path != std::string::npos && line.find(".so", path) != std::string::npos &&
            !line.ends_with("(deleted)")) {
            libraries.insert(line.substr(path));
        }
    }
    return libraries;
}

} // namespace bench
