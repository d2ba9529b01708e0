#include "settings/settings_path.h"

#include <gtest/gtest.h>

namespace zvonivec {
namespace {

TEST(SettingsPath, IsInTheProgramsFolder) {
    EXPECT_EQ(SettingsPath("C:\\Program Files\\Zvonivec", "\\"),
              "C:\\Program Files\\Zvonivec\\MP3.ini");
    EXPECT_EQ(SettingsPath("/opt/zvonivec", "/"), "/opt/zvonivec/MP3.ini");
}

TEST(SettingsPath, AtTheRootHasNoDoubledSeparator) {
    EXPECT_EQ(SettingsPath("C:\\", "\\"), "C:\\MP3.ini");
    EXPECT_EQ(SettingsPath("/", "/"), "/MP3.ini");
}

} // namespace
} // namespace zvonivec
