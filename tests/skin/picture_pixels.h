// The skin's pictures and their pixels, for the tests of what is drawn.
#pragma once

#include <QImage>
#include <QRect>
#include <array>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace skin_test {

inline constexpr QRgb MARK = qRgb(224, 255, 64);
inline constexpr QRgb DISPLAY = qRgb(0, 160, 192);

/// The states of a round button.
enum State { normal, hover, pressed, disabled };
/// The colours of a round button's symbol, in the order of the states.
inline constexpr std::array<QRgb, 4> SYMBOLS{qRgb(0, 192, 192), qRgb(64, 255, 255), MARK,
                                             qRgb(160, 160, 160)};
/// Picture number of the first round button in each state.
inline constexpr std::array<int, 4> FIRST_NUMBER{1, 8, 15, 27};

/// Returns a picture of the program's resources, with 8 bits a channel.
QImage load(std::string_view file);
/// Returns picture number 1 to 31 of the image list.
QImage listPicture(int number);
QImage roundButton(int button, State state);

/// Places in a picture: x and y.
using Pixels = std::set<std::pair<int, int>>;

Pixels pixelsWhere(const QImage& image, const std::function<bool(QRgb)>& wanted);
Pixels clearPixels(const QImage& image);
Pixels drawnPixels(const QImage& image);
Pixels pixelsOf(const QImage& image, QRgb colour);

QRect boundsOf(const Pixels& pixels);
/// Rows of '#' where the pixel is in the set, of '.' elsewhere.
std::vector<std::string> rowsOf(const Pixels& pixels, const QRect& area);
/// The rows of the set's own bounds.
std::vector<std::string> shapeOf(const Pixels& pixels);
std::vector<std::string> mirrored(std::vector<std::string> rows);

} // namespace skin_test
