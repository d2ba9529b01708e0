#include "skin/drawing/palette.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>

namespace zvonivec::skin {

namespace {

struct Counted {
    std::array<int, 3> channels{};
    std::int64_t count = 0;
};

/// A run of the colour list and the channel along which it spreads most.
struct Cell {
    std::size_t first = 0;
    std::size_t last = 0; ///< one past the end
    std::size_t channel = 0;
    std::int64_t spread = 0; ///< squared deviations, summed over the pixels
};

Cell measured(const std::vector<Counted>& colours, std::size_t first, std::size_t last) {
    Cell cell{first, last, 0, 0};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        std::int64_t count = 0;
        std::int64_t sum = 0;
        std::int64_t squares = 0;
        for (std::size_t i = first; i < last; ++i) {
            const std::int64_t value = colours[i].channels.at(channel);
            count += colours[i].count;
            sum += value * colours[i].count;
            squares += value * value * colours[i].count;
        }
        const std::int64_t spread = count > 0 ? squares - sum * sum / count : 0;
        if (spread > cell.spread) {
            cell.spread = spread;
            cell.channel = channel;
        }
    }
    return cell;
}

/// How different two colours look. Shifts between the channels weigh more than lightness: a grey
/// that is a little too dark goes unnoticed, a bluish speck in it doesn't.
std::int64_t difference(const std::array<int, 3>& a, const std::array<int, 3>& b) {
    const std::int64_t red = a[0] - b[0];
    const std::int64_t green = a[1] - b[1];
    const std::int64_t blue = a[2] - b[2];
    const auto square = [](std::int64_t value) { return value * value; };
    return square(red) + square(green) + square(blue) +
           2 * (square(red - green) + square(green - blue) + square(red - blue));
}

} // namespace

std::vector<Rgba> choosePalette(const std::vector<Rgba>& pixels, std::size_t count) {
    std::map<std::array<int, 3>, std::int64_t> histogram;
    for (const Rgba& pixel : pixels) {
        ++histogram[{pixel.r, pixel.g, pixel.b}];
    }
    std::vector<Counted> colours;
    colours.reserve(histogram.size());
    for (const auto& [channels, number] : histogram) {
        colours.push_back({channels, number});
    }
    if (colours.empty()) {
        return {};
    }

    // Cut the cell that spreads most, at its mean, until there are enough.
    std::vector<Cell> cells{measured(colours, 0, colours.size())};
    while (cells.size() < count) {
        const auto widest =
            std::max_element(cells.begin(), cells.end(),
                             [](const Cell& a, const Cell& b) { return a.spread < b.spread; });
        if (widest->spread == 0) {
            break;
        }
        const Cell cell = *widest;
        std::int64_t sum = 0;
        std::int64_t number = 0;
        for (std::size_t i = cell.first; i < cell.last; ++i) {
            sum += colours[i].channels.at(cell.channel) * colours[i].count;
            number += colours[i].count;
        }
        const std::int64_t mean = number > 0 ? sum / number : 0;
        const auto begin = colours.begin() + static_cast<std::ptrdiff_t>(cell.first);
        const auto end = colours.begin() + static_cast<std::ptrdiff_t>(cell.last);
        const auto cut = std::stable_partition(begin, end, [&](const Counted& colour) {
            return colour.channels.at(cell.channel) <= mean;
        });
        const auto middle = static_cast<std::size_t>(cut - colours.begin());
        *widest = measured(colours, cell.first, middle);
        cells.push_back(measured(colours, middle, cell.last));
    }

    std::vector<std::array<int, 3>> centres;
    const auto centreOf = [](const std::array<std::int64_t, 3>& sums, std::int64_t number) {
        std::array<int, 3> centre{};
        for (std::size_t i = 0; i < 3; ++i) {
            centre.at(i) = number > 0 ? static_cast<int>((sums.at(i) + number / 2) / number) : 0;
        }
        return centre;
    };
    for (const Cell& cell : cells) {
        std::array<std::int64_t, 3> sums{};
        std::int64_t number = 0;
        for (std::size_t i = cell.first; i < cell.last; ++i) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                sums.at(channel) += colours[i].channels.at(channel) * colours[i].count;
            }
            number += colours[i].count;
        }
        centres.push_back(centreOf(sums, number));
    }

    // A few rounds in which every colour joins its nearest centre and the centres follow.
    constexpr int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::array<std::int64_t, 3>> sums(centres.size());
        std::vector<std::int64_t> numbers(centres.size(), 0);
        for (const Counted& colour : colours) {
            std::size_t best = 0;
            std::int64_t bestDistance = std::numeric_limits<std::int64_t>::max();
            for (std::size_t i = 0; i < centres.size(); ++i) {
                const std::int64_t distance = difference(centres[i], colour.channels);
                if (distance < bestDistance) {
                    best = i;
                    bestDistance = distance;
                }
            }
            for (std::size_t channel = 0; channel < 3; ++channel) {
                sums[best].at(channel) += colour.channels.at(channel) * colour.count;
            }
            numbers[best] += colour.count;
        }
        for (std::size_t i = 0; i < centres.size(); ++i) {
            if (numbers[i] > 0) {
                centres[i] = centreOf(sums[i], numbers[i]);
            }
        }
    }

    std::vector<Rgba> palette;
    palette.reserve(centres.size());
    for (const auto& centre : centres) {
        palette.push_back(Rgba{static_cast<std::uint8_t>(centre[0]),
                               static_cast<std::uint8_t>(centre[1]),
                               static_cast<std::uint8_t>(centre[2]), 255});
    }
    return palette;
}

Rgba nearestColour(const std::vector<Rgba>& palette, int r, int g, int b, int unit) {
    Rgba best;
    std::int64_t bestDistance = std::numeric_limits<std::int64_t>::max();
    for (const Rgba& colour : palette) {
        const std::int64_t distance =
            difference({r, g, b}, {colour.r * unit, colour.g * unit, colour.b * unit});
        if (distance < bestDistance) {
            best = colour;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace zvonivec::skin
