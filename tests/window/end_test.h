// A player with an open file that a test ends in some way.
#pragma once

#include "tests/window/player_test.h"

namespace zvonivec {

class EndTest : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
    }
    /// Expects the end that the close button causes: both windows are unloaded and nothing plays.
    void expectEnded() {
        EXPECT_TRUE(serveUntil([this] { return !player().Loaded(); }));
        EXPECT_FALSE(player().Popup().Loaded());
        EXPECT_FALSE(player().Visible());
        EXPECT_EQ(engine().URL(), "");
    }
};

} // namespace zvonivec
