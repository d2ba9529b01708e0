// A player with a file, which is ended in one way or another.
#pragma once

#include "tests/window/player_test.h"

namespace zvonivec {

class EndTest : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
    }
    /// Ended as the close button does: in the end both windows are unloaded and nothing plays.
    void expectEnded() {
        EXPECT_TRUE(serveUntil([this] { return !player().Loaded(); }));
        EXPECT_FALSE(player().Popup().Loaded());
        EXPECT_FALSE(player().Visible());
        EXPECT_EQ(engine().URL(), "");
    }
};

} // namespace zvonivec
