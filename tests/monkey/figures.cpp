#include "tests/monkey/figures.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace monkey {

namespace {

double countOf(const std::string& folder) {
    std::error_code error;
    const std::filesystem::directory_iterator entries(folder, error);
    return error ? 0 : static_cast<double>(std::distance(begin(entries), end(entries)));
}

} // namespace

Holdings holdingsOf(pid_t process) {
    const std::string folder = "/proc/" + std::to_string(process);
    Holdings holdings{.threads = countOf(folder + "/task"), .descriptors = countOf(folder + "/fd")};
    std::ifstream sizes(folder + "/smaps_rollup");
    std::string word;
    while (sizes >> word) {
        if (word == "Private_Dirty:") {
            sizes >> holdings.kilobytes;
        }
    }
    return holdings;
}

Growth::Slope Growth::slope() const {
    double squares = 0;
    double products = 0;
    double samples = 0;
    double lives = 0;
    const auto deviations = [this](const auto& use) {
        for (const auto& life : lives_) {
            Sample mean{0, 0};
            for (const Sample& sample : life) {
                mean.actions += sample.actions / static_cast<double>(life.size());
                mean.value += sample.value / static_cast<double>(life.size());
            }
            for (const Sample& sample : life) {
                use(sample.actions - mean.actions, sample.value - mean.value);
            }
        }
    };
    for (const auto& life : lives_) {
        samples += static_cast<double>(life.size());
        lives += life.empty() ? 0 : 1;
    }
    deviations([&](double actions, double value) {
        squares += actions * actions;
        products += actions * value;
    });
    const double freedom = samples - lives - 1;
    if (squares <= 0 || freedom < 1) {
        return {};
    }
    const double slope = products / squares;
    double residues = 0;
    deviations(
        [&](double actions, double value) { residues += std::pow(value - slope * actions, 2); });
    return {.value = slope * 1000, .error = std::sqrt(residues / freedom / squares) * 1000};
}

double Growth::largest() const {
    double most = 0;
    for (const auto& life : lives_) {
        for (const Sample& sample : life) {
            most = std::max(most, sample.value);
        }
    }
    return most;
}

} // namespace monkey
