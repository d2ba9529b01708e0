// The pictures in the tree are what the drawing program draws.
#include "tests/skin/picture_file.h"
#include "tests/support/process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

std::set<std::string> filesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

} // namespace

TEST(SkinRedraw, GivesThePicturesOfTheTree) {
    const support::TemporaryFolder folder;
    ASSERT_EQ(support::run({DRAW_SKIN, folder.path()}), 0);
    const std::set<std::string> drawn = filesIn(folder.path());
    EXPECT_EQ(drawn, filesIn(PICTURES_FOLDER));
    EXPECT_GE(drawn.size(), 41U);
    for (const std::string& name : drawn) {
        EXPECT_EQ(skin_test::differenceOf(folder.file(name), PICTURES_FOLDER "/" + name), "")
            << name << " in skin/pictures/ is not what draw_skin draws: build redraw_skin";
    }
}

TEST(SkinRedraw, RefusesAFolderThatIsNotThere) {
    EXPECT_NE(support::run({DRAW_SKIN, "/nowhere/at/all"}), 0);
    EXPECT_NE(support::run({DRAW_SKIN}), 0);
}
