// The player on screens with more pixels: sharp pictures, and an outline as fine as the screen.
#include "skin/pictures.h"
#include "skin/window_outline.h"
#include "tests/desktop/desktop_test.h"

#include <QPolygon>
#include <QRegion>
#include <algorithm>
#include <string_view>

namespace support {

namespace {

constexpr Colour MAGENTA = 0xFF00FF;

class ScaleTest : public DesktopTest, public testing::WithParamInterface<int> {
protected:
    ScaleTest() : DesktopTest({.width = 1280, .height = 1100}) {}

    void SetUp() override {
        ASSERT_TRUE(display_.ok()) << display_.problem();
        pointer_.moveTo({display_.width() - 1, display_.height() - 1});
        Process::Environment factor = environment();
        factor.emplace_back("QT_SCALE_FACTOR", std::to_string(scale));
        player_ = std::make_unique<Player>(display_, folder_.file("program"), factor);
        ASSERT_TRUE(player_->waitUntilShown(scale)) << player_->messages();
    }

    [[nodiscard]] const zvonivec::skin::SharpPictures& files() const {
        return *std::ranges::find(zvonivec::skin::SHARP_PICTURES, scale,
                                  &zvonivec::skin::SharpPictures::scale);
    }

    /// Returns the outline in screen pixels.
    [[nodiscard]] QRegion outline() const {
        QPolygon polygon;
        for (const zvonivec::skin::OutlineVertex& vertex : zvonivec::skin::WINDOW_OUTLINE) {
            polygon.append(QPoint(vertex.x * scale, vertex.y * scale));
        }
        return {polygon, Qt::WindingFill};
    }

    [[nodiscard]] Rectangle scaled(const Rectangle& place) const {
        return {place.x * scale, place.y * scale, place.width * scale, place.height * scale};
    }

    void put(Picture& window, std::string_view file, const Rectangle& place) const {
        for (const zvonivec::skin::SheetPlace& on : zvonivec::skin::SHEET_PLACES) {
            if (on.picture.file == file) {
                const Picture sheet{std::string(files().sheet)};
                window.put(
                    sheet.part(scaled({on.left, on.top, on.picture.width, on.picture.height})),
                    {place.x * scale, place.y * scale});
            }
        }
    }

    /// Returns how many pixels outside the texts don't show the idle player.
    [[nodiscard]] int unlikeIdlePlayer() const {
        Picture expected{std::string(files().body)};
        for (const player::Button button :
             {player::rewind, player::pause, player::play, player::stop, player::forward,
              player::minimise, player::close}) {
            const int first = button <= player::forward ? 27 : 1;
            put(expected,
                zvonivec::skin::LIST_PICTURES.at(static_cast<std::size_t>(button + first - 1)).file,
                player::BUTTONS.at(button));
        }
        put(expected, zvonivec::skin::LOGO_PICTURE.file, player::LOGO);
        put(expected, zvonivec::skin::VOLUME_PICTURE.file, player::VOLUME);
        put(expected, zvonivec::skin::LIST_PICTURES.at(24).file, player::MARK);
        const Screenshot seen = player_->screenshot(scaled({0, 0, player::WIDTH, player::HEIGHT}));
        int unlike = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                const bool isText = scaled(player::INFORMATION).contains({x, y}) ||
                                    scaled(player::STATUS).contains({x, y});
                const auto colour = expected.at(x, y);
                unlike += colour && *colour != seen.at(x, y) && !isText ? 1 : 0;
            }
        }
        return unlike;
    }

    const int scale = GetParam();
};

TEST_P(ScaleTest, ShowsThePicturesOfTheScreensResolution) {
    const Rectangle place = player_->window().place();
    EXPECT_EQ(place.width, player::WIDTH * scale);
    EXPECT_EQ(place.height, player::HEIGHT * scale);
    EXPECT_TRUE(waitUntil([&] { return unlikeIdlePlayer() == 0; })) << unlikeIdlePlayer();
}

TEST_P(ScaleTest, IsSeenInExactlyTheScaledOutline) {
    const PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, MAGENTA);
    ASSERT_TRUE(waitUntil([&] { return unlikeIdlePlayer() == 0; }));
    const QRegion inside = outline();
    const Screenshot seen = player_->screenshot(scaled({0, 0, player::WIDTH, player::HEIGHT}));
    int wrong = 0;
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            wrong += (seen.at(x, y) != MAGENTA) != inside.contains(QPoint(x, y)) ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_P(ScaleTest, TakesClicksInTheScaledOutlineAlone) {
    PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, MAGENTA);
    const QRegion inside = outline();
    std::vector<Point> borders;
    for (int y = 0; y < player::HEIGHT * scale; ++y) {
        for (int x = 0; x < player::WIDTH * scale; ++x) {
            if (inside.contains(QPoint(x, y)) != inside.contains(QPoint(x + 1, y))) {
                borders.push_back({x, y});
            }
        }
    }
    const Rectangle before = player_->window().place();
    // Points along the whole border, each with the pixel to the right of it.
    for (std::size_t i = 0; i < borders.size(); i += 29) {
        for (const Point place : {borders[i], Point{borders[i].x + 1, borders[i].y}}) {
            click(place, 2); // the right button would open the menu
            const std::vector<PlainWindow::Click> beneath = backdrop.takeClicks();
            const bool isInside = inside.contains(QPoint(place.x, place.y));
            EXPECT_EQ(beneath.size(), isInside ? 0U : 2U) << place.x << ' ' << place.y;
        }
    }
    EXPECT_EQ(player_->window().place(), before) << "clicks don't move the window";
}

INSTANTIATE_TEST_SUITE_P(PixelsToOne, ScaleTest, testing::Values(2, 3),
                         testing::PrintToStringParamName());

} // namespace

} // namespace support
