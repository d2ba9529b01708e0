#include "skin/drawing/palette.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>

namespace zvonivec::skin {

namespace {

using Channels = std::array<int, 3>;

struct Counted {
    Channels channels{};
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

/// Returns how different two colours look. A shift between the channels weighs more than a shift in
/// lightness: a grey that is a little too dark goes unnoticed, a bluish speck in it doesn't.
std::int64_t difference(const Channels& a, const Channels& b) {
    const std::int64_t red = a[0] - b[0];
    const std::int64_t green = a[1] - b[1];
    const std::int64_t blue = a[2] - b[2];
    const auto square = [](std::int64_t value) { return value * value; };
    return square(red) + square(green) + square(blue) +
           2 * (square(red - green) + square(green - blue) + square(red - blue));
}

/// Returns the different colours of the pixels, each with its number of pixels.
std::vector<Counted> counted(const std::vector<Rgba>& pixels) {
    std::map<Channels, std::int64_t> histogram;
    for (const Rgba& pixel : pixels) {
        ++histogram[{pixel.r, pixel.g, pixel.b}];
    }
    std::vector<Counted> colours;
    colours.reserve(histogram.size());
    for (const auto& [channels, number] : histogram) {
        colours.push_back({channels, number});
    }
    return colours;
}

/// Colours added up, for their mean.
struct Sum {
    std::array<std::int64_t, 3> channels{};
    std::int64_t count = 0;

    void add(const Counted& colour) {
        for (std::size_t i = 0; i < 3; ++i) {
            channels.at(i) += colour.channels.at(i) * colour.count;
        }
        count += colour.count;
    }
    /// Each channel rounded to the nearest whole number.
    [[nodiscard]] Channels mean() const {
        Channels mean{};
        for (std::size_t i = 0; i < 3; ++i) {
            mean.at(i) = count > 0 ? static_cast<int>((channels.at(i) + count / 2) / count) : 0;
        }
        return mean;
    }
};

Sum sumOf(const std::vector<Counted>& colours, const Cell& cell) {
    Sum sum;
    for (std::size_t i = cell.first; i < cell.last; ++i) {
        sum.add(colours[i]);
    }
    return sum;
}

/// Cuts the cell that spreads most at its mean, until there are enough cells. Sorts the colours so
/// that each cell is a run of them.
std::vector<Cell> cut(std::vector<Counted>& colours, std::size_t count) {
    std::vector<Cell> cells{measured(colours, 0, colours.size())};
    while (cells.size() < count) {
        const auto widest = std::ranges::max_element(cells, {}, &Cell::spread);
        if (widest->spread == 0) {
            break;
        }
        const Cell cell = *widest;
        const Sum sum = sumOf(colours, cell);
        const std::int64_t mean = sum.channels.at(cell.channel) / sum.count;
        const auto begin = colours.begin() + static_cast<std::ptrdiff_t>(cell.first);
        const auto end = colours.begin() + static_cast<std::ptrdiff_t>(cell.last);
        const auto upper = std::stable_partition(begin, end, [&](const Counted& colour) {
            return colour.channels.at(cell.channel) <= mean;
        });
        const auto middle = static_cast<std::size_t>(upper - colours.begin());
        *widest = measured(colours, cell.first, middle);
        cells.push_back(measured(colours, middle, cell.last));
    }
    return cells;
}

std::size_t nearest(const std::vector<Channels>& centres, const Channels& colour) {
    std::size_t best = 0;
    std::int64_t bestDistance = std::numeric_limits<std::int64_t>::max();
    for (std::size_t i = 0; i < centres.size(); ++i) {
        const std::int64_t distance = difference(centres[i], colour);
        if (distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

/// Moves every centre to the mean of the colours that are nearest to it.
void settle(std::vector<Channels>& centres, const std::vector<Counted>& colours) {
    std::vector<Sum> sums(centres.size());
    for (const Counted& colour : colours) {
        sums[nearest(centres, colour.channels)].add(colour);
    }
    for (std::size_t i = 0; i < centres.size(); ++i) {
        if (sums[i].count > 0) {
            centres[i] = sums[i].mean();
        }
    }
}

} // namespace

std::vector<Rgba> choosePalette(const std::vector<Rgba>& pixels, std::size_t count) {
    std::vector<Counted> colours = counted(pixels);
    if (colours.empty()) {
        return {};
    }
    std::vector<Channels> centres;
    for (const Cell& cell : cut(colours, count)) {
        centres.push_back(sumOf(colours, cell).mean());
    }
    constexpr int rounds = 6;
    for (int round = 0; round < rounds; ++round) {
        settle(centres, colours);
    }

    std::vector<Rgba> palette;
    palette.reserve(centres.size());
    for (const Channels& centre : centres) {
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
