#include "skin/drawing/light.h"

#include "skin/drawing/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace zvonivec::skin {

namespace {

/// Returns the value from 0 to 255 with which a screen shows an amount of light.
double shown(double light) {
    return std::sqrt(clamped(light, 0, 1)) * 255;
}

std::uint8_t whole(double value) {
    return static_cast<std::uint8_t>(std::floor(value + 0.5));
}

} // namespace

Drawing draw(const Scene& scene, Point from, int width, int height, int scale, int samples) {
    const int columns = width * samples;
    const double step = 1.0 / (scale * samples);
    const auto place = [&](int column, int row) {
        return Point{from.x + (column + 0.5) * step, from.y + (row + 0.5) * step};
    };
    // Returns the heights of a row of samples, with one more sample on either side for the slopes.
    using Row = std::vector<double>;
    const auto heights = [&](int row) {
        Row result;
        result.reserve(static_cast<std::size_t>(columns) + 2);
        for (int column = -1; column <= columns; ++column) {
            result.push_back(scene.height(place(column, row)));
        }
        return result;
    };

    Drawing drawing(width, height, Drop{{}, 0});
    Row above = heights(-1);
    Row here = heights(0);
    for (int row = 0; row < height * samples; ++row) {
        const Row below = heights(row + 1);
        for (int column = 0; column < columns; ++column) {
            const auto at = static_cast<std::size_t>(column) + 1;
            const double dx = (here[at + 1] - here[at - 1]) / (2 * step);
            const double dy = (below[at] - above[at]) / (2 * step);
            const double size = std::sqrt(dx * dx + dy * dy + 1);
            const Drop drop =
                scene.colour(place(column, row), Direction{-dx / size, -dy / size, 1 / size});
            Drop& pixel = drawing.at(column / samples, row / samples);
            pixel.light = pixel.light + drop.light * drop.cover;
            pixel.cover += drop.cover;
        }
        above = here;
        here = below;
    }
    const double all = static_cast<double>(samples) * samples;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Drop& pixel = drawing.at(x, y);
            if (pixel.cover > 0) {
                pixel.light = pixel.light * (1 / pixel.cover);
                pixel.cover = pixel.cover / all;
            }
        }
    }
    return drawing;
}

Rgba pixelOf(Light light) {
    return {whole(shown(light.r)), whole(shown(light.g)), whole(shown(light.b)), 255};
}

Drawing drawingOf(const Picture& picture) {
    Drawing drawing(picture.width(), picture.height());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            drawing.at(x, y).light = lightOf(picture.at(x, y));
        }
    }
    return drawing;
}

Picture rounded(const Drawing& drawing) {
    Picture picture = roundedWithAlpha(drawing);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            Rgba& pixel = picture.at(x, y);
            pixel = pixel.a < 128 ? CLEAR : Rgba{pixel.r, pixel.g, pixel.b, 255};
        }
    }
    return picture;
}

Picture roundedWithAlpha(const Drawing& drawing) {
    Picture picture(drawing.width(), drawing.height());
    for (int y = 0; y < drawing.height(); ++y) {
        for (int x = 0; x < drawing.width(); ++x) {
            const Drop& drop = drawing.at(x, y);
            const std::uint8_t alpha = whole(clamped(drop.cover, 0, 1) * 255);
            picture.at(x, y) = alpha == 0
                                   ? CLEAR
                                   : Rgba{whole(shown(drop.light.r)), whole(shown(drop.light.g)),
                                          whole(shown(drop.light.b)), alpha};
        }
    }
    return picture;
}

namespace {

/// Channels with eight binary places, so that sums of shared-out errors stay exact.
constexpr int UNIT = 256;
using Channels = std::array<int, 3>;

Grid<Channels> channelsOf(const Drawing& drawing) {
    Grid<Channels> channels(drawing.width(), drawing.height(), Channels{});
    for (int y = 0; y < drawing.height(); ++y) {
        for (int x = 0; x < drawing.width(); ++x) {
            const Light light = drawing.at(x, y).light;
            const std::array<double, 3> values{shown(light.r), shown(light.g), shown(light.b)};
            for (std::size_t i = 0; i < 3; ++i) {
                channels.at(x, y).at(i) = static_cast<int>(std::floor(values.at(i) * UNIT + 0.5));
            }
        }
    }
    return channels;
}

/// Returns the colours of the fixed pixels and those that stand best for all others.
std::vector<Rgba> paletteFor(const Drawing& drawing, const Picture& fixed, const Mask& mask,
                             std::size_t colours) {
    std::vector<Rgba> palette;
    std::vector<Rgba> free;
    for (int y = 0; y < drawing.height(); ++y) {
        for (int x = 0; x < drawing.width(); ++x) {
            const Rgba& pixel = fixed.at(x, y);
            if (mask.at(x, y) == 0) {
                continue;
            }
            if (pixel.a == 0) {
                free.push_back(pixelOf(drawing.at(x, y).light));
            } else if (std::ranges::find(palette, pixel) == palette.end()) {
                palette.push_back(pixel);
            }
        }
    }
    const std::vector<Rgba> chosen = choosePalette(free, colours - palette.size());
    palette.insert(palette.end(), chosen.begin(), chosen.end());
    return palette;
}

/// The errors of earlier pixels, which their neighbours make good.
class Debts {
public:
    /// A debt beyond the limit is dropped. A debt in hue alone, collected over many dark pixels,
    /// would end as a bright speck.
    Debts(int width, int height, int limit) : owed_(width, height, Channels{}), limit_(limit) {}

    [[nodiscard]] Channels addedTo(Channels wanted, int x, int y) const {
        for (std::size_t i = 0; i < 3; ++i) {
            wanted.at(i) += std::clamp(owed_.at(x, y).at(i), -limit_, limit_);
        }
        return wanted;
    }

    /// Shares out what a pixel lost. Ahead is 1 in rows that run to the right, else -1.
    void share(const Channels& lost, int x, int y, int ahead) {
        owe(lost, x + ahead, y, 7);
        owe(lost, x - ahead, y + 1, 3);
        owe(lost, x, y + 1, 5);
        owe(lost, x + ahead, y + 1, 1);
    }

private:
    void owe(const Channels& lost, int x, int y, int sixteenths) {
        if (x < 0 || x >= owed_.width() || y >= owed_.height()) {
            return;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            owed_.at(x, y).at(i) += lost.at(i) * sixteenths / 16;
        }
    }

    Grid<Channels> owed_;
    int limit_;
};

} // namespace

Picture dithered(const Drawing& drawing, const Picture& fixed, const Mask& mask,
                 std::size_t colours, double mostOwed) {
    const int width = drawing.width();
    const int height = drawing.height();
    const std::vector<Rgba> palette = paletteFor(drawing, fixed, mask, colours);
    const Grid<Channels> wanted = channelsOf(drawing);
    Debts debts(width, height, static_cast<int>(mostOwed * UNIT));
    Picture picture(width, height, CLEAR);
    for (int y = 0; y < height; ++y) {
        // Every second row runs backwards, because an error that always moved right would draw
        // slanted worms.
        const bool forth = y % 2 == 0;
        for (int step = 0; step < width; ++step) {
            const int x = forth ? step : width - 1 - step;
            if (mask.at(x, y) == 0) {
                continue;
            }
            if (fixed.at(x, y).a != 0) {
                picture.at(x, y) = fixed.at(x, y);
                continue;
            }
            const Channels want = debts.addedTo(wanted.at(x, y), x, y);
            const Rgba got = nearestColour(palette, want[0], want[1], want[2], UNIT);
            picture.at(x, y) = got;
            debts.share({want[0] - got.r * UNIT, want[1] - got.g * UNIT, want[2] - got.b * UNIT}, x,
                        y, forth ? 1 : -1);
        }
    }
    return picture;
}

} // namespace zvonivec::skin
